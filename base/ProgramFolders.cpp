#include "base/ProgramFolders.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace zm {

namespace {

namespace fs = std::filesystem;

// The user's folder of what can be made again.
std::string cacheFolder() {
    if (const char* folder = std::getenv("XDG_CACHE_HOME"); folder && *folder) {
        return folder;
    }
    if (const char* folder = std::getenv("HOME"); folder && *folder) {
        return std::string(folder) + "/.cache";
    }
    return "/tmp/cache-" + std::to_string(getuid());
}

} // namespace

ProgramFolders programFolders(const std::string& folder) {
    const auto beside = [&folder](const char* name) {
        return (fs::path(folder) / ".." / name).lexically_normal().string();
    };
    std::error_code unknown;
    // Only an installation has it.
    if (const std::string programs = beside("libexec/platen"); fs::is_directory(programs, unknown)) {
        return {programs, beside("share/platen"), cacheFolder() + "/platen/demo", "platen-demo-disc"};
    }
    return {folder, beside("share"), beside("demo"), "resources/make-demo-disc build/demo"};
}

ProgramFolders programFolders() {
    return programFolders(fs::read_symlink("/proc/self/exe").parent_path().string());
}

} // namespace zm
