#include "services/disc/medium/FileSystem.h"

#include "base/UniqueFd.h"
#include "services/disc/log/Log.h"
#include "services/disc/medium/SliceReader.h"
#include "services/disc/medium/UdfMedium.h"
#include "services/disc/medium/WindowReader.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>

namespace zm::disc::medium {

namespace {

/** What is known by its first bytes and not read. */
struct Foreign {
    std::string_view mark;
    uint64_t place;
    const char* what;
};
using namespace std::string_view_literals;
constexpr Foreign foreigners[] = {
    {"BD"sv, 1024, "an HFS disc without an ISO 9660 part, which is not read"},
    {"H+"sv, 1024, "an HFS+ disc without an ISO 9660 part, which is not read"},
    {"HX"sv, 1024, "an HFS+ disc without an ISO 9660 part, which is not read"},
    {"PM\0\0"sv, 512, "an Apple disc without an ISO 9660 part, which is not read"},
    {"NTFS    "sv, 3, "an NTFS disk, which is not read"},
    {"EXFAT   "sv, 3, "an exFAT disk, which is not read"},
    {"FAT1"sv, 54, "a FAT disk, which is not read"},
    {"FAT32"sv, 82, "a FAT disk, which is not read"},
    {"\x53\xEF"sv, 1080, "an ext disk, which is not read"},
    {"MComprHD"sv, 0, "a compressed image (CHD), which is not read"},
    {"CISO"sv, 0, "a compressed image (CSO), which is not read"},
    {"MEDIA DESCRIPTOR"sv, 0, "the description of an image (MDS), which is not read"},
    {"\x1F\x8B"sv, 0, "compressed (gzip): unpack it first"},
    {"\xFD"
     "7zXZ"sv,
     0, "compressed (xz): unpack it first"},
    {"BZh"sv, 0, "compressed (bzip2): unpack it first"},
    {"\x28\xB5\x2F\xFD"sv, 0, "compressed (zstd): unpack it first"},
    {"PK\3\4"sv, 0, "an archive (zip): unpack it first"},
    {"7z\xBC\xAF"sv, 0, "an archive (7z): unpack it first"},
    {"Rar!"sv, 0, "an archive (rar): unpack it first"},
};

std::string foreignerIn(ByteReader& image) {
    for (const auto& each : foreigners) {
        std::string bytes(each.mark.size(), '\0');
        const auto count = image.readAt(each.place, bytes);
        if (count && *count == bytes.size() && bytes == each.mark) {
            return each.what;
        }
    }
    return "not a disc image";
}

} // namespace

Result<std::shared_ptr<Medium>> openFileSystem(const std::string& image, const IsoMedium::Opener& opener) {
    auto reader = opener(image, {0, UINT64_MAX});
    if (!reader) {
        return reader.failure();
    }
    WindowReader near(**reader);
    // Of a disc with both, UDF has the better names and the large files.
    const auto udf = findUdfVolume(near);
    auto medium = udf ? UdfMedium::openImage(image, opener, *udf) : Result<std::shared_ptr<Medium>>(Error{});
    if (medium) {
        return medium;
    }
    if (auto iso = IsoMedium::openImage(image, opener)) {
        if (udf) {
            logWarning("%s; its ISO 9660 part is read\n", medium.error().c_str());
        }
        return iso;
    } else if (!udf) {
        const bool nothing = iso.error() == image + ": " + IsoMedium::NoImage;
        return nothing ? Error{image + ": " + foreignerIn(near)} : iso.failure();
    }
    return medium;
}

Result<std::shared_ptr<Medium>> openFileSystem(const std::string& image) {
    // The end of a drive's disc is found as that of a file is.
    const UniqueFd file(::open(image.c_str(), O_RDONLY | O_CLOEXEC));
    const off_t end = file.valid() ? ::lseek(file.get(), 0, SEEK_END) : -1;
    if (end < 0) {
        return systemError(image);
    }
    const auto bytes = static_cast<uint64_t>(end);
    return openFileSystem(image, [image, bytes](const std::string& name, const IsoExtent& extent) {
        return openSlice(image, extent.offset, std::min(extent.size, bytes), name);
    });
}

} // namespace zm::disc::medium
