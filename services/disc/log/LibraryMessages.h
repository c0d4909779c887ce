#pragma once

#include "base/Mutex.h"

#include <chrono>
#include <cstdio>
#include <string>
#include <string_view>

namespace zm::disc::log {

/**
 * While it lives, what libraries print on standard error goes to the system log, a line each: a damaged disc makes some of them
 * talk, and nobody reads what they say there. What is written to the descriptor itself stays where it is. One at a time.
 */
class LibraryMessages {
public:
    LibraryMessages();
    ~LibraryMessages();
    LibraryMessages(const LibraryMessages&) = delete;
    LibraryMessages& operator=(const LibraryMessages&) = delete;

private:
    using Clock = std::chrono::steady_clock;

    static ssize_t write(void* self, const char* bytes, size_t size);
    void add(std::string_view text);
    void endLine() ZM_REQUIRES(m_mutex);

    Mutex m_mutex;
    std::string m_line ZM_GUARDED_BY(m_mutex);
    /** Of the time in which lines are counted. */
    Clock::time_point m_begun ZM_GUARDED_BY(m_mutex) = Clock::now();
    int m_lines ZM_GUARDED_BY(m_mutex) = 0;
    FILE* m_before;
    FILE* m_stream;
};

} // namespace zm::disc::log
