#pragma once

#include <cstddef>

namespace zm {

/** A character buffer that never uses the heap, for signal handlers: a large one is mapped by the kernel. */
class LogBuffer {
public:
    explicit LogBuffer(size_t size);
    ~LogBuffer();
    LogBuffer(const LogBuffer&) = delete;
    LogBuffer& operator=(const LogBuffer&) = delete;

    /** Null if the system has no memory. */
    char* data() { return m_data; }
    size_t size() const { return m_size; }

private:
    char m_small[1024];
    char* m_data = m_small;
    size_t m_size;
};

} // namespace zm
