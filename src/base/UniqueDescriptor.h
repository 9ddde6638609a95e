#pragma once

#include <unistd.h>

#include <utility>

namespace harbrix {

/// Owns a file descriptor and closes it once.
class UniqueDescriptor {
public:
    UniqueDescriptor() = default;
    explicit UniqueDescriptor(int descriptor) : m_descriptor(descriptor) {}
    UniqueDescriptor(UniqueDescriptor&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    UniqueDescriptor& operator=(UniqueDescriptor&& other) noexcept {
        if (this != &other)
            reset(std::exchange(other.m_descriptor, -1));
        return *this;
    }
    UniqueDescriptor(const UniqueDescriptor&) = delete;
    UniqueDescriptor& operator=(const UniqueDescriptor&) = delete;
    ~UniqueDescriptor() { reset(); }

    [[nodiscard]] int get() const { return m_descriptor; }
    [[nodiscard]] explicit operator bool() const { return m_descriptor >= 0; }
    [[nodiscard]] int release() { return std::exchange(m_descriptor, -1); }
    void reset(int descriptor = -1) {
        const int old = std::exchange(m_descriptor, descriptor);
        if (old >= 0)
            ::close(old);
    }

private:
    int m_descriptor = -1;
};

} // namespace harbrix
