#include "sys/slog.h"

#include "base/Paths.h"
#include "platform/linux/slog/LogFile.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <mutex>

namespace {

/** The writer of this process's runtime folder; another one when the folder's name has changed. */
std::shared_ptr<zm::LogWriter> currentWriter() {
    // Never destroyed: threads may log until the process has ended.
    static auto& mutex = *new std::mutex;
    static auto& writer = *new std::shared_ptr<zm::LogWriter>;
    std::string path = zm::logFile(zm::runtimeDir());
    std::lock_guard guard(mutex);
    if (!writer || writer->path() != path) {
        writer = std::make_shared<zm::LogWriter>(std::move(path));
    }
    return writer;
}

std::string formatText(const char* fmt, va_list args) {
    char text[1024];
    va_list again;
    va_copy(again, args);
    int length = std::vsnprintf(text, sizeof text, fmt, args);
    std::string result;
    if (length >= 0 && static_cast<size_t>(length) < sizeof text) {
        result.assign(text, static_cast<size_t>(length));
    } else if (length >= 0) {
        result.resize(static_cast<size_t>(length));
        std::vsnprintf(result.data(), result.size() + 1, fmt, again);
    }
    va_end(again);
    return result;
}

} // namespace

extern "C" int vslogf(int opcode, int severity, const char* fmt, va_list args) {
    const int errnoBefore = errno;
    std::string text = formatText(fmt, args);
    if (!currentWriter()->write(static_cast<unsigned>(opcode), severity, text)) {
        return -1;
    }
    errno = errnoBefore;
    return static_cast<int>(text.size());
}

extern "C" int slogf(int opcode, int severity, const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    int result = vslogf(opcode, severity, fmt, args);
    va_end(args);
    return result;
}
