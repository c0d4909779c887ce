#pragma once

#include "base/EventLoop.h"
#include "services/bench/Options.h"

#include <functional>

namespace zm::bench {

/** What a program has to say while its bench lives; each may be empty. */
struct ProgramNotices {
    std::function<void()> onReady;    ///< the screen can be used
    std::function<void()> onStopping; ///< it is about to end what it has started
};

/**
 * Runs a bench on `loop` until SIGINT or SIGTERM, with the programs and data that lie around the calling program.
 * Gives the exit status; an error has been printed behind the program's `name`.
 */
int runBench(EventLoop& loop, const char* name, Options options, const ProgramNotices& notices = {});

/** Prints why the program `name` cannot go on; gives its exit status. */
int failProgram(const char* name, const std::string& why);

} // namespace zm::bench
