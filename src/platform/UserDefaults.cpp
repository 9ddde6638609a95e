#include "platform/UserDefaults.h"

#include "platform/AtomicFile.h"
#include "platform/DefaultsFormat.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdio>

namespace harbrix {

namespace {

template <typename T>
std::optional<T> as(const std::optional<UserDefaults::Value>& value) {
    const T* held = value ? std::get_if<T>(&*value) : nullptr;
    return held ? std::optional(*held) : std::nullopt;
}

QString behindSymbolicLink(const QString& path) {
    // A user who keeps the file elsewhere, by a symbolic link, would lose the link to the rename.
    const QString target = QFileInfo(path).canonicalFilePath();
    return target.isEmpty() ? path : target;
}

} // namespace

UserDefaults::UserDefaults(const QString& filePath, Access access)
    : m_filePath(behindSymbolicLink(filePath)), m_access(access) {
    load();
}

UserDefaults::~UserDefaults() = default;

void UserDefaults::load() {
    const auto text = readFile(m_filePath);
    if (!text) {
        if (text.error().code != ENOENT)
            m_loadError = m_writeError = text.error();
        return;
    }
    auto decoded = DefaultsFormat::decode(*text);
    m_values = std::move(decoded.values);
    if (!decoded.isDamaged || m_access == Access::ReadOnly)
        return;
    const auto copy = setAside();
    if (!copy) {
        m_loadError = m_writeError = copy.error();
        return;
    }
    m_damagedCopy = *copy;
    if (!m_values.isEmpty())
        save(m_values);
}

/// Moves the file to the first free name of "X.damaged", "X.damaged-2" and so on.
Result<QString, SystemError> UserDefaults::setAside() {
    constexpr int mostNames = 1000;
    const QByteArray from = QFile::encodeName(m_filePath);
    for (int number = 1; number <= mostNames; ++number) {
        QByteArray to = from + ".damaged";
        if (number > 1)
            to += "-" + QByteArray::number(number);
        // link(2) refuses a name that is taken, so no earlier file can be lost; a file system
        // without hard links says EPERM.
        if (::link(from.constData(), to.constData()) == 0) {
            ::unlink(from.constData());
            return QFile::decodeName(to);
        }
        if (errno == EEXIST)
            continue;
        if (errno == EPERM && ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(),
                                          RENAME_NOREPLACE) == 0)
            return QFile::decodeName(to);
        if (errno != EEXIST)
            return std::unexpected(systemError(errno));
    }
    return std::unexpected(systemError(EEXIST));
}

std::optional<UserDefaults::Value> UserDefaults::value(const QString& key) const {
    const std::shared_lock lock(m_mutex);
    const auto found = m_values.find(key);
    return found == m_values.end() ? std::nullopt : std::optional(*found);
}

std::optional<bool> UserDefaults::boolean(const QString& key) const {
    return as<bool>(value(key));
}

std::optional<qint64> UserDefaults::integer(const QString& key) const {
    const auto stored = value(key);
    const auto fraction = as<double>(stored);
    if (!fraction)
        return as<qint64>(stored);
    // 2^63 is the first double past the range; the lower end is one itself.
    constexpr double limit = 9223372036854775808.0;
    if (std::trunc(*fraction) != *fraction || *fraction < -limit || *fraction >= limit)
        return std::nullopt;
    return static_cast<qint64>(*fraction);
}

std::optional<double> UserDefaults::number(const QString& key) const {
    const auto stored = value(key);
    if (const auto whole = as<qint64>(stored))
        return static_cast<double>(*whole);
    return as<double>(stored);
}

std::optional<QString> UserDefaults::text(const QString& key) const {
    return as<QString>(value(key));
}

std::optional<QStringList> UserDefaults::list(const QString& key) const {
    return as<QStringList>(value(key));
}

std::optional<QByteArray> UserDefaults::data(const QString& key) const {
    return as<QByteArray>(value(key));
}

std::optional<QDateTime> UserDefaults::date(const QString& key) const {
    return as<QDateTime>(value(key));
}

QStringList UserDefaults::keys() const {
    const std::shared_lock lock(m_mutex);
    QStringList keys = m_values.keys();
    keys.sort();
    return keys;
}

void UserDefaults::set(const QString& key, const Value& value) {
    const auto* date = std::get_if<QDateTime>(&value);
    if (date && !date->isValid())
        update(key, std::nullopt);
    else
        update(key, value);
}

void UserDefaults::remove(const QString& key) {
    update(key, std::nullopt);
}

void UserDefaults::update(const QString& key, const std::optional<Value>& value) {
    {
        const std::scoped_lock writing(m_writeMutex);
        QHash<QString, Value> snapshot;
        {
            const std::unique_lock lock(m_mutex);
            const auto present = m_values.constFind(key);
            const bool isSame = present == m_values.constEnd() ? !value : value == *present;
            if (isSame && !m_writeError)
                return;
            if (value)
                m_values.insert(key, *value);
            else
                m_values.remove(key);
            snapshot = m_values;
        }
        save(snapshot);
    }
    emit changed(key);
}

void UserDefaults::save(const QHash<QString, Value>& values) {
    if (m_access == Access::ReadOnly)
        return;
    // What could not be read must not be overwritten, as long as it is there.
    if (m_loadError && !QFileInfo::exists(m_filePath))
        m_loadError.reset();
    std::optional<SystemError> error = m_loadError;
    if (!error) {
        const auto saved = replaceFile(m_filePath, DefaultsFormat::encode(values));
        if (!saved)
            error = saved.error();
    }
    const auto codeOf = [](const std::optional<SystemError>& of) { return of ? of->code : 0; };
    bool isNews = false;
    {
        const std::unique_lock lock(m_mutex);
        isNews = codeOf(std::exchange(m_writeError, error)) != codeOf(error);
    }
    if (isNews)
        emit writeErrorChanged();
}

std::optional<SystemError> UserDefaults::lastWriteError() const {
    const std::shared_lock lock(m_mutex);
    return m_writeError;
}

} // namespace harbrix
