#include "services/disc/engine/JpegHeader.h"

#include <algorithm>
#include <vector>

namespace zm::disc::engine {

namespace {

constexpr char Lead = '\xFF';
constexpr uint64_t Stuffing = 0x00;
constexpr uint64_t EndOfImage = 0xD9;
constexpr uint64_t StartOfScan = 0xDA;

// All of C0 to CF but the tables and what is reserved.
bool isFrame(uint64_t marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

bool isProgressive(uint64_t marker) {
    return marker == 0xC2 || marker == 0xC6 || marker == 0xCA || marker == 0xCE;
}

bool isLossless(uint64_t marker) {
    return (marker & 3) == 3;
}

// Restarts and the beginning, too.
bool standsAlone(uint64_t marker) {
    return marker == Stuffing || marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8);
}

std::optional<JpegHeader> frameAt(const PhotoBytes& bytes, size_t at, uint64_t marker) {
    const auto precision = bytes.big(at + 4, 1);
    const auto height = bytes.big(at + 5, 2);
    const auto width = bytes.big(at + 7, 2);
    const auto count = bytes.big(at + 9, 1);
    if (!precision || !height || !width || !count || *height == 0 || *width == 0) {
        return std::nullopt;
    }
    JpegHeader header;
    header.width = *width;
    header.height = *height;
    header.components = *count;
    header.progressive = isProgressive(marker);
    header.lossy = !isLossless(marker) && *precision == 8;
    // Each component's share of the pixels, in both directions.
    uint64_t all = 0;
    uint64_t most = 1;
    for (size_t i = 0; i < *count; ++i) {
        const uint64_t factors = bytes.big(at + 11 + 3 * i, 1).value_or(0);
        const uint64_t share = std::max<uint64_t>(1, (factors >> 4) * (factors & 0xF));
        all += share;
        most = std::max(most, share);
    }
    header.samples = header.width * header.height * all / most;
    return header;
}

// A second frame is not meant to be there, but a decoder that meets it believes it.
void take(JpegHeader& known, const JpegHeader& next) {
    known.width = std::max(known.width, next.width);
    known.height = std::max(known.height, next.height);
    known.samples = std::max(known.samples, next.samples);
    known.components = std::max(known.components, next.components);
    known.progressive = known.progressive || next.progressive;
    known.lossy = known.lossy && next.lossy;
}

} // namespace

std::optional<JpegHeader> readJpegHeader(const PhotoBytes& bytes) {
    std::optional<JpegHeader> header;
    uint64_t scans = 0;
    size_t at = 2;
    for (;;) {
        // Bytes between the segments are passed over, as decoders do; those of a scan are.
        at = bytes.find(Lead, at);
        const auto marker = bytes.big(at + 1, 1);
        if (!marker) {
            break;
        }
        if (*marker == static_cast<uint8_t>(Lead)) {
            ++at;
        } else if (standsAlone(*marker)) {
            at += 2;
        } else if (*marker == EndOfImage) {
            at += 2;
            break;
        } else {
            if (isFrame(*marker)) {
                const auto frame = frameAt(bytes, at, *marker);
                if (!frame) {
                    return std::nullopt;
                }
                header ? take(*header, *frame) : void(header = frame);
            }
            scans += *marker == StartOfScan ? 1 : 0;
            const auto length = bytes.big(at + 2, 2);
            if (!length) {
                break;
            }
            at += 2 + *length;
        }
    }
    if (header) {
        header->scans = scans;
        header->length = std::min(at, bytes.size());
    }
    return header;
}

} // namespace zm::disc::engine
