#include "services/disc/OpenMedium.h"

#include "services/disc/FolderMedium.h"
#include "services/disc/IsoMedium.h"

#include <sys/stat.h>
#include <unistd.h>

namespace zm::disc {

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
    auto image = IsoMedium::openImage(path);
    if (!image) {
        return Error{image.error()};
    }
    return std::shared_ptr<Medium>(*image);
}

} // namespace zm::disc
