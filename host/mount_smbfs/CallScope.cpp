#include "mount_smbfs/CallScope.h"

namespace harbrix {

namespace {
thread_local CallScope* currentScope = nullptr;
constexpr std::chrono::seconds patience(1);
} // namespace

CallScope::CallScope(fuse_req_t request) : m_request(request) {
    currentScope = this;
    fuse_req_interrupt_func(request, &CallScope::noteInterrupt, this);
}

CallScope::~CallScope() {
    fuse_req_interrupt_func(m_request, nullptr, nullptr);
    currentScope = nullptr;
}

CallScope* CallScope::current() {
    return currentScope;
}

bool CallScope::shouldGiveUp() const {
    return m_isInterrupted && std::chrono::steady_clock::now() - m_begin >= patience;
}

void CallScope::noteInterrupt(fuse_req_t, void* scope) {
    static_cast<CallScope*>(scope)->m_isInterrupted = true;
}

} // namespace harbrix
