#include "sys/slog.h"

#include "base/Paths.h"
#include "platform/linux/slog/LogBuffer.h"
#include "platform/linux/slog/LogFile.h"

#include <cerrno>
#include <cstdio>

namespace {

// Made before any code runs, and never destroyed: threads may log until the process has ended.
union Log {
    constexpr Log() : writer() {}
    ~Log() {}
    zm::LogWriter writer;
};
constinit Log log;

// To the log of the present runtime folder.
int send(int opcode, int severity, const char* text, int length) {
    char path[zm::LogWriter::PathLimit];
    if (!zm::logFile(path, sizeof path)) {
        errno = ENAMETOOLONG;
        return -1;
    }
    const std::string_view message(text, static_cast<size_t>(length));
    return log.writer.follow(path) && log.writer.write(static_cast<unsigned>(opcode), severity, message)
               ? length
               : -1;
}

int format(zm::LogBuffer& text, const char* fmt, va_list args) {
    return text.data() ? std::vsnprintf(text.data(), text.size(), fmt, args) : -1;
}

} // namespace

extern "C" int vslogf(int opcode, int severity, const char* fmt, va_list args) {
    const int errnoBefore = errno;
    va_list again;
    va_copy(again, args);
    zm::LogBuffer text(1024);
    int length = format(text, fmt, args);
    int sent = -1;
    if (length >= 0 && static_cast<size_t>(length) < text.size()) {
        sent = send(opcode, severity, text.data(), length);
    } else if (length >= 0) {
        zm::LogBuffer whole(static_cast<size_t>(length) + 1);
        length = format(whole, fmt, again);
        sent = length >= 0 ? send(opcode, severity, whole.data(), length) : -1;
    }
    va_end(again);
    if (sent >= 0) {
        errno = errnoBefore;
    }
    return sent;
}

extern "C" int slogf(int opcode, int severity, const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    int result = vslogf(opcode, severity, fmt, args);
    va_end(args);
    return result;
}
