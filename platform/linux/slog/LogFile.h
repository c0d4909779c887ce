#pragma once

#include "base/Mutex.h"
#include "base/UniqueFd.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zm {

/** One message of the system log. */
struct LogEntry {
    std::string time;    ///< local time, "2015-09-09T10:08:13.042"; the file has universal time with a "Z"
    std::string process; ///< name of the program
    int pid = 0;
    int severity = 0; ///< 0 shutdown ... 2 error ... 5 info, 6 debug
    std::string text; ///< line feeds inside it as the two characters "\n"; one at its end is dropped
};

/**
 * Appends messages to a log file that several processes share. A file that has reached the size limit becomes
 * "PATH.old" (the older one is dropped) and a new one is begun. The file is made on the first message, its
 * folder never. Any thread, and any signal handler: nothing takes memory, asks for the locale or waits for what
 * the interrupted thread may hold.
 */
class LogWriter {
public:
    static constexpr size_t SizeLimit = 8 * 1024 * 1024;
    static constexpr size_t PathLimit = 512;

    constexpr LogWriter() = default;
    explicit LogWriter(std::string_view path, size_t sizeLimit = SizeLimit);
    ~LogWriter();
    LogWriter(const LogWriter&) = delete;
    LogWriter& operator=(const LogWriter&) = delete;

    /** Goes on with another file; false with errno if the path is too long. */
    bool follow(std::string_view path);
    /** Writes one line with one write; false with errno (ENOENT: no such folder). */
    bool write(unsigned code, int severity, std::string_view text);

private:
    enum class FileState { Current, Full, Gone };

    bool append(std::string_view line);
    bool openCurrent() ZM_REQUIRES(m_mutex);
    FileState state() const ZM_REQUIRES(m_mutex);

    mutable Mutex m_mutex;
    char m_path[PathLimit] ZM_GUARDED_BY(m_mutex) = "";
    char m_oldPath[PathLimit] ZM_GUARDED_BY(m_mutex) = "";
    size_t m_sizeLimit = SizeLimit;
    int m_fd ZM_GUARDED_BY(m_mutex) = -1;
};

/** Reads a log file from another process or thread, across its rotation. One thread at a time. */
class LogReader {
public:
    /** The file need not exist yet. `readNew` begins with what is written after this. */
    explicit LogReader(std::string path);

    /** The latest `n` messages (fewer if there are not so many), oldest first;
     * `readNew` goes on behind them. */
    std::vector<LogEntry> last(size_t n);
    /** What was written since the last call of either; empty if nothing. */
    std::vector<LogEntry> readNew();

private:
    struct Files {
        UniqueFd current;
        UniqueFd old;
    };

    /** Two different files, as they stood at one moment; either may be missing. */
    Files openBoth() const;
    /** All whole lines from the present position on. */
    std::vector<LogEntry> drain();
    /** The same of another file, from its beginning. */
    std::vector<LogEntry> drainFile(UniqueFd file);

    std::string m_path;
    UniqueFd m_fd;
    std::string m_partial; ///< the beginning of a line whose end was not there yet
};

} // namespace zm
