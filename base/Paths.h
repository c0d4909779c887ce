#pragma once

#include "base/Result.h"

#include <cstddef>
#include <string>

namespace zm {

/**
 * The runtime folder that holds all sockets, the catalogue and the log: environment variable "ZM_RUNTIME",
 * else "$XDG_RUNTIME_DIR/zmbench", else "/tmp/zmbench-UID". Without a slash at its end.
 */
std::string runtimeDir();

/** Makes `dir` with mode 0700 (parents too); fails if it belongs to somebody else. */
Status makeRuntimeDir(const std::string& dir);

/** Where things lie inside the runtime folder `dir`. */
std::string ppsSocket(const std::string& dir);
std::string screenSocket(const std::string& dir);
std::string shellSocket(const std::string& dir);
std::string ctlSocket(const std::string& dir);
std::string logFile(const std::string& dir);
/**
 * Writes where this process's log lies to `path`, ended with a NUL; false if `size` bytes do not hold it. Unlike
 * the others it may be called in a signal handler.
 */
bool logFile(char* path, size_t size);

/** The catalogue database: environment variable "ZM_CATALOGUE", else "DIR/discdb.sqlite". */
std::string catalogueFile(const std::string& dir);

/** Where discs were left: environment variable "ZM_RESUME", else "DIR/resume.sqlite". */
std::string resumeFile(const std::string& dir);

} // namespace zm
