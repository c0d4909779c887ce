#include "platform/linux/slog/LogFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>

namespace zm {

namespace {

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

std::string timeText() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    char text[64];
    size_t length = strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &local);
    std::snprintf(text + length, sizeof text - length, ".%03ld", now.tv_nsec / 1'000'000);
    return text;
}

/** Name of the program as one word. */
std::string processName() {
    std::string name = program_invocation_short_name;
    for (char& c : name) {
        c = c == ' ' || c == '\n' ? '_' : c;
    }
    return name.empty() ? "-" : name;
}

std::string makeLine(unsigned code, int severity, std::string_view text) {
    static const std::string process = processName();
    char head[64];
    std::snprintf(head, sizeof head, " %d %d 0x%08x ", static_cast<int>(getpid()), severity, code);
    std::string line = timeText() + ' ' + process + head;
    if (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    for (char c : text) {
        if (c == '\n') {
            line += "\\n";
        } else if (c != '\0') {
            line += c;
        }
    }
    line += '\n';
    return line;
}

} // namespace

LogWriter::LogWriter(std::string path, size_t sizeLimit) : m_path(std::move(path)), m_sizeLimit(sizeLimit) {}

bool LogWriter::openCurrent() {
    m_fd.reset(::open(m_path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    return m_fd.valid();
}

LogWriter::FileState LogWriter::state() const {
    struct stat opened {};
    struct stat named {};
    if (fstat(m_fd.get(), &opened) != 0 || stat(m_path.c_str(), &named) != 0 ||
        opened.st_ino != named.st_ino || opened.st_dev != named.st_dev) {
        return FileState::gone;
    }
    return static_cast<size_t>(opened.st_size) >= m_sizeLimit ? FileState::full : FileState::current;
}

bool LogWriter::write(unsigned code, int severity, std::string_view text) {
    const std::string line = makeLine(code, severity, text);
    std::lock_guard guard(m_mutex);
    if (!m_fd.valid() && !openCurrent()) {
        return false;
    }
    while (true) {
        FileState before;
        {
            FileLock shared(m_fd.get(), LOCK_SH);
            before = state();
            if (before == FileState::current) {
                return ::write(m_fd.get(), line.data(), line.size()) == static_cast<ssize_t>(line.size());
            }
        }
        if (before == FileState::full) {
            FileLock exclusive(m_fd.get(), LOCK_EX);
            // Another process may have put it aside in between.
            if (state() == FileState::full && rename(m_path.c_str(), (m_path + ".old").c_str()) != 0) {
                return false;
            }
        }
        if (!openCurrent()) {
            return false;
        }
    }
}

} // namespace zm
