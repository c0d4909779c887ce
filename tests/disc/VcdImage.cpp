#include "tests/disc/VcdImage.h"

#include "BuildPaths.h"
#include "base/UniqueFd.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace zm::test {

std::string vcdImage(const std::string& kind) {
    namespace fs = std::filesystem;
    const fs::path cache = fs::path(ZM_BINARY_DIR) / "disc-samples";
    fs::create_directories(cache);
    // Tests run beside each other; only one of them makes the disc.
    const UniqueFd lock(::open((cache / ("lock-vcd-" + kind)).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    ::flock(lock.get(), LOCK_EX);
    const std::string folder = (cache / ("vcd-" + kind)).string();
    if (!fs::exists(folder + ".made")) {
        const std::string command =
            std::string(ZM_SOURCE_DIR) + "/tests/disc/make-vcd " + kind + " '" + folder + "'";
        if (std::system(command.c_str()) != 0) {
            throw std::runtime_error("failed: " + command);
        }
        std::ofstream(folder + ".made").flush();
    }
    return folder + "/disc.cue";
}

} // namespace zm::test
