#include "tests/disc/Samples.h"

#include "BuildPaths.h"
#include "base/UniqueFd.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace zm::test {

namespace fs = std::filesystem;

std::string sample(const SampleRecipe& recipe) {
    const fs::path cache = fs::path(ZM_BINARY_DIR) / "disc-samples";
    fs::create_directories(cache);
    // Tests run beside each other; only one of them makes the samples.
    const UniqueFd lock(::open((cache / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    ::flock(lock.get(), LOCK_EX);
    const fs::path file = cache / recipe.name;
    if (!fs::exists(file)) {
        const std::string part = (cache / ("part-" + recipe.name)).string();
        const std::string command = "ffmpeg -nostdin -v error -y " + recipe.arguments + " '" + part + "'";
        if (std::system(command.c_str()) != 0) {
            throw std::runtime_error("failed: " + command);
        }
        fs::rename(part, file);
    }
    return file.string();
}

std::string toneFile(const std::string& extension, int seconds, const std::string& title,
                     const std::string& artist, const std::string& album, int track) {
    std::string arguments = "-f lavfi -i sine=frequency=440:duration=" + std::to_string(seconds) + " -ac 1";
    std::string name = "tone-" + std::to_string(seconds);
    const auto tag = [&](const char* key, const std::string& value) {
        if (!value.empty()) {
            arguments += std::string(" -metadata ") + key + "='" + value + "'";
            name += "-" + value;
        }
    };
    tag("title", title);
    tag("artist", artist);
    tag("album", album);
    tag("track", track ? std::to_string(track) : "");
    return sample({name + "." + extension, arguments});
}

void place(const std::string& source, const std::string& target) {
    fs::create_directories(fs::path(target).parent_path());
    fs::copy_file(source, target, fs::copy_options::overwrite_existing);
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeFile(const std::string& target, const std::string& bytes) {
    fs::create_directories(fs::path(target).parent_path());
    std::ofstream(target, std::ios::binary) << bytes;
}

} // namespace zm::test
