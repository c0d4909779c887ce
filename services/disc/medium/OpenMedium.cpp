#include "services/disc/medium/OpenMedium.h"

#include "services/disc/image/SheetText.h"
#include "services/disc/medium/CdDrive.h"
#include "services/disc/medium/FileSystem.h"
#include "services/disc/medium/FolderMedium.h"
#include "services/disc/medium/ImageMedium.h"
#include "services/disc/medium/RawImage.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

namespace zm::disc::medium {

namespace {

namespace fs = std::filesystem;

using Opened = Result<std::shared_ptr<Medium>>;

bool hasExtension(const std::string& path, std::string_view wanted) {
    return image::upperCase(fs::path(path).extension().string()) == wanted;
}

// The file beside `path` of the same name with that extension, in any case of letters if it is one case; else empty.
std::string beside(const std::string& path, const char* extension) {
    for (const std::string& each : {std::string(extension), image::upperCase(extension)}) {
        const std::string found = fs::path(path).replace_extension(each).string();
        if (::access(found.c_str(), F_OK) == 0) {
            return found;
        }
    }
    return {};
}

Opened openImage(Result<DiscImage> image, const std::string& form) {
    return image ? openImageMedium(std::move(*image), form) : image.failure();
}

Opened openFolder(const std::string& path) {
    return std::shared_ptr<Medium>(std::make_shared<FolderMedium>(path));
}
Opened openCd(const std::string& path) {
    return openImage(readCdDrive(path), "CD in a drive");
}
Opened openCue(const std::string& path) {
    return openImage(readCueImage(path), "cue sheet");
}
Opened openToc(const std::string& path) {
    return openImage(readTocImage(path), "TOC file");
}
Opened openCcd(const std::string& path) {
    return openImage(readCcdImage(path), "CCD file");
}
Opened openNrg(const std::string& path) {
    return openImage(readNrgImage(path), "NRG image");
}
Opened openRaw(const std::string& path) {
    auto image = readRawImage(path);
    if (!image) {
        return image.failure();
    }
    const std::string size = std::to_string(image->tracks.front().format.sectorSize);
    return openImageMedium(std::move(*image), "sectors of " + size + " bytes");
}
Opened openPlain(const std::string& path) {
    return openFileSystem(path);
}

bool isFolder(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}
bool isCd(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISBLK(info.st_mode) && isCdDrive(path);
}
bool isSectors(const std::string& path) {
    return hasExtension(path, ".BIN") || hasExtension(path, ".IMG") || hasExtension(path, ".SUB");
}
bool isAnything(const std::string&) {
    return true;
}

/** A kind of disc: by what it is recognised and how it is opened. The first row that fits counts. */
struct Row {
    bool (*fits)(const std::string& path);
    Opened (*open)(const std::string& path);
    const char* described = nullptr; ///< opened is the file of that extension beside it, if there is one
};
constexpr Row table[] = {
    {isFolder, openFolder},
    {isCd, openCd},
    {[](const std::string& path) { return hasExtension(path, ".CUE"); }, openCue},
    {[](const std::string& path) { return hasExtension(path, ".TOC"); }, openToc},
    {[](const std::string& path) { return hasExtension(path, ".CCD"); }, openCcd},
    {isNrgImage, openNrg},
    {isSectors, openCue, ".cue"},
    {isSectors, openToc, ".toc"},
    {isSectors, openCcd, ".ccd"},
    {isRawImage, openRaw},
    {isAnything, openPlain},
};

} // namespace

Opened openMedium(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) {
        return systemError(path);
    }
    const bool folder = S_ISDIR(info.st_mode);
    if (::access(path.c_str(), folder ? R_OK | X_OK : R_OK) != 0) {
        return systemError(path);
    }
    if (!folder && !S_ISREG(info.st_mode) && !S_ISBLK(info.st_mode)) {
        return Error{path + ": neither a folder nor a disc image"};
    }
    for (const auto& row : table) {
        const std::string opened = row.described ? beside(path, row.described) : path;
        if (!opened.empty() && row.fits(path)) {
            return row.open(opened);
        }
    }
    return Error{path + ": not a disc image"};
}

} // namespace zm::disc::medium
