#pragma once

/* The system log. Any thread, and any signal handler. */

#include "sys/slogcodes.h"

#include <stdarg.h>

#ifdef __cplusplus
extern "C" {
#endif

enum {
    _SLOG_SHUTDOWN = 0,
    _SLOG_CRITICAL = 1,
    _SLOG_ERROR = 2,
    _SLOG_WARNING = 3,
    _SLOG_NOTICE = 4,
    _SLOG_INFO = 5,
    _SLOG_DEBUG1 = 6,
    _SLOG_DEBUG2 = 7
};

/* Writes one message; a line feed is added only if the text lacks one. Returns the text's length, or -1 with
 * errno. In a signal handler the format has no conversions of floating-point numbers, wide texts or "%m". */
int slogf(int opcode, int severity, const char* fmt, ...) __attribute__((format(printf, 3, 4)));
int vslogf(int opcode, int severity, const char* fmt, va_list args) __attribute__((format(printf, 3, 0)));

#ifdef __cplusplus
}
#endif
