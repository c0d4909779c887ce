#include "base/Paths.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace zm {

namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

std::string runtimeDir() {
    if (auto dir = environment("ZM_RUNTIME"); !dir.empty()) {
        return dir;
    }
    if (auto dir = environment("XDG_RUNTIME_DIR"); !dir.empty()) {
        return dir + "/zmbench";
    }
    return "/tmp/zmbench-" + std::to_string(getuid());
}

Status makeRuntimeDir(const std::string& dir) {
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(dir).parent_path(), error);
    if (mkdir(dir.c_str(), 0700) != 0 && errno != EEXIST) {
        return systemError(dir);
    }
    struct stat info {};
    if (lstat(dir.c_str(), &info) != 0) {
        return systemError(dir);
    }
    if (!S_ISDIR(info.st_mode) || info.st_uid != getuid()) {
        return Error{dir + ": not a folder of this user"};
    }
    if (chmod(dir.c_str(), 0700) != 0) {
        return systemError(dir);
    }
    return ok();
}

std::string ppsSocket(const std::string& dir) {
    return dir + "/pps.sock";
}
std::string screenSocket(const std::string& dir) {
    return dir + "/screen.sock";
}
std::string shellSocket(const std::string& dir) {
    return dir + "/shell.sock";
}
std::string ctlSocket(const std::string& dir) {
    return dir + "/ctl.sock";
}
std::string logFile(const std::string& dir) {
    return dir + "/slog";
}

std::string catalogueFile(const std::string& dir) {
    auto file = environment("ZM_CATALOGUE");
    return file.empty() ? dir + "/discdb.sqlite" : file;
}

} // namespace zm
