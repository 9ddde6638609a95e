#include "common/Secret.h"

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>

#include <cstring>
#include <new>
#include <utility>

namespace harbrix {

namespace {
constexpr std::size_t pageSize = 4096;
}

Secret::Secret() {
    void* page =
        ::mmap(nullptr, pageSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (page == MAP_FAILED)
        throw std::bad_alloc();
    m_page = static_cast<char*>(page);
    (void) ::mlock(m_page, pageSize);
    (void) ::madvise(m_page, pageSize, MADV_DONTDUMP);
}

Secret::~Secret() {
    if (!m_page)
        return;
    clear();
    ::munmap(m_page, pageSize);
}

Secret::Secret(Secret&& other) noexcept
    : m_page(std::exchange(other.m_page, nullptr)), m_size(std::exchange(other.m_size, 0)) {}

Secret& Secret::operator=(Secret&& other) noexcept {
    std::swap(m_page, other.m_page);
    std::swap(m_size, other.m_size);
    return *this;
}

bool Secret::append(char c) {
    if (m_size == capacity)
        return false;
    m_page[m_size++] = c;
    return true;
}

void Secret::removeLast() {
    if (m_size > 0)
        m_page[--m_size] = '\0';
}

void Secret::clear() {
    ::explicit_bzero(m_page, pageSize);
    m_size = 0;
}

std::string_view Secret::view() const {
    return {m_page, m_size};
}

void forbidMemoryDumps() {
    (void) ::prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
    const rlimit none{0, 0};
    (void) ::setrlimit(RLIMIT_CORE, &none);
}

} // namespace harbrix
