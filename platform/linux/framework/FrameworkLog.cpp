#include "platform/linux/framework/FrameworkLog.h"

#include "base/Mutex.h"
#include "sys/slog.h"

#include <cstdio>

namespace zm {

namespace {

Mutex nameMutex;

std::string& logName() ZM_REQUIRES(nameMutex) {
    static std::string name = "framework";
    return name;
}

void tell(int severity, const std::string& text) {
    std::string name;
    {
        MutexLock lock(nameMutex);
        name = logName();
    }
    slogf(_SLOG_SETCODE(0, _SLOGC_PRIVATE_START), severity, "[%s] %s\n", name.c_str(), text.c_str());
    std::fprintf(stderr, "%s: %s\n", name.c_str(), text.c_str());
}

} // namespace

void setLogName(const std::string& name) {
    MutexLock lock(nameMutex);
    logName() = name;
}

void reportFailure(const std::string& text) {
    tell(_SLOG_ERROR, text);
}

void reportNews(const std::string& text) {
    tell(_SLOG_INFO, text);
}

} // namespace zm
