#include "services/disc/engine/PhotoHeader.h"

#include <cstdlib>
#include <optional>

namespace zm::disc {

namespace {

using std::string_view_literals::operator""sv;

/** Numbers at places of a file; nothing behind its end. */
class Bytes {
public:
    explicit Bytes(std::string_view file) : m_file(file) {}

    std::optional<uint64_t> big(size_t at, size_t count) const { return number(at, count, true); }
    std::optional<uint64_t> little(size_t at, size_t count) const { return number(at, count, false); }
    bool startsWith(std::string_view text) const { return m_file.starts_with(text); }

private:
    std::optional<uint64_t> number(size_t at, size_t count, bool bigEndian) const {
        if (at > m_file.size() || m_file.size() - at < count) {
            return std::nullopt;
        }
        uint64_t value = 0;
        for (size_t i = 0; i < count; ++i) {
            const size_t place = bigEndian ? at + i : at + count - 1 - i;
            value = value << 8 | static_cast<uint8_t>(m_file[place]);
        }
        return value;
    }
    std::string_view m_file;
};

using Sides = std::optional<std::pair<uint64_t, uint64_t>>;

Sides sides(std::optional<uint64_t> width, std::optional<uint64_t> height) {
    return width && height && *width > 0 && *height > 0 ? Sides({*width, *height}) : std::nullopt;
}

Sides jpegSides(const Bytes& bytes) {
    constexpr uint64_t Fill = 0xFF;
    constexpr uint64_t StartOfScan = 0xDA;
    const auto isFrame = [](uint64_t marker) {
        // All of C0 to CF but the tables and what is reserved.
        return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
    };
    const auto standsAlone = [](uint64_t marker) {
        return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8);
    };
    for (size_t at = 2;;) {
        const auto lead = bytes.big(at, 1);
        const auto marker = bytes.big(at + 1, 1);
        if (!lead || !marker) {
            return std::nullopt;
        }
        if (*lead != Fill || *marker == Fill) {
            ++at; // bytes between the segments are passed over, as decoders do
        } else if (standsAlone(*marker) || *marker == 0) {
            at += 2;
        } else if (isFrame(*marker)) {
            return sides(bytes.big(at + 7, 2), bytes.big(at + 5, 2));
        } else if (const auto length = bytes.big(at + 2, 2); length && *marker != StartOfScan) {
            at += 2 + *length;
        } else {
            return std::nullopt;
        }
    }
}

// The first image may be larger than the screen that the file names.
Sides gifSides(const Bytes& bytes) {
    const auto screen = sides(bytes.little(6, 2), bytes.little(8, 2));
    const auto flags = bytes.little(10, 1);
    if (!screen || !flags) {
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
    const auto image =
        bytes.little(at, 1) == 0x2Cu ? sides(bytes.little(at + 5, 2), bytes.little(at + 7, 2)) : std::nullopt;
    return image ? Sides({std::max(screen->first, image->first), std::max(screen->second, image->second)})
                 : screen;
}

Sides bmpSides(const Bytes& bytes) {
    constexpr uint64_t OldHeader = 12;
    const auto header = bytes.little(14, 4);
    if (header == OldHeader) {
        return sides(bytes.little(18, 2), bytes.little(20, 2));
    }
    const auto height = bytes.little(22, 4);
    // Negative: the rows come from top to bottom.
    return sides(bytes.little(18, 4),
                 height ? std::optional<uint64_t>(std::abs(int64_t{static_cast<int32_t>(*height)})) : height);
}

Sides pngSides(const Bytes& bytes) {
    return sides(bytes.big(16, 4), bytes.big(20, 4));
}

struct FormatRow {
    PhotoFormat format;
    std::string_view signature;
    Sides (*sides)(const Bytes& bytes);
};
constexpr FormatRow formats[] = {{PhotoFormat::Jpeg, "\xFF\xD8"sv, jpegSides},
                                 {PhotoFormat::Png, "\x89PNG\r\n\x1A\n"sv, pngSides},
                                 {PhotoFormat::Gif, "GIF8"sv, gifSides},
                                 {PhotoFormat::Bmp, "BM"sv, bmpSides}};

} // namespace

Result<PhotoHeader> readPhotoHeader(std::string_view file) {
    const Bytes bytes(file);
    for (const auto& row : formats) {
        if (!bytes.startsWith(row.signature)) {
            continue;
        }
        const Sides found = row.sides(bytes);
        if (!found) {
            return Error{"a photo that does not tell its size"};
        }
        return PhotoHeader{row.format, found->first, found->second};
    }
    return Error{"no photo"};
}

} // namespace zm::disc
