#pragma once

#include <QString>

#include <memory>

namespace harbrix {

/// The claim of being the one running program of this user: the session bus name, or, without a
/// bus, a locked file in the runtime directory.
class SingleInstance {
public:
    /// Tries to make the claim.
    SingleInstance(const QString& identifier, const QString& runtimeDirectory);
    ~SingleInstance();

    /// Whether this process holds the claim.
    [[nodiscard]] bool isFirst() const;
    /// Asks the process that holds it to come to the front with all its windows
    /// (org.freedesktop.Application.Activate); waits no longer than a second for its answer.
    void activateOther() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace harbrix
