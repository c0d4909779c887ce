#include "services/film/SharedMemory.h"

#include <sys/mman.h>

#include <utility>

namespace zm::film {

Result<SharedMemory> SharedMemory::map(int fd, size_t size) {
    void* bytes = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (bytes == MAP_FAILED) {
        return systemError("shared memory");
    }
    return SharedMemory(bytes, size);
}

SharedMemory::SharedMemory(SharedMemory&& other) noexcept
    : m_bytes(std::exchange(other.m_bytes, nullptr)), m_size(other.m_size) {}

SharedMemory::~SharedMemory() {
    if (m_bytes) {
        ::munmap(m_bytes, m_size);
    }
}

} // namespace zm::film
