#include "tests/disc/DvdDisc.h"

#include "BuildPaths.h"
#include "base/UniqueFd.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace zm::test {

namespace {

constexpr const char* kindNames[] = {"menus",  "formats", "film",   "sync",
                                     "shapes", "stills",  "angles", "slides"};

} // namespace

std::string dvdFolder(DvdKind kind) {
    namespace fs = std::filesystem;
    const std::string name = kindNames[static_cast<int>(kind)];
    const fs::path cache = fs::path(ZM_BINARY_DIR) / "disc-samples";
    fs::create_directories(cache);
    // Tests run beside each other; only one of them makes the disc.
    const UniqueFd lock(::open((cache / ("lock-dvd-" + name)).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    ::flock(lock.get(), LOCK_EX);
    const std::string folder = (cache / ("dvd-" + name)).string();
    if (!fs::exists(folder + ".made")) {
        const std::string command =
            std::string(ZM_SOURCE_DIR) + "/tests/disc/make-dvd " + name + " '" + folder + "'";
        if (std::system(command.c_str()) != 0) {
            throw std::runtime_error("failed: " + command);
        }
        std::ofstream(folder + ".made").flush();
    }
    return folder;
}

pid_t dvdReaderOf(pid_t service) {
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        std::ifstream stat(entry.path() / "stat");
        pid_t pid = 0;
        std::string name;
        std::string state;
        pid_t above = 0;
        if (stat >> pid >> name >> state >> above && above == service && name == "(zmdvd)" && state != "Z") {
            return pid;
        }
    }
    return 0;
}

} // namespace zm::test
