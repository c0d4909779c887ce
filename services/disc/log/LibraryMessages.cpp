#include "services/disc/log/LibraryMessages.h"

#include "services/disc/log/Log.h"

namespace zm::disc::log {

namespace {

// A disc full of damage is not to fill the log.
constexpr std::chrono::seconds Interval{10};
constexpr int MostLines = 20;
constexpr size_t LongestLine = 500;

} // namespace

LibraryMessages::LibraryMessages() : m_before(stderr) {
    cookie_io_functions_t functions{};
    functions.write = &LibraryMessages::write;
    m_stream = ::fopencookie(this, "w", functions);
    if (m_stream) {
        ::setvbuf(m_stream, nullptr, _IOLBF, BUFSIZ);
        stderr = m_stream;
    }
}

LibraryMessages::~LibraryMessages() {
    stderr = m_before;
    if (m_stream) {
        ::fclose(m_stream);
    }
}

ssize_t LibraryMessages::write(void* self, const char* bytes, size_t size) {
    static_cast<LibraryMessages*>(self)->add({bytes, size});
    return static_cast<ssize_t>(size);
}

void LibraryMessages::add(std::string_view text) {
    const MutexLock lock(m_mutex);
    for (const char c : text) {
        if (c == '\n') {
            endLine();
        } else if (m_line.size() < LongestLine) {
            m_line += c;
        }
    }
}

void LibraryMessages::endLine() {
    const auto now = Clock::now();
    if (now - m_begun > Interval) {
        m_begun = now;
        m_lines = 0;
    }
    if (!m_line.empty() && ++m_lines <= MostLines) {
        logWarning("a library says: %s%s\n", m_line.c_str(),
                   m_lines == MostLines ? "; what follows now is left out" : "");
    }
    m_line.clear();
}

} // namespace zm::disc::log
