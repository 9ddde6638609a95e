#pragma once

namespace harbrix {

class LoginItem;

/// Starts the program at login, or not. Failures are only logged.
class LaunchAtLoginManager {
public:
    explicit LaunchAtLoginManager(const LoginItem& item) : m_item(item) {}

    [[nodiscard]] bool isEnabled() const;
    void setEnabled(bool enabled);

private:
    const LoginItem& m_item;
};

} // namespace harbrix
