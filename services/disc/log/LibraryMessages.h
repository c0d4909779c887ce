#pragma once

#include <chrono>
#include <cstdio>
#include <mutex>
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
    void endLine();

    std::mutex m_mutex;
    std::string m_line;
    Clock::time_point m_begun = Clock::now(); ///< of the time in which lines are counted
    int m_lines = 0;
    FILE* m_before;
    FILE* m_stream;
};

} // namespace zm::disc::log
