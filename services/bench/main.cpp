#include "base/About.h"
#include "base/Paths.h"
#include "services/bench/Bench.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>

#include <cstdio>
#include <filesystem>

using namespace zm;

namespace {

int fail(const std::string& why) {
    std::fprintf(stderr, "zmbench: %s\n", why.c_str());
    return 1;
}

// Held as long as the process lives: one bench for each runtime folder.
Result<UniqueFd> lockRuntime(const std::string& dir) {
    UniqueFd lock(::open((dir + "/lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!lock.valid()) {
        return systemError(dir + "/lock");
    }
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        return Error{"another bench already runs in " + dir +
                     "; end it or choose another folder with --runtime"};
    }
    return lock;
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
    const auto self = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    options->unit.programDir = self.string();
    options->unit.shareDir = (self / "../share").lexically_normal().string();

    const std::string& dir = options->unit.runtimeDir;
    if (auto made = makeRuntimeDir(dir); !made) {
        return fail(made.error());
    }
    auto lock = lockRuntime(dir);
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
