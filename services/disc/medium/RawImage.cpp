#include "services/disc/medium/RawImage.h"

#include "services/disc/medium/SliceReader.h"
#include "services/disc/text/Charset.h"

#include <sys/stat.h>

#include <filesystem>
#include <optional>
#include <string_view>

namespace zm::disc::medium {

namespace {

// Each data sector begins with this, its address and its mode.
constexpr std::string_view Sync("\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\0", 12);
constexpr size_t ModePlace = 15;
constexpr uint64_t LookedAt = 16;

// The format of its sectors, of which the first and one further on are looked at; null if it has none.
const image::TrackFormat* formatOf(const std::string& path) {
    const auto reader = openSlice(path, 0, UINT64_MAX, path);
    const auto mode = reader ? sectorModeAt(**reader, 0) : std::nullopt;
    for (const uint64_t size : {image::SoundSectorBytes, image::LongSectorBytes}) {
        if (mode && sectorModeAt(**reader, LookedAt * size)) {
            return image::trackFormat("MODE" + std::to_string(*mode) + "/" + std::to_string(size));
        }
    }
    return nullptr;
}

} // namespace

std::optional<int> sectorModeAt(ByteReader& image, uint64_t place) {
    std::string header(ModePlace + 1, '\0');
    const auto count = image.readAt(place, header);
    if (!count || *count < header.size() || header.compare(0, Sync.size(), Sync) != 0) {
        return std::nullopt;
    }
    const int mode = header[ModePlace];
    return mode == 1 || mode == 2 ? std::optional(mode) : std::nullopt;
}

bool isRawImage(const std::string& path) {
    return formatOf(path) != nullptr;
}

Result<DiscImage> readRawImage(const std::string& path) {
    struct stat info {};
    const auto* format = formatOf(path);
    if (!format || ::stat(path.c_str(), &info) != 0) {
        return Error{path + ": no sectors of 2352 or 2448 bytes"};
    }
    const auto size = static_cast<uint64_t>(info.st_size) / format->sectorSize * format->sectorSize;
    const std::string label = text::cleanText(std::filesystem::path(path).stem().string());
    return DiscImage{path, {},
                     {},   label,
                     {},   {{*format, {}, {}, {}, {{TrackPiece::Form::Plain, path, 0, size}}, {}, 0, {}}},
                     {}};
}

} // namespace zm::disc::medium
