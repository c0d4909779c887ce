// The head unit for everyday use: the bench on this machine's screen, without its page and its commands.
#include "base/About.h"
#include "services/bench/Program.h"
#include "services/unit/Supervisor.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

using namespace zm;

namespace {

constexpr const char* Usage =
    "usage: platen-unit [--disc PATH] [--drive auto|DEVICE] [--audio-device "
    "auto|none|pulse[:NAME]|alsa[:NAME]]\n"
    "                   [--runtime DIR] [--resume FILE] [--resources DIR] [--screen "
    "800x480|1024x600|1280x720]\n"
    "       platen-unit --version | --help\n"
    "The disc player on the whole screen of this machine, with the first disc drive that there is.\n";

// What of the bench's options is for drivers, too; each has a value.
constexpr std::array<std::string_view, 7> Known = {"--disc",   "--drive",     "--audio-device", "--runtime",
                                                   "--resume", "--resources", "--screen"};

Result<bench::Options> parse(const std::vector<std::string>& arguments) {
    for (size_t i = 0; i < arguments.size(); i += 2) {
        if (std::find(Known.begin(), Known.end(), arguments[i]) == Known.end()) {
            return Error{"unknown argument \"" + arguments[i] + "\""};
        }
    }
    auto options = bench::parseOptions(arguments);
    if (options) {
        options->web = false;
        options->commands = false;
        options->display = true;
        options->fullScreen = true;
        options->mpris = true;
        if (options->unit.drive.empty()) {
            options->unit.drive = "auto";
        }
    }
    return options;
}

// Where a service manager or the user's own folder keeps what outlasts a restart.
std::string stateFolder() {
    for (const auto& [name, below] :
         {std::pair{"STATE_DIRECTORY", ""}, std::pair{"XDG_STATE_HOME", "/platen"},
          std::pair{"HOME", "/.local/state/platen"}}) {
        if (const char* folder = std::getenv(name); folder && *folder) {
            return std::string(folder) + below;
        }
    }
    return "";
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (answerAbout(arguments, "platen-unit", Usage)) {
        return 0;
    }
    auto options = parse(arguments);
    if (!options) {
        std::fprintf(stderr, "platen-unit: %s\n%s", options.error().c_str(), Usage);
        return 2;
    }
    if (const std::string folder = stateFolder(); options->unit.resume.empty() && !folder.empty()) {
        std::error_code error;
        std::filesystem::create_directories(folder, error);
        if (error) {
            return bench::failProgram("platen-unit", folder + ": " + error.message());
        }
        options->unit.resume = folder + "/resume.sqlite";
    }
    EventLoop loop;
    unit::Supervisor supervisor(loop);
    return bench::runBench(loop, "platen-unit", *options,
                           {[&supervisor] { supervisor.ready(); }, [&supervisor] { supervisor.stopping(); }});
}
