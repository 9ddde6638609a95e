#include "files/CacheEntry.h"

#include "base/Json.h"
#include "base/Utf8.h"
#include "files/FileUrl.h"

#include <QJsonDocument>

#include <algorithm>

namespace harbrix {
namespace {

// Far above the largest file that is cached, and low enough for any sum of sizes.
constexpr qint64 largestSize = qint64(1) << 40;

// What QJsonDocument puts around the one element of an indented array.
constexpr QByteArrayView arrayStart("[\n");
constexpr QByteArrayView arrayEnd("\n]\n");

QJsonObject toJson(const CacheEntry& entry) {
    QJsonObject object{
        {"cachedAt", secondsSinceReferenceDate(entry.cachedAt)},
        {"configID", uuidText(entry.configID)},
        {"fileName", entry.fileName},
        {"fileSize", entry.fileSize},
        {"id", uuidText(entry.id)},
        {"isDirectory", entry.isDirectory},
        {"lastAccessedAt", secondsSinceReferenceDate(entry.lastAccessedAt)},
        {"localURL", QString::fromLatin1(entry.localURL.toEncoded())},
        {"relativePath", entry.relativePath},
    };
    if (entry.contentHash)
        object.insert("contentHash", *entry.contentHash);
    return object;
}

CacheEntry readEntry(JsonReader& reader) {
    CacheEntry entry;
    entry.id = reader.uuid("id");
    entry.configID = reader.uuid("configID");
    entry.relativePath = reader.text("relativePath");
    entry.localURL = QUrl::fromEncoded(reader.text("localURL").toUtf8(), QUrl::StrictMode);
    if (!entry.localURL.isValid())
        reader.fail("localURL", QStringLiteral("is not a URL"));
    entry.fileSize = reader.integer("fileSize");
    if (entry.fileSize < 0 || entry.fileSize > largestSize)
        reader.fail("fileSize", QStringLiteral("is out of range"));
    entry.isDirectory = reader.boolean("isDirectory");
    entry.fileName = reader.text("fileName");
    entry.cachedAt = reader.referenceDate("cachedAt");
    entry.lastAccessedAt = reader.referenceDate("lastAccessedAt");
    entry.contentHash = reader.optionalText("contentHash");
    return entry;
}

} // namespace

QByteArray encodeCacheEntry(const CacheEntry& entry) {
    const QByteArray array = QJsonDocument(QJsonArray{toJson(entry)}).toJson();
    return array.mid(arrayStart.size(), array.size() - arrayStart.size() - arrayEnd.size());
}

QByteArray joinCacheIndex(const std::vector<const QByteArray*>& encodedEntries) {
    if (encodedEntries.empty())
        return QJsonDocument(QJsonArray()).toJson();
    qsizetype size = arrayStart.size() + arrayEnd.size();
    for (const QByteArray* encoded : encodedEntries)
        size += encoded->size() + 2;
    QByteArray text;
    text.reserve(size);
    text += arrayStart;
    for (const QByteArray* encoded : encodedEntries) {
        if (encoded != encodedEntries.front())
            text += ",\n";
        text += *encoded;
    }
    return text += arrayEnd;
}

Result<std::vector<CacheEntry>, SystemError> decodeCacheIndex(const QByteArray& json) {
    return decodeRecords<CacheEntry>(json, readEntry);
}

bool isSafeRelativePath(const QString& relativePath) {
    if (relativePath.contains(QChar(0)) || !encodeUtf8(relativePath))
        return false;
    return std::ranges::none_of(relativePath.split(u'/'), [](const QString& component) {
        return component.isEmpty() || component == QLatin1String(".") ||
               component == QLatin1String("..");
    });
}

QString cacheFolderName(const QUuid& configID) {
    return uuidText(configID).left(8);
}

bool ownsItsCopy(const CacheEntry& entry) {
    const QString ending = u'/' + cacheFolderName(entry.configID) + u'/' + entry.relativePath;
    return isSafeRelativePath(entry.relativePath) && pathText(entry.localURL).endsWith(ending);
}

} // namespace harbrix
