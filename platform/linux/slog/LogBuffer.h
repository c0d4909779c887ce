#pragma once

#include <cstddef>

namespace zm {

/** Room for characters that is taken without the heap, so that a signal handler may: a long one from the kernel. */
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
