#pragma once

/* Message codes of the system log: major number from bit 20 on, minor number below. */
#define _SLOG_SETCODE(major, minor) ((int)(((unsigned)(major) << 20) | (unsigned)(minor)))
#define _SLOGC_PRIVATE_START 10000
#define _SLOGC_PRIVATE_END 20000
