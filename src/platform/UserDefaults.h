#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

#include <mutex>
#include <optional>
#include <shared_mutex>
#include <variant>

namespace harbrix {

/// The user's settings: one typed JSON file, mode 0600, replaced atomically at each change (a
/// symbolic link in its place is followed and stays). A value
/// keeps the type that it was stored with, and a reader that asks for another type gets nothing,
/// just as for an absent key; each reader applies its own default then.
///
/// Thread-safe. There is no reload: changes made to the file by others are not noticed.
class UserDefaults : public QObject {
    Q_OBJECT

public:
    using Value = std::variant<bool, qint64, double, QString, QStringList, QByteArray, QDateTime>;

    /// Whether the store may change anything on the disk; without, what is set holds in memory
    /// only.
    enum class Access { ReadWrite, ReadOnly };

    /// Reads the file. A missing file is an empty store; a damaged one is set aside beside the file
    /// (suffix ".damaged"), so that nothing is lost, and counts as empty.
    explicit UserDefaults(const QString& filePath, Access access = Access::ReadWrite);
    ~UserDefaults() override;

    [[nodiscard]] std::optional<bool> boolean(const QString& key) const;
    /// A number without a fraction also when it was stored as a double.
    [[nodiscard]] std::optional<qint64> integer(const QString& key) const;
    /// A number, also when it was stored as an integer.
    [[nodiscard]] std::optional<double> number(const QString& key) const;
    [[nodiscard]] std::optional<QString> text(const QString& key) const;
    [[nodiscard]] std::optional<QStringList> list(const QString& key) const;
    [[nodiscard]] std::optional<QByteArray> data(const QString& key) const;
    [[nodiscard]] std::optional<QDateTime> date(const QString& key) const;
    [[nodiscard]] std::optional<Value> value(const QString& key) const;
    [[nodiscard]] QStringList keys() const;

    /// Stores the value and writes the file before it returns; a value that is there already is not
    /// written again. Where the file cannot be written, or could not be read, the value is kept in
    /// memory only and lastWriteError() has the reason. An invalid date counts as no value.
    void set(const QString& key, const Value& value);
    void remove(const QString& key);

    [[nodiscard]] const QString& filePath() const { return m_filePath; }
    /// What kept the file from being read or set aside at creation, if anything did.
    [[nodiscard]] std::optional<SystemError> loadError() const { return m_loadError; }
    /// Why the last change, or what was read at creation, is not in the file; nothing once a write
    /// has succeeded.
    [[nodiscard]] std::optional<SystemError> lastWriteError() const;
    /// Where a damaged file was set aside at creation.
    [[nodiscard]] const std::optional<QString>& damagedCopy() const { return m_damagedCopy; }

signals:
    /// After a key was set or removed, on the thread that did it.
    void changed(const QString& key);
    /// lastWriteError() has come, gone or changed; on the thread that wrote.
    void writeErrorChanged();

private:
    void load();
    [[nodiscard]] Result<QString, SystemError> setAside();
    void update(const QString& key, const std::optional<Value>& value);
    void save(const QHash<QString, Value>& values);

    QString m_filePath;
    Access m_access;
    std::optional<QString> m_damagedCopy;
    /// Taken before m_mutex and held while the file is written, so that readers need not wait.
    std::mutex m_writeMutex;
    mutable std::shared_mutex m_mutex;
    QHash<QString, Value> m_values;
    std::optional<SystemError> m_loadError;
    std::optional<SystemError> m_writeError;
};

} // namespace harbrix
