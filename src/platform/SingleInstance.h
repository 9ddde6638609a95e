#pragma once

#include <QDBusConnection>
#include <QString>

#include <memory>

namespace harbrix {

/// The claim of being the one running program of this user: the session bus name, or, without a
/// bus, a locked file in the runtime directory.
class SingleInstance {
public:
    /// Tries to make the claim. The name is owned by this connection, which is also the one to
    /// export the objects on that activateOther() of a later process calls. Without a runtime
    /// directory the file lies in the directory for temporary files.
    SingleInstance(const QString& identifier, const QString& runtimeDirectory,
                   const QDBusConnection& bus = QDBusConnection::sessionBus());
    ~SingleInstance();

    /// Whether this process holds the claim.
    [[nodiscard]] bool isFirst() const;
    /// Asks the process that holds it to come to the front with all its windows
    /// (org.freedesktop.Application.Activate); waits no longer than a second for its answer.
    /// Whether it has answered; without a bus there is no way to ask it.
    bool activateOther() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace harbrix
