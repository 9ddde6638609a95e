#include "files/RecentFilesTracker.h"

#include "base/Json.h"
#include "base/Scheduler.h"
#include "files/FileUrl.h"
#include "platform/UserDefaults.h"
#include "services/LogManager.h"

namespace harbrix {

QByteArray encodeRecentFiles(const std::vector<RecentFile>& files) {
    QJsonArray array;
    for (const RecentFile& file : files) {
        array.append(QJsonObject{{"id", uuidText(file.id)},
                                 {"url", QString::fromLatin1(file.url.toEncoded())},
                                 {"name", file.name},
                                 {"accessedAt", iso8601Text(file.accessedAt)}});
    }
    return encodeJson(array);
}

Result<std::vector<RecentFile>, SystemError> decodeRecentFiles(const QByteArray& json) {
    return decodeRecords<RecentFile>(json, [](JsonReader& reader) {
        RecentFile file;
        file.id = reader.uuid("id");
        file.url = QUrl::fromEncoded(reader.text("url").toUtf8(), QUrl::StrictMode);
        if (!file.url.isValid())
            reader.fail("url", QStringLiteral("is not a URL"));
        file.name = reader.text("name");
        file.accessedAt = reader.iso8601Date("accessedAt");
        return file;
    });
}

RecentFilesTracker::RecentFilesTracker(UserDefaults& defaults, Scheduler& scheduler)
    : m_defaults(defaults), m_scheduler(scheduler) {
    load();
}

RecentFilesTracker::~RecentFilesTracker() = default;

void RecentFilesTracker::record(const QUrl& url, const QString& name) {
    std::erase_if(m_recentFiles, [&url](const RecentFile& file) { return file.url == url; });
    m_recentFiles.insert(m_recentFiles.begin(),
                         {QUuid::createUuid(), url, name.isEmpty() ? lastPathComponent(url) : name,
                          m_scheduler.wallClock()});
    if (m_recentFiles.size() > maxStoredCount)
        m_recentFiles.resize(maxStoredCount);
    save();
    emit changed();
}

void RecentFilesTracker::load() {
    const auto stored = m_defaults.data(defaultsKey);
    if (!stored)
        return;
    auto files = decodeRecentFiles(*stored);
    if (!files) {
        log(LogLevel::error,
            QStringLiteral("Failed to load recent files: ") + files.error().description);
        return;
    }
    m_recentFiles = std::move(*files);
    emit changed();
}

void RecentFilesTracker::save() {
    m_defaults.set(defaultsKey, encodeRecentFiles(m_recentFiles));
    if (const auto error = m_defaults.lastWriteError())
        log(LogLevel::error, QStringLiteral("Failed to save recent files: ") + error->description);
}

} // namespace harbrix
