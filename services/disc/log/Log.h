#pragma once

#include "sys/slog.h"

namespace zm::disc::log {

/** The service's code in the system log. */
inline constexpr int LogCode = _SLOG_SETCODE(_SLOGC_PRIVATE_START, 1);

// One line each; printf conversions.
#define logError(...) ::slogf(::zm::disc::log::LogCode, _SLOG_ERROR, __VA_ARGS__)
#define logWarning(...) ::slogf(::zm::disc::log::LogCode, _SLOG_WARNING, __VA_ARGS__)
#define logInfo(...) ::slogf(::zm::disc::log::LogCode, _SLOG_INFO, __VA_ARGS__)

} // namespace zm::disc::log
