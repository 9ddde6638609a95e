#pragma once

#include <QByteArray>

#include <cstring>

namespace harbrix {

/// Overwrites a buffer that held a secret when the scope ends. It reaches this copy only: libraries
/// that the secret went through may keep their own until the memory is used again.
class WipedOnExit {
public:
    explicit WipedOnExit(QByteArray& buffer) : m_buffer(buffer) {}
    ~WipedOnExit() {
        // A shared buffer belongs to others too; data() would wipe a fresh copy in vain.
        if (m_buffer.isDetached())
            ::explicit_bzero(m_buffer.data(), static_cast<std::size_t>(m_buffer.size()));
    }
    WipedOnExit(const WipedOnExit&) = delete;
    WipedOnExit& operator=(const WipedOnExit&) = delete;

private:
    QByteArray& m_buffer;
};

} // namespace harbrix
