#include "platform/linux/slog/LogBuffer.h"

#include <sys/mman.h>

namespace zm {

LogBuffer::LogBuffer(size_t size) : m_size(size) {
    if (size > sizeof m_small) {
        void* memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        m_data = memory == MAP_FAILED ? nullptr : static_cast<char*>(memory);
    }
}

LogBuffer::~LogBuffer() {
    if (m_data && m_data != m_small) {
        ::munmap(m_data, m_size);
    }
}

} // namespace zm
