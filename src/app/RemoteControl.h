#pragma once

#include "app/RecordExchange.h"
#include "app/ShareRequests.h"
#include "base/Task.h"
#include "base/TaskScope.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QJsonObject>
#include <QObject>

#include <map>

namespace harbrix {

class AppStateManager;
class AutoMountStrategy;
class KeychainManager;
class LogManager;
class MountOperations;
class NASConfigStore;
class NetworkMonitor;
class SettingsControl;
class UserDefaults;

/// What the remote control hands its calls on to.
struct RemoteControlled {
    NASConfigStore& store;
    AppStateManager& appState;
    KeychainManager& keychain;
    MountOperations& engine;
    NetworkMonitor& network;
    AutoMountStrategy& strategy;
    SettingsControl& settings;
    LogManager& log;
    UserDefaults& defaults;
};

/// The running program as an object on the session bus, for harbrixctl and scripts. It does what
/// the windows do, by the same services, and decides nothing itself. Shares are given by name or
/// id; answers are JSON texts (UTF-8) as ShareDescription.h has them, with "volume" added.
///
/// A password comes in as bytes of a message and goes to the secret store; it is in no error, no
/// log line and no answer but that of an export which asks for it. The session bus is the user's
/// own: the daemon admits no other user, and a process of the same user that could listen in can
/// read the user's files anyway.
///
/// Main thread only. A call that waits is answered when its flow has ended; others are served
/// meanwhile.
class RemoteControl : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.harbrix.RemoteControl1")
    Q_PROPERTY(QString Version READ version CONSTANT SCRIPTABLE true)

public:
    explicit RemoteControl(RemoteControlled services);
    ~RemoteControl() override;

    /// Makes the object visible on the connection, which should own the program's name; false
    /// where the bus refuses.
    [[nodiscard]] bool publish(QDBusConnection connection);

    [[nodiscard]] QString version() const;
    /// How many calls wait for their flow.
    [[nodiscard]] std::size_t runningCalls() const { return m_calls.running(); }

public slots:
    /// {"application": state, "network": {...}, "shares": [...]} in the order of adding.
    Q_SCRIPTABLE QString Status();
    Q_SCRIPTABLE QString ShareStatus(const QString& share);

    /// Adds a share with the given settings (applySettings()) on top of a blank record. The answer
    /// is the share, with "passwordStored" telling whether a given password reached the secret
    /// store. Empty bytes are no password. Mounts nothing.
    Q_SCRIPTABLE QString Add(const QString& settings, const QByteArray& password);
    /// Changes the named settings of a share and, where one is given, its password.
    Q_SCRIPTABLE QString Edit(const QString& share, const QString& settings,
                              const QByteArray& password);
    /// Removes the record and its stored password. Does not unmount; the answer is the share as it
    /// was.
    Q_SCRIPTABLE QString Remove(const QString& share);

    /// Answered with the share once the flow has ended, however it ended.
    Q_SCRIPTABLE QString Mount(const QString& share);
    Q_SCRIPTABLE QString Unmount(const QString& share);
    /// Answered like Status() once all flows have ended.
    Q_SCRIPTABLE QString MountAll();
    Q_SCRIPTABLE QString UnmountAll();

    /// The records of all shares as a JSON array, in the form that they are stored in.
    Q_SCRIPTABLE QString ExportRecords(bool withPasswords);
    /// Adds the records of such an array and updates those whose id is known; all or nothing. With
    /// `isTrial`, only tells what would be done. RecordExchange::imported() has the answer.
    Q_SCRIPTABLE QString ImportRecords(const QByteArray& records, bool isTrial);

    /// Every setting of the user as SettingsControl::describe() has it.
    Q_SCRIPTABLE QString ListSettings();
    Q_SCRIPTABLE QString GetSetting(const QString& key);
    /// Takes the value as a user types it (parseSetting()). The answer is the setting as it is now.
    Q_SCRIPTABLE QString SetSetting(const QString& key, const QString& value);
    Q_SCRIPTABLE QString ResetSetting(const QString& key);

    /// {"files": [older, current], "fileEnabled": whether lines go there now}; what was logged
    /// before the call is in the files.
    Q_SCRIPTABLE QString LogFiles();
    /// Removes the files; answered when they are gone.
    Q_SCRIPTABLE QString ClearLog();

    /// Ends the program in the regular way, after the answer.
    Q_SCRIPTABLE void Quit();

signals:
    /// A share was added or changed, or its state did; without "volume".
    Q_SCRIPTABLE void ShareChanged(const QString& share);
    Q_SCRIPTABLE void ShareRemoved(const QString& id);

    void quitRequested();

private:
    using Answer = std::expected<QString, Refusal>;

    QString answerWith(Task<Answer> flow);
    QString answerAtOnce(const Answer& answer);
    Task<void> sendAnswer(QDBusMessage request, QDBusConnection connection, Task<Answer> flow);

    // RemoteControl.cpp
    /// The answer of a call that changes what is stored; a refusal where it could not be written.
    Task<Answer> saved(Task<Answer> flow);

    Task<Answer> wholeStatus();
    Task<Answer> shareStatus(QString share);
    Task<Answer> add(QString settings, QByteArray password);
    Task<Answer> edit(QString share, QString settings, QByteArray password);
    Task<Answer> removeShare(QString share);
    Task<Answer> mountShare(QString share);
    Task<Answer> unmountShare(QString share);
    Task<Answer> mountAllShares();
    Task<Answer> unmountAllShares();

    // RemoteSupport.cpp
    Task<Answer> exportRecords(bool withPasswords);
    Task<Answer> importRecords(QByteArray records, bool isTrial);
    Task<Answer> logFiles();
    Task<Answer> clearLog();
    Task<Answer> listSettings();
    Task<Answer> getSetting(QString key);
    Task<Answer> setSetting(QString key, QString value);
    Task<Answer> resetSetting(QString key);

    [[nodiscard]] QJsonObject describeNow(const NASConfig& config) const;
    [[nodiscard]] QJsonObject describeNetwork() const;
    Task<QJsonObject> describeWithVolume(NASConfig config);
    Task<void> describeInto(NASConfig config, QJsonObject* description);
    /// Whether the record's password, if it has one to keep, is in the secret store now.
    Task<bool> storePassword(NASConfig config);

    void announce(const NASConfig& config);
    void announceList();

    RemoteControlled m_services;
    RecordExchange m_records;
    std::map<QUuid, QString> m_announced; ///< what was last told of each record
    TaskScope m_calls;
};

} // namespace harbrix
