#pragma once

#include "base/Result.h"

#include <QDateTime>
#include <QObject>
#include <QUrl>
#include <QUuid>

#include <optional>
#include <vector>

namespace harbrix {

class Scheduler;
class UserDefaults;

/// A file that the user has fetched.
struct RecentFile {
    QUuid id;
    QUrl url;
    QString name;
    QDateTime accessedAt; ///< kept in whole seconds

    bool operator==(const RecentFile&) const = default;
};

/// The stored form: the UTF-8 JSON text of an array, dates in ISO 8601.
[[nodiscard]] QByteArray encodeRecentFiles(const std::vector<RecentFile>& files);
[[nodiscard]] Result<std::vector<RecentFile>, SystemError>
decodeRecentFiles(const QByteArray& json);

/// The files fetched last, newest first, kept in the user defaults. Main thread.
class RecentFilesTracker : public QObject {
    Q_OBJECT

public:
    static constexpr std::size_t maxStoredCount = 20;
    /// How many of them a menu shows.
    static constexpr std::size_t maxDisplayCount = 5;
    static constexpr auto defaultsKey = "com.harbrix.recentFiles";

    RecentFilesTracker(UserDefaults& defaults, Scheduler& scheduler);
    ~RecentFilesTracker() override;

    /// Puts the file first and saves the list. An empty name stands for the URL's last component.
    void record(const QUrl& url, const QString& name = {});
    void load();
    void save();

    [[nodiscard]] const std::vector<RecentFile>& recentFiles() const { return m_recentFiles; }

signals:
    void changed();

private:
    UserDefaults& m_defaults;
    Scheduler& m_scheduler;
    std::vector<RecentFile> m_recentFiles;
};

} // namespace harbrix
