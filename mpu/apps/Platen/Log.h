#pragma once

#include <sys/slog.h>

#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <cstdio>

/** Severities of the system log, as far as the program uses them. */
enum LOG_LEV_EN {
    LOG_LEV_ERROR = 2,  ///< start-up failures
    LOG_LEV_BANNER = 5, ///< start and end of the program
    LOG_LEV_TRACE = 6,  ///< everything else
};

/**
 * Sends one message of at most 511 bytes to the system log, "_PLATEN_[func]-" before it; callers pass
 * __FUNCTION__. Every source file has its own copy, and with it its own message counter. Any thread.
 */
[[maybe_unused]] __attribute__((format(printf, 3, 4))) static void LOGBASE(LOG_LEV_EN level, const char* func,
                                                                           const char* fmt, ...) {
    constexpr size_t LIMIT = 512;
    constexpr unsigned MINOR_CODE = 20002;
    static std::atomic<unsigned> s_uiCounter{0};

    char szBuffer[LIMIT];
    int nPrefix = std::snprintf(szBuffer, LIMIT, "%s[%s]-", "_PLATEN_", func);
    if (nPrefix >= 0 && static_cast<size_t>(nPrefix) < LIMIT) {
        va_list args;
        va_start(args, fmt);
        std::vsnprintf(szBuffer + nPrefix, LIMIT - static_cast<size_t>(nPrefix), fmt, args);
        va_end(args);
    }
    // Unsigned, as the shift reaches the sign bit after 2047 messages.
    unsigned uiCode = (s_uiCounter.fetch_add(1, std::memory_order_relaxed) << 20) | MINOR_CODE;
    slogf(static_cast<int>(uiCode), level, "%s", szBuffer);
}
