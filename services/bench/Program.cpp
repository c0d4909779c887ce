#include "services/bench/Program.h"

#include "base/ProgramFolders.h"
#include "services/bench/Bench.h"
#include "services/bench/RuntimeLock.h"

#include <signal.h>

#include <cstdio>
#include <utility>

namespace zm::bench {

int failProgram(const char* name, const std::string& why) {
    std::fprintf(stderr, "%s: %s\n", name, why.c_str());
    return 1;
}

int runBench(EventLoop& loop, const char* name, Options options, const ProgramNotices& notices) {
    const ProgramFolders folders = programFolders();
    options.unit.programDir = folders.programs;
    options.unit.shareDir = folders.share;
    const auto lock = takeRuntime(options.unit.runtimeDir);
    if (!lock) {
        return failProgram(name, lock.error());
    }
    ::signal(SIGPIPE, SIG_IGN);
    const auto onTerm = watchSignal(loop, SIGTERM, [&loop] { loop.quit(); });
    const auto onInterrupt = watchSignal(loop, SIGINT, [&loop] { loop.quit(); });
    Bench bench(loop, std::move(options));
    bench.onReady = notices.onReady;
    if (auto started = bench.start(); !started) {
        return failProgram(name, started.error());
    }
    loop.run();
    if (notices.onStopping) {
        notices.onStopping();
    }
    return 0;
}

} // namespace zm::bench
