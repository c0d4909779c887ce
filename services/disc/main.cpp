#include "base/About.h"
#include "base/Paths.h"
#include "services/disc/Service.h"
#include "services/disc/dvd/Sound.h"
#include "services/disc/engine/DecoderEngine.h"
#include "services/disc/engine/ScreenFrames.h"
#include "services/disc/log/LibraryMessages.h"
#include "services/disc/log/Log.h"

#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr const char* usage = "usage: zmdiscd [--disc PATH] [--drive DEVICE|auto] | --version | --help\n"
                              "The disc service of the runtime folder in ZM_RUNTIME; ZM_CATALOGUE names the "
                              "catalogue file, ZM_RESUME that of\n"
                              "remembered discs.\n";

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (zm::answerAbout(arguments, "zmdiscd", usage)) {
        return 0;
    }
    std::string disc;
    std::string drive;
    for (size_t i = 0; i < arguments.size(); i += 2) {
        const bool known = arguments[i] == "--disc" || arguments[i] == "--drive";
        if (!known || i + 1 == arguments.size()) {
            std::fputs(usage, stderr);
            return 2;
        }
        (arguments[i] == "--disc" ? disc : drive) = arguments[i + 1];
    }
    const std::string runtime = zm::runtimeDir();
    if (auto status = zm::makeRuntimeDir(runtime); !status) {
        std::fprintf(stderr, "zmdiscd: %s\n", status.error().c_str());
        return 1;
    }
    zm::EventLoop loop;
    const auto term = zm::watchSignal(loop, SIGTERM, [&] { loop.quit(); });
    const auto interrupt = zm::watchSignal(loop, SIGINT, [&] { loop.quit(); });
    const auto frames = std::make_shared<zm::disc::engine::ScreenFrames>(zm::screenSocket(runtime));
    const auto makeEngine = [&](zm::EventLoop& home) {
        return std::make_unique<zm::disc::engine::DecoderEngine>(home, frames);
    };
    const auto makeDvdEngine = [&](zm::EventLoop& home) {
        return std::make_unique<zm::disc::dvd::Engine>(home, frames, zm::disc::dvd::makeSound);
    };
    auto service = zm::disc::Service::start(loop, runtime, zm::catalogueFile(runtime),
                                            zm::resumeFile(runtime), disc, makeEngine, makeDvdEngine, drive);
    if (!service) {
        std::fprintf(stderr, "zmdiscd: %s\n", service.error().c_str());
        return 1;
    }
    logInfo("started\n");
    const zm::disc::log::LibraryMessages messages;
    loop.run();
    logInfo("ends\n");
    return 0;
}
