#pragma once

#include <QDBusConnection>
#include <QString>

#include <memory>

namespace harbrix {

/// The claim of being the one running program of this user: a locked file in the runtime directory,
/// and the name on the session bus where there is one. Both, so that a start with a bus and one
/// without see each other.
class SingleInstance {
public:
    /// Takes the lock and looks whether the name has an owner. Without a runtime directory the file
    /// lies in the directory for temporary files.
    SingleInstance(const QString& identifier, const QString& runtimeDirectory,
                   const QDBusConnection& bus = QDBusConnection::sessionBus());
    ~SingleInstance();

    /// Takes the name, which the connection owns then: once the objects are exported on it that
    /// callers of the name expect.
    void claimName();
    /// Whether this process holds the claim.
    [[nodiscard]] bool isFirst() const;
    /// Gives the claim back, so that another process can start.
    void release();
    /// Asks the process that holds it to come to the front with all its windows
    /// (org.freedesktop.Application.Activate); waits no longer than a second for its answer.
    /// Whether it has answered; without a bus there is no way to ask it.
    bool activateOther() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace harbrix
