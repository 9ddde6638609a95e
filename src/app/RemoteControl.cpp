#include "app/RemoteControl.h"

#include "app/ShareDescription.h"
#include "automation/AutoMountStrategy.h"
#include "automation/NetworkMonitor.h"
#include "base/Json.h"
#include "base/Utf8.h"
#include "base/Worker.h"
#include "config/NASConfigStore.h"
#include "core/AppStateManager.h"
#include "credentials/KeychainManager.h"
#include "ctl/RemoteInterface.h"
#include "mount/MountOperations.h"
#include "mount/MountPoint.h"
#include "platform/UserDefaults.h"
#include "services/LogManager.h"

#include <QDBusMessage>
#include <QJsonArray>
#include <QJsonDocument>

namespace harbrix {
namespace {

QString jsonText(const QJsonObject& object) {
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

void logEscaped(const std::exception_ptr& escaped) {
    try {
        std::rethrow_exception(escaped);
    } catch (const std::exception& error) {
        log(LogLevel::error,
            QStringLiteral("A call of the remote control failed: ") +
                QString::fromUtf8(error.what()),
            LogCategory::system);
    }
}

} // namespace

RemoteControl::RemoteControl(RemoteControlled services)
    : m_services(services), m_records(services.store, services.keychain), m_calls(logEscaped) {
    connect(&m_services.appState, &AppStateManager::statusChanged, this, [this](const QUuid& id) {
        if (const auto config = m_services.store.config(id))
            announce(*config);
    });
    connect(&m_services.store, &NASConfigStore::changed, this, &RemoteControl::announceList);
    announceList();
}

RemoteControl::~RemoteControl() = default;

bool RemoteControl::publish(QDBusConnection connection) {
    return connection.registerObject(QLatin1String(remote::path), this,
                                     QDBusConnection::ExportScriptableContents);
}

QString RemoteControl::version() const {
    return QStringLiteral(HARBRIX_VERSION);
}

QString RemoteControl::Status() {
    return answerWith(wholeStatus());
}

QString RemoteControl::ShareStatus(const QString& share) {
    return answerWith(shareStatus(share));
}

QString RemoteControl::Add(const QString& settings, const QByteArray& password) {
    return answerWith(saved(add(settings, password)));
}

QString RemoteControl::Edit(const QString& share, const QString& settings,
                            const QByteArray& password) {
    return answerWith(saved(edit(share, settings, password)));
}

QString RemoteControl::Remove(const QString& share) {
    return answerWith(saved(removeShare(share)));
}

QString RemoteControl::Mount(const QString& share) {
    return answerWith(mountShare(share));
}

QString RemoteControl::Unmount(const QString& share) {
    return answerWith(unmountShare(share));
}

QString RemoteControl::MountAll() {
    return answerWith(mountAllShares());
}

QString RemoteControl::UnmountAll() {
    return answerWith(unmountAllShares());
}

void RemoteControl::Quit() {
    // In a later turn, so that the caller has its answer before the program stops to listen.
    QMetaObject::invokeMethod(this, &RemoteControl::quitRequested, Qt::QueuedConnection);
}

QString RemoteControl::answerWith(Task<Answer> flow) {
    setDelayedReply(true);
    m_calls.launch(sendAnswer(message(), connection(), std::move(flow)));
    return {};
}

Task<void> RemoteControl::sendAnswer(QDBusMessage request, QDBusConnection connection,
                                     Task<Answer> flow) {
    const Answer answer = co_await flow;
    if (answer)
        connection.send(request.createReply(*answer));
    else
        connection.send(request.createErrorReply(answer.error().errorName, answer.error().text));
}

Task<RemoteControl::Answer> RemoteControl::saved(Task<Answer> flow) {
    const Answer answer = co_await flow;
    const auto error = m_services.defaults.lastWriteError();
    if (!answer || !error)
        co_return answer;
    co_return std::unexpected(
        Refusal{QLatin1String(remote::notSavedError),
                QStringLiteral("Not saved to %1: %2. The change is lost when Harbrix quits.")
                    .arg(m_services.defaults.filePath(), error->description)});
}

Task<RemoteControl::Answer> RemoteControl::wholeStatus() {
    const std::vector<NASConfig> configs = m_services.store.configs();
    // Side by side: one server that is slow to answer must not add to the others.
    std::vector<QJsonObject> descriptions(configs.size());
    std::vector<Task<void>> looks;
    for (std::size_t i = 0; i < configs.size(); ++i)
        looks.push_back(describeInto(configs[i], &descriptions[i]));
    auto all = whenAll(std::move(looks));
    co_await all;
    QJsonArray shares;
    for (const QJsonObject& description : descriptions)
        shares.append(description);
    const QJsonObject status{{"application", nameOf(m_services.appState.appState().kind)},
                             {"network", describeNetwork()},
                             {"shares", shares}};
    co_return jsonText(status);
}

Task<RemoteControl::Answer> RemoteControl::shareStatus(QString share) {
    const auto config = findShare(m_services.store.configs(), share);
    if (!config)
        co_return std::unexpected(config.error());
    auto look = describeWithVolume(*config);
    const QJsonObject description = co_await look;
    co_return jsonText(description);
}

Task<RemoteControl::Answer> RemoteControl::add(QString settings, QByteArray password) {
    const auto parsed = parseSettings(settings);
    if (!parsed)
        co_return std::unexpected(parsed.error());
    auto draft = applySettings(draftOf(NASConfig::blank()), *parsed, password);
    if (!draft)
        co_return std::unexpected(draft.error());
    const NASConfig config = buildConfig(*draft, std::nullopt);
    auto storing = storePassword(config);
    const bool isStored = co_await storing;
    m_services.store.add(config);
    QJsonObject answer = describeNow(config);
    answer.insert("passwordStored", isStored);
    co_return jsonText(answer);
}

Task<RemoteControl::Answer> RemoteControl::edit(QString share, QString settings,
                                                QByteArray password) {
    const auto parsed = parseSettings(settings);
    if (!parsed)
        co_return std::unexpected(parsed.error());
    const auto before = findShare(m_services.store.configs(), share);
    if (!before)
        co_return std::unexpected(before.error());
    const auto draft = applySettings(draftOf(*before), *parsed, password);
    if (!draft)
        co_return std::unexpected(draft.error());
    auto storing = storePassword(buildConfig(*draft, *before));
    const bool isStored = co_await storing;
    // Another call may have changed or removed the record meanwhile; its changes are kept.
    const auto present = m_services.store.config(before->id);
    if (!present)
        co_return std::unexpected(Refusal{QLatin1String(remote::noSuchShareError),
                                          QStringLiteral("The share was removed meanwhile.")});
    const auto edited = applySettings(draftOf(*present), *parsed, password);
    const NASConfig config = buildConfig(*edited, *present);
    m_services.store.update(config);
    m_services.strategy.launch(m_services.strategy.retryCorrected(config.id));
    QJsonObject answer = describeNow(config);
    answer.insert("passwordStored", isStored);
    co_return jsonText(answer);
}

Task<RemoteControl::Answer> RemoteControl::removeShare(QString share) {
    const auto config = findShare(m_services.store.configs(), share);
    if (!config)
        co_return std::unexpected(config.error());
    auto look = describeWithVolume(*config);
    const QJsonObject description = co_await look;
    m_services.store.remove(config->id);
    co_return jsonText(description);
}

Task<RemoteControl::Answer> RemoteControl::mountShare(QString share) {
    const auto config = findShare(m_services.store.configs(), share);
    if (!config)
        co_return std::unexpected(config.error());
    auto flow = m_services.strategy.mount(config->id);
    co_await flow;
    auto answer = shareStatus(uuidText(config->id));
    co_return co_await answer;
}

Task<RemoteControl::Answer> RemoteControl::unmountShare(QString share) {
    const auto config = findShare(m_services.store.configs(), share);
    if (!config)
        co_return std::unexpected(config.error());
    auto flow = m_services.strategy.unmount(config->id);
    co_await flow;
    auto answer = shareStatus(uuidText(config->id));
    co_return co_await answer;
}

Task<RemoteControl::Answer> RemoteControl::mountAllShares() {
    auto flow = m_services.strategy.mountAll();
    co_await flow;
    auto answer = wholeStatus();
    co_return co_await answer;
}

Task<RemoteControl::Answer> RemoteControl::unmountAllShares() {
    auto flow = m_services.strategy.unmountAll();
    co_await flow;
    auto answer = wholeStatus();
    co_return co_await answer;
}

QJsonObject RemoteControl::describeNow(const NASConfig& config) const {
    ShareFacts facts;
    facts.config = config;
    facts.status = m_services.appState.status(config.id).value_or(NASStatus());
    facts.mountPoint = facts.status.mountPoint ? directoryPath(*facts.status.mountPoint)
                                               : m_services.engine.resolveMountPoint(config);
    facts.isOnline = m_services.network.isConnected();
    facts.match = m_services.network.evaluateBinding(config);
    facts.untilRetry = m_services.strategy.timeUntilRetry(config.id);
    facts.untilDelayedMount = m_services.strategy.timeUntilDelayedMount(config.id);
    facts.failures = m_services.strategy.retryCount(config.id);
    return describe(facts);
}

QJsonObject RemoteControl::describeNetwork() const {
    QJsonObject network{{"connected", m_services.network.isConnected()}};
    if (const auto& address = m_services.network.currentIPAddress())
        network.insert("ipAddress", *address);
    if (const auto& name = m_services.network.currentSSID())
        network.insert("ssid", *name);
    return network;
}

Task<QJsonObject> RemoteControl::describeWithVolume(NASConfig config) {
    const QJsonObject before = describeNow(config);
    auto look = m_services.engine.volumeIsMounted(before.value("mountPoint").toString());
    const bool isThere = co_await look;
    QJsonObject description = describeNow(config);
    description.insert("volume", isThere ? "present" : "missing");
    co_return description;
}

Task<void> RemoteControl::describeInto(NASConfig config, QJsonObject* description) {
    auto look = describeWithVolume(config);
    *description = co_await look;
}

Task<bool> RemoteControl::storePassword(NASConfig config) {
    const bool isToBeStored = config.protocol == NASProtocol::smb &&
                              config.authMethod == AuthMethod::password && config.password &&
                              !config.password->isEmpty();
    if (!isToBeStored)
        co_return false;
    auto call = onWorker([&keychain = m_services.keychain, config] {
        return keychain.savePassword(*config.password, config.keychainIdentifier);
    });
    co_return co_await call;
}

void RemoteControl::announce(const NASConfig& config) {
    const QString description = jsonText(describeNow(config));
    QString& last = m_announced[config.id];
    if (std::exchange(last, description) != description)
        emit ShareChanged(description);
}

void RemoteControl::announceList() {
    for (const NASConfig& config : m_services.store.configs())
        announce(config);
    std::erase_if(m_announced, [this](const auto& entry) {
        if (m_services.store.config(entry.first))
            return false;
        emit ShareRemoved(uuidText(entry.first));
        return true;
    });
}

} // namespace harbrix
