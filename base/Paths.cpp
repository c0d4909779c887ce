#include "base/Paths.h"

#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace zm {

namespace {

// Null if it is not set or empty.
const char* environment(const char* name) {
    const char* value = std::getenv(name);
    return value && *value ? value : nullptr;
}

// The runtime folder's name in two parts, made without taking memory.
struct FolderName {
    const char* begin = "/tmp/zmbench-";
    char end[16] = "/zmbench";
};

FolderName folderName() {
    FolderName name;
    if (const char* own = environment("ZM_RUNTIME")) {
        name.begin = own;
        name.end[0] = '\0';
    } else if (const char* users = environment("XDG_RUNTIME_DIR")) {
        name.begin = users;
    } else {
        *std::to_chars(std::begin(name.end), std::end(name.end) - 1, getuid()).ptr = '\0';
    }
    return name;
}

} // namespace

std::string runtimeDir() {
    const FolderName name = folderName();
    return std::string(name.begin) + name.end;
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
bool logFile(char* path, size_t size) {
    const FolderName name = folderName();
    for (const char* part : {name.begin, static_cast<const char*>(name.end), "/slog"}) {
        const size_t length = std::strlen(part);
        if (length >= size) {
            return false;
        }
        std::memcpy(path, part, length + 1);
        path += length;
        size -= length;
    }
    return true;
}

std::string catalogueFile(const std::string& dir) {
    const char* file = environment("ZM_CATALOGUE");
    return file ? file : dir + "/discdb.sqlite";
}

std::string resumeFile(const std::string& dir) {
    const char* file = environment("ZM_RESUME");
    return file ? file : dir + "/resume.sqlite";
}

} // namespace zm
