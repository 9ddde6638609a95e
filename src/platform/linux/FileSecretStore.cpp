#include "platform/linux/FileSecretStore.h"

#include "base/UniqueDescriptor.h"
#include "platform/AtomicFile.h"
#include "platform/linux/WipedOnExit.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <cerrno>

namespace harbrix {

using namespace std::chrono_literals;

namespace {

constexpr QLatin1String versionKey("version");
constexpr QLatin1String itemsKey("items");
constexpr QLatin1String kindKey("kind");
constexpr QLatin1String attributesKey("attributes");
constexpr QLatin1String secretKey("secret");
constexpr int currentVersion = 1;

QJsonObject withoutSecret(const SecretIdentity& identity) {
    QJsonObject attributes;
    for (auto entry = identity.attributes.begin(); entry != identity.attributes.end(); ++entry)
        attributes.insert(entry.key(), entry.value());
    const bool isGeneric = identity.kind == SecretIdentity::Kind::GenericPassword;
    return {{kindKey,
             isGeneric ? QStringLiteral("genericPassword") : QStringLiteral("internetPassword")},
            {attributesKey, attributes}};
}

auto isItemOf(const SecretIdentity& identity) {
    return [wanted = withoutSecret(identity)](const QJsonValue& item) {
        return item[kindKey] == wanted[kindKey] && item[attributesKey] == wanted[attributesKey];
    };
}

bool isWellFormed(const QJsonValue& item) {
    return item[kindKey].isString() && item[attributesKey].isObject() && item[secretKey].isString();
}

/// Holds off other writers, of this process and of others. The file itself cannot carry the lock,
/// as each write puts a new file in its place.
class WriteLock {
public:
    explicit WriteLock(const QString& path)
        : m_file(::open(QFile::encodeName(path + QStringLiteral(".lock")).constData(),
                        O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600)) {
        const QDeadlineTimer deadline(5s);
        while (m_file && ::flock(m_file.get(), LOCK_EX | LOCK_NB) != 0) {
            if (errno != EWOULDBLOCK || deadline.hasExpired())
                m_file.reset();
            else
                QThread::msleep(5);
        }
    }
    [[nodiscard]] bool isHeld() const { return static_cast<bool>(m_file); }

private:
    UniqueDescriptor m_file;
};

} // namespace

bool FileSecretStore::hasFile() const {
    return QFile::exists(m_path);
}

std::expected<QJsonArray, SecretStore::Status> FileSecretStore::load() const {
    auto text = readFile(m_path);
    if (!text && text.error().code == ENOENT)
        return QJsonArray();
    if (!text)
        return std::unexpected(DecodeError);
    const WipedOnExit wiped(*text);
    const QJsonObject file = QJsonDocument::fromJson(*text).object();
    const QJsonValue items = file[itemsKey];
    if (!items.isArray() || file[versionKey].toInt() != currentVersion)
        return std::unexpected(DecodeError);
    const QJsonArray array = items.toArray();
    if (!std::all_of(array.begin(), array.end(), isWellFormed))
        return std::unexpected(DecodeError);
    return array;
}

SecretStore::Status FileSecretStore::save(const QJsonArray& items) const {
    if (items.isEmpty())
        return QFile::remove(m_path) ? Success : IoError;
    QByteArray text =
        QJsonDocument(QJsonObject{{versionKey, currentVersion}, {itemsKey, items}}).toJson();
    const WipedOnExit wiped(text);
    return replaceFile(m_path, text) ? Success : IoError;
}

SecretStore::Status FileSecretStore::add(const SecretIdentity& identity, const QByteArray& secret) {
    if (!makePrivateParent(m_path))
        return IoError;
    const WriteLock lock(m_path);
    if (!lock.isHeld())
        return IoError;
    auto items = load();
    if (!items)
        return items.error();
    if (std::any_of(items->begin(), items->end(), isItemOf(identity)))
        return DuplicateItem;
    QJsonObject item = withoutSecret(identity);
    item.insert(secretKey, QString::fromLatin1(secret.toBase64()));
    items->append(item);
    return save(*items);
}

SecretStore::Status FileSecretStore::remove(const SecretIdentity& identity) {
    if (!hasFile())
        return NotFound;
    const WriteLock lock(m_path);
    if (!lock.isHeld())
        return IoError;
    const auto items = load();
    if (!items)
        return items.error();
    QJsonArray kept;
    std::copy_if(items->begin(), items->end(), std::back_inserter(kept),
                 std::not_fn(isItemOf(identity)));
    return kept.size() == items->size() ? NotFound : save(kept);
}

std::expected<QByteArray, SecretStore::Status>
FileSecretStore::find(const SecretIdentity& identity) {
    const auto items = load();
    if (!items)
        return std::unexpected(items.error());
    const auto item = std::find_if(items->begin(), items->end(), isItemOf(identity));
    if (item == items->end())
        return std::unexpected(NotFound);
    auto secret = QByteArray::fromBase64Encoding((*item)[secretKey].toString().toLatin1(),
                                                 QByteArray::AbortOnBase64DecodingErrors);
    if (!secret)
        return std::unexpected(DecodeError);
    return secret.decoded;
}

} // namespace harbrix
