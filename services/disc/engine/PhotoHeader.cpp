#include "services/disc/engine/PhotoHeader.h"

#include "services/disc/engine/FrameSink.h"
#include "services/disc/engine/JpegHeader.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace zm::disc::engine {

namespace {

using namespace std::string_view_literals;

constexpr uint64_t Megabyte = 1'000'000;
constexpr uint64_t MaxPixels = 100 * Megabyte;
// What a second or so is enough for: 24 megapixels of 16 bits in four channels, 50 of 8 bits in three.
constexpr uint64_t MaxBytes = 500 * Megabyte;
// Cameras and programs make ten or so. Each goes over the whole picture, however few bytes it has.
constexpr uint64_t MaxPasses = 64;

// The decoder's picture and those of the two elements that turn it.
constexpr uint64_t Copies = 3;

// A photo is decoded to no fewer pixels than this, which the screen shows when it is enlarged three times.
const uint64_t FewestPixels =
    uint64_t{9} * static_cast<uint64_t>(PictureWidth) * static_cast<uint64_t>(PictureHeight);
// The greatest step of the decoder: a quarter of both sides.
constexpr uint64_t MostHalvings = 2;

using Found = std::optional<PhotoHeader>;

Found sized(PhotoFormat format, std::optional<uint64_t> width, std::optional<uint64_t> height) {
    PhotoHeader header;
    header.format = format;
    header.width = width.value_or(0);
    header.height = height.value_or(0);
    return header.width > 0 && header.height > 0 ? Found(header) : std::nullopt;
}

Found withCopies(Found header, uint64_t bytesPerPixel) {
    if (header) {
        header->bytes = Copies * header->width * header->height * bytesPerPixel;
    }
    return header;
}

Found jpeg(const PhotoBytes& bytes) {
    const auto read = readJpegHeader(bytes);
    Found header = read ? sized(PhotoFormat::Jpeg, read->width, read->height) : std::nullopt;
    if (!header) {
        return header;
    }
    // Those of printers; the decoder crashes.
    if (read->components != 1 && read->components != 3) {
        header->fault = "a photo in other colours than grey, or red, green and blue";
    }
    const uint64_t pixels = header->width * header->height;
    const uint64_t most = read->lossy ? MostHalvings : 0;
    while (header->halvings < most && pixels >> (2 * header->halvings + 2) >= FewestPixels) {
        ++header->halvings;
    }
    const uint64_t picture = read->samples * (read->lossy ? 1 : 2);
    constexpr uint64_t CoefficientBytes = 2;
    header->bytes = (Copies * picture >> 2 * header->halvings) +
                    (read->progressive ? CoefficientBytes * read->samples : 0);
    header->passes = read->scans;
    header->length = read->length;
    return header;
}

// The first image may be larger than the screen that the file names.
Found gif(const PhotoBytes& bytes) {
    Found header = sized(PhotoFormat::Gif, bytes.little(6, 2), bytes.little(8, 2));
    const auto flags = bytes.little(10, 1);
    if (!header || !flags) {
        return std::nullopt;
    }
    size_t at = 13 + ((*flags & 0x80) != 0 ? size_t{3} << ((*flags & 7) + 1) : 0);
    while (bytes.little(at, 1) == 0x21u) { // extensions: chains of short blocks
        at += 2;
        while (bytes.little(at, 1).value_or(0) != 0) {
            at += 1 + *bytes.little(at, 1);
        }
        ++at;
    }
    if (bytes.little(at, 1) == 0x2Cu) {
        header->width = std::max(header->width, bytes.little(at + 5, 2).value_or(0));
        header->height = std::max(header->height, bytes.little(at + 7, 2).value_or(0));
    }
    constexpr uint64_t BytesPerPixel = 4;
    return withCopies(header, BytesPerPixel);
}

Found bmp(const PhotoBytes& bytes) {
    constexpr uint64_t OldHeader = 12;
    const bool old = bytes.little(14, 4) == OldHeader;
    const auto width = old ? bytes.little(18, 2) : bytes.little(18, 4);
    auto height = old ? bytes.little(20, 2) : bytes.little(22, 4);
    if (height && !old) { // negative: the rows come from top to bottom
        height = std::abs(int64_t{static_cast<int32_t>(*height)});
    }
    constexpr uint64_t TrueColour = 24;
    const bool direct = bytes.little(old ? 24 : 28, 2) == TrueColour;
    return withCopies(sized(PhotoFormat::Bmp, width, height), direct ? 3 : 4);
}

// Whether one colour of a PNG is to be seen through: a part of its own in front of the picture says so.
bool hasTransparentColour(const PhotoBytes& bytes) {
    constexpr uint64_t Transparency = 0x74524E53;
    constexpr uint64_t Picture = 0x49444154;
    constexpr size_t Frame = 12; // size, name and sum
    for (size_t at = 8;;) {
        const auto size = bytes.big(at, 4);
        const auto name = bytes.big(at + 4, 4);
        if (!size || !name || *name == Picture || *name == Transparency) {
            return name == Transparency;
        }
        at += Frame + *size;
    }
}

Found png(const PhotoBytes& bytes) {
    Found header = sized(PhotoFormat::Png, bytes.big(16, 4), bytes.big(20, 4));
    const auto depth = bytes.big(24, 1);
    const auto colours = bytes.big(25, 1);
    const auto interlaced = bytes.big(28, 1);
    if (!header || !depth || !colours || !interlaced) {
        return std::nullopt;
    }
    constexpr uint64_t Grey = 0;
    constexpr uint64_t TrueColour = 2;
    const bool opaque = !hasTransparentColour(bytes);
    const bool grey = *colours == Grey && opaque;
    const bool deep = *depth == 16;
    if (grey) {
        header = withCopies(header, deep ? 2 : 1);
    } else {
        // The decoder exchanges the colours.
        header->fault = deep && *colours == TrueColour ? "a PNG of three times 16 bits" : nullptr;
        header = withCopies(header, *colours == TrueColour && opaque && !deep ? 3 : 4);
        // Decoded with 16 bits in four channels, shown with 8.
        header->bytes += deep ? header->width * header->height * 8 : 0;
    }
    // In seven passes, which takes half as long again.
    header->bytes += *interlaced != 0 ? header->bytes / 2 : 0;
    return header;
}

struct FormatRow {
    std::string_view signature;
    Found (*read)(const PhotoBytes& bytes);
};
constexpr FormatRow formats[] = {
    {"\xFF\xD8"sv, jpeg}, {"\x89PNG\r\n\x1A\n"sv, png}, {"GIF8"sv, gif}, {"BM"sv, bmp}};

} // namespace

Status PhotoHeader::showable() const {
    const std::string size = std::to_string(width) + " x " + std::to_string(height);
    if (width > MaxPixels || height > MaxPixels || width * height > MaxPixels) {
        return Error{"too large a photo: " + size};
    }
    if (bytes > MaxBytes) {
        return Error{"too large a photo: " + size + ", which takes " + std::to_string(bytes / Megabyte) +
                     " MB to show"};
    }
    if (fault) {
        return Error{fault};
    }
    if (passes > MaxPasses) {
        return Error{"too large a photo: " + size + " in " + std::to_string(passes) + " passes"};
    }
    return ok();
}

Result<PhotoHeader> readPhotoHeader(std::string_view file) {
    const PhotoBytes bytes(file);
    for (const auto& row : formats) {
        if (!bytes.startsWith(row.signature)) {
            continue;
        }
        Found found = row.read(bytes);
        if (!found) {
            return Error{"a photo that does not tell its size"};
        }
        found->length = found->length > 0 ? found->length : bytes.size();
        return *found;
    }
    return Error{"no photo"};
}

} // namespace zm::disc::engine
