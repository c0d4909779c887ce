#include "platform/linux/slog/LogBuffer.h"
#include "platform/linux/slog/LogFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace zm {

namespace {

constexpr std::string_view OldEnding = ".old";
constexpr size_t LongestName = 64;
// Of a line, without name and text.
constexpr size_t LongestHead = 96;

/** Blocks this thread's signal handlers, which may log too, while it holds a lock that they would wait for. */
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t m_before;
};

/**
 * Holds a lock of an open file: shared while a line is written, exclusive while the file is renamed, so that
 * nobody writes to a file that has been put aside.
 */
class FileLock {
public:
    FileLock(int fd, int kind) : m_fd(fd) {
        while (flock(m_fd, kind) != 0 && errno == EINTR) {
        }
    }
    ~FileLock() { flock(m_fd, LOCK_UN); }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

private:
    int m_fd;
};

/** Puts a line together in memory that is large enough. */
class LineText {
public:
    explicit LineText(char* begin) : m_begin(begin), m_end(begin) {}

    LineText& operator<<(char c) {
        *m_end++ = c;
        return *this;
    }
    LineText& operator<<(std::string_view text) {
        m_end = std::copy(text.begin(), text.end(), m_end);
        return *this;
    }
    LineText& number(long long value, int digits = 1, int base = 10) {
        char text[24];
        const char* end = std::to_chars(std::begin(text), std::end(text), value, base).ptr;
        for (auto missing = digits - (end - text); missing > 0; --missing) {
            *this << '0';
        }
        return *this << std::string_view(text, end);
    }
    std::string_view view() const { return {m_begin, m_end}; }

private:
    char* m_begin;
    char* m_end;
};

// Universal time: what the local one is, the C library says only under a lock.
void addTime(LineText& line) {
    using namespace std::chrono;
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    const sys_seconds moment{seconds(now.tv_sec)};
    const auto day = floor<days>(moment);
    const year_month_day date{day};
    const hh_mm_ss time{moment - day};
    line.number(static_cast<int>(date.year()), 4) << '-';
    line.number(static_cast<unsigned>(date.month()), 2) << '-';
    line.number(static_cast<unsigned>(date.day()), 2) << 'T';
    line.number(time.hours().count(), 2) << ':';
    line.number(time.minutes().count(), 2) << ':';
    line.number(time.seconds().count(), 2) << '.';
    line.number(now.tv_nsec / 1'000'000, 3) << 'Z';
}

// The program's name as one word.
void addProcess(LineText& line) {
    const std::string_view name = std::string_view(program_invocation_short_name).substr(0, LongestName);
    for (char c : name) {
        line << (c == ' ' || c == '\n' ? '_' : c);
    }
    if (name.empty()) {
        line << '-';
    }
}

void addText(LineText& line, std::string_view text) {
    if (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    for (char c : text) {
        if (c == '\n') {
            line << "\\n";
        } else if (c != '\0') {
            line << c;
        }
    }
}

} // namespace

LogWriter::LogWriter(std::string_view path, size_t sizeLimit) : m_sizeLimit(sizeLimit) {
    follow(path);
}

LogWriter::~LogWriter() {
    if (m_fd >= 0) {
        ::close(m_fd);
    }
}

bool LogWriter::follow(std::string_view path) {
    const SignalsBlocked blocked;
    MutexLock guard(m_mutex);
    if (path == m_path) {
        return true;
    }
    if (path.size() + OldEnding.size() >= PathLimit) {
        errno = ENAMETOOLONG;
        return false;
    }
    (LineText(m_path) << path) << '\0';
    (LineText(m_oldPath) << path << OldEnding) << '\0';
    if (m_fd >= 0) {
        ::close(m_fd);
        m_fd = -1;
    }
    return true;
}

bool LogWriter::openCurrent() {
    if (m_fd >= 0) {
        ::close(m_fd);
    }
    m_fd = ::open(m_path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    return m_fd >= 0;
}

LogWriter::FileState LogWriter::state() const {
    struct stat opened {};
    struct stat named {};
    if (fstat(m_fd, &opened) != 0 || stat(m_path, &named) != 0 || opened.st_ino != named.st_ino ||
        opened.st_dev != named.st_dev) {
        return FileState::Gone;
    }
    return static_cast<size_t>(opened.st_size) >= m_sizeLimit ? FileState::Full : FileState::Current;
}

bool LogWriter::write(unsigned code, int severity, std::string_view text) {
    // Each line feed inside becomes two characters.
    LogBuffer buffer(LongestHead + LongestName + 2 * text.size());
    if (!buffer.data()) {
        return false;
    }
    LineText line(buffer.data());
    addTime(line);
    addProcess(line << ' ');
    (line << ' ').number(getpid()) << ' ';
    (line.number(severity) << " 0x").number(code, 8, 16) << ' ';
    addText(line, text);
    line << '\n';
    return append(line.view());
}

bool LogWriter::append(std::string_view line) {
    const SignalsBlocked blocked;
    MutexLock guard(m_mutex);
    if (m_fd < 0 && !openCurrent()) {
        return false;
    }
    while (true) {
        FileState before;
        {
            FileLock shared(m_fd, LOCK_SH);
            before = state();
            if (before == FileState::Current) {
                return ::write(m_fd, line.data(), line.size()) == static_cast<ssize_t>(line.size());
            }
        }
        if (before == FileState::Full) {
            FileLock exclusive(m_fd, LOCK_EX);
            // Another process may have put it aside in between.
            if (state() == FileState::Full && rename(m_path, m_oldPath) != 0) {
                return false;
            }
        }
        if (!openCurrent()) {
            return false;
        }
    }
}

} // namespace zm
