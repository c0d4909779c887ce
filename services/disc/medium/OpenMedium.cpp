#include "services/disc/medium/OpenMedium.h"

#include "services/disc/medium/CueMedium.h"
#include "services/disc/medium/FolderMedium.h"
#include "services/disc/medium/IsoMedium.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace zm::disc {

namespace {

namespace fs = std::filesystem;

// The cue sheet that describes the image at `path`: itself, or the one of the same name; empty without one.
std::string cueSheetOf(const std::string& path) {
    const std::string extension = fs::path(path).extension().string();
    if (extension == ".cue" || extension == ".CUE") {
        return path;
    }
    if (extension != ".bin" && extension != ".BIN") {
        return {};
    }
    for (const char* each : {".cue", ".CUE"}) {
        const std::string cue = fs::path(path).replace_extension(each).string();
        if (::access(cue.c_str(), F_OK) == 0) {
            return cue;
        }
    }
    return {};
}

} // namespace

Result<std::shared_ptr<Medium>> openMedium(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) {
        return systemError(path);
    }
    const bool folder = S_ISDIR(info.st_mode);
    if (::access(path.c_str(), folder ? R_OK | X_OK : R_OK) != 0) {
        return systemError(path);
    }
    if (folder) {
        return std::shared_ptr<Medium>(std::make_shared<FolderMedium>(path));
    }
    if (!S_ISREG(info.st_mode)) {
        return Error{path + ": neither a folder nor a disc image"};
    }
    const std::string cue = cueSheetOf(path);
    return cue.empty() ? IsoMedium::openImage(path) : openCue(cue);
}

} // namespace zm::disc
