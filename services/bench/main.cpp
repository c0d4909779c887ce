#include "base/About.h"
#include "base/ProgramFolders.h"
#include "services/bench/Bench.h"
#include "services/bench/RuntimeLock.h"

#include <signal.h>

#include <cstdio>

using namespace zm;

namespace {

int fail(const std::string& why) {
    std::fprintf(stderr, "zmbench: %s\n", why.c_str());
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (answerAbout(arguments, "zmbench", bench::Usage)) {
        return 0;
    }
    auto options = bench::parseOptions(arguments);
    if (!options) {
        std::fprintf(stderr, "zmbench: %s\n%s", options.error().c_str(), bench::Usage);
        return 2;
    }
    const ProgramFolders folders = programFolders();
    options->unit.programDir = folders.programs;
    options->unit.shareDir = folders.share;

    const std::string& dir = options->unit.runtimeDir;
    const auto lock = bench::takeRuntime(dir);
    if (!lock) {
        return fail(lock.error());
    }
    ::signal(SIGPIPE, SIG_IGN);
    EventLoop loop;
    const auto onTerm = watchSignal(loop, SIGTERM, [&loop] { loop.quit(); });
    const auto onInterrupt = watchSignal(loop, SIGINT, [&loop] { loop.quit(); });
    bench::Bench bench(loop, *options);
    if (auto started = bench.start(); !started) {
        return fail(started.error());
    }
    loop.run();
    return 0;
}
