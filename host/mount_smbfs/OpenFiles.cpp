#include "mount_smbfs/OpenFiles.h"

namespace harbrix {

namespace {
constexpr std::chrono::milliseconds closingLimit(2500);
} // namespace

OpenFiles::File OpenFiles::find(Number number) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_open.find(number);
    return found == m_open.end() ? nullptr : found->second.file;
}

std::vector<OpenFiles::File> OpenFiles::all() const {
    const std::lock_guard lock(m_mutex);
    std::vector<File> files;
    for (const auto& [number, opened] : m_open)
        files.push_back(opened.file);
    return files;
}

OpenFiles::File OpenFiles::acquire(Number number) {
    const std::lock_guard lock(m_mutex);
    Opened& opened = m_open[number];
    if (!opened.file)
        opened.file =
            std::make_shared<OpenFile>(m_services, [this, number] { return m_nodes.path(number); });
    ++opened.count;
    return opened.file;
}

std::optional<OpenFiles::Released> OpenFiles::release(Number number) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_open.find(number);
    if (found == m_open.end() || --found->second.count > 0)
        return std::nullopt;
    const Released released{found->second.file, found->second.isDoomed};
    m_open.erase(found);
    m_closing.insert(number);
    return released;
}

void OpenFiles::noteClosed(Number number) {
    {
        const std::lock_guard lock(m_mutex);
        m_closing.erase(m_closing.find(number));
    }
    m_closed.notify_all();
}

void OpenFiles::doom(Number number) {
    const std::lock_guard lock(m_mutex);
    if (const auto found = m_open.find(number); found != m_open.end())
        found->second.isDoomed = true;
}

void OpenFiles::waitUntilClosed(Number number) {
    std::unique_lock lock(m_mutex);
    m_closed.wait_for(lock, closingLimit, [&] { return !m_closing.contains(number); });
}

void OpenFiles::releaseHandlesWithin(Number top) {
    std::vector<Number> numbers;
    {
        const std::lock_guard lock(m_mutex);
        for (const auto& [number, opened] : m_open)
            numbers.push_back(number);
        numbers.insert(numbers.end(), m_closing.begin(), m_closing.end());
    }
    for (Number number : m_nodes.within(top, numbers)) {
        waitUntilClosed(number);
        if (const File file = find(number)) {
            (void) file->flush();
            file->releaseHandles();
        }
    }
}

} // namespace harbrix
