#include "platform/linux/slog/LogFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <ctime>
#include <iterator>
#include <optional>

namespace zm {

namespace {

UniqueFd openForReading(const std::string& path) {
    return UniqueFd(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
}

bool sameFile(const UniqueFd& a, const UniqueFd& b) {
    struct stat first {};
    struct stat second {};
    return fstat(a.get(), &first) == 0 && fstat(b.get(), &second) == 0 && first.st_ino == second.st_ino &&
           first.st_dev == second.st_dev;
}

/** Cuts the next word off the line. */
std::string_view takeWord(std::string_view& line) {
    size_t end = line.find(' ');
    std::string_view word = line.substr(0, end);
    line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
    return word;
}

std::optional<int> toNumber(std::string_view word) {
    int value = 0;
    auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    return error == std::errc{} && end == word.data() + word.size() ? std::optional(value) : std::nullopt;
}

/** Of a moment in universal time, which ends with "Z"; another text stays as it is. */
std::string localTime(std::string_view word) {
    std::string text(word);
    tm moment{};
    const char* rest = text.ends_with('Z') ? strptime(text.c_str(), "%Y-%m-%dT%H:%M:%S", &moment) : nullptr;
    if (!rest) {
        return text;
    }
    const time_t seconds = timegm(&moment);
    localtime_r(&seconds, &moment);
    char begin[32];
    const size_t length = strftime(begin, sizeof begin, "%Y-%m-%dT%H:%M:%S", &moment);
    return std::string(begin, length) + std::string(rest, text.c_str() + text.size() - 1);
}

std::optional<LogEntry> parse(std::string_view line) {
    LogEntry entry;
    entry.time = localTime(takeWord(line));
    entry.process = takeWord(line);
    auto pid = toNumber(takeWord(line));
    auto severity = toNumber(takeWord(line));
    std::string_view code = takeWord(line);
    if (!pid || !severity || !code.starts_with("0x")) {
        return std::nullopt;
    }
    entry.pid = *pid;
    entry.severity = *severity;
    entry.text = line;
    return entry;
}

void append(std::vector<LogEntry>& entries, std::vector<LogEntry> more) {
    entries.insert(entries.end(), std::move_iterator(more.begin()), std::move_iterator(more.end()));
}

} // namespace

LogReader::LogReader(std::string path) : m_path(std::move(path)), m_fd(openForReading(m_path)) {
    if (!m_fd.valid()) {
        m_fd = openForReading(m_path + ".old");
    }
    if (m_fd.valid()) {
        lseek(m_fd.get(), 0, SEEK_END);
    }
}

std::vector<LogEntry> LogReader::drain() {
    std::vector<LogEntry> entries;
    char block[64 * 1024];
    ssize_t count = 0;
    while (m_fd.valid() && (count = ::read(m_fd.get(), block, sizeof block)) > 0) {
        m_partial.append(block, static_cast<size_t>(count));
        std::string_view rest = m_partial;
        for (size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
            if (auto entry = parse(rest.substr(0, end))) {
                entries.push_back(std::move(*entry));
            }
            rest.remove_prefix(end + 1);
        }
        m_partial.erase(0, m_partial.size() - rest.size());
    }
    return entries;
}

std::vector<LogEntry> LogReader::drainFile(UniqueFd file) {
    m_fd = std::move(file);
    m_partial.clear();
    return drain();
}

std::vector<LogEntry> LogReader::last(size_t n) {
    Files files = openBoth();
    std::vector<LogEntry> old = drainFile(std::move(files.old));
    std::vector<LogEntry> entries;
    if (files.current.valid()) {
        entries = drainFile(std::move(files.current));
    }
    if (entries.size() < n) {
        append(old, std::move(entries));
        entries = std::move(old);
    }
    if (entries.size() > n) {
        entries.erase(entries.begin(), entries.end() - static_cast<ptrdiff_t>(n));
    }
    return entries;
}

LogReader::Files LogReader::openBoth() const {
    while (true) {
        Files files{openForReading(m_path), openForReading(m_path + ".old")};
        // A file put aside between the two calls would be read twice, and the one before it not at all.
        if (!files.current.valid() || !files.old.valid() || !sameFile(files.current, files.old)) {
            return files;
        }
    }
}

std::vector<LogEntry> LogReader::readNew() {
    Files files = openBoth();
    // What is read so far may have been put aside, and may have grown until then.
    std::vector<LogEntry> entries = drain();
    if (!files.current.valid() || (m_fd.valid() && sameFile(m_fd, files.current))) {
        return entries;
    }
    if (files.old.valid() && !(m_fd.valid() && sameFile(m_fd, files.old))) {
        append(entries, drainFile(std::move(files.old)));
    }
    append(entries, drainFile(std::move(files.current)));
    return entries;
}

} // namespace zm
