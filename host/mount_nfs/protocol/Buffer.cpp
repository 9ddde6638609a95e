#include "mount_nfs/protocol/Buffer.h"

#include <utility>

namespace harbrix::nfs {

Buffer::Buffer(BufferPool& pool, std::unique_ptr<std::uint8_t[]> memory, std::size_t capacity)
    : m_pool(pool), m_memory(std::move(memory)), m_capacity(capacity) {}

Buffer::~Buffer() {
    m_pool.giveBack(std::move(m_memory), m_capacity);
}

std::shared_ptr<Buffer> BufferPool::allocate(std::size_t size) {
    std::size_t capacity = size;
    std::unique_ptr<std::uint8_t[]> memory;
    if (size > smallestClass / 2) {
        std::size_t classSize = smallestClass;
        for (std::size_t index = 0; index < classes; ++index, classSize *= 2) {
            if (size > classSize + headRoom)
                continue;
            capacity = classSize + headRoom;
            if (!m_kept[index].empty()) {
                memory = std::move(m_kept[index].back());
                m_kept[index].pop_back();
            }
            break;
        }
    }
    if (!memory)
        memory = std::make_unique_for_overwrite<std::uint8_t[]>(capacity);
    m_used += capacity;
    return std::make_shared<Buffer>(*this, std::move(memory), capacity);
}

void BufferPool::giveBack(std::unique_ptr<std::uint8_t[]> memory, std::size_t capacity) {
    m_used -= capacity;
    std::size_t classSize = smallestClass;
    for (std::size_t index = 0; index < classes; ++index, classSize *= 2) {
        if (capacity == classSize + headRoom && m_kept[index].size() < keptPerClass) {
            m_kept[index].push_back(std::move(memory));
            return;
        }
    }
}

} // namespace harbrix::nfs
