#pragma once

#include <cstdint>
#include <string_view>

namespace zm::disc::image {

/** Sectors of a disc in a second. */
inline constexpr int SectorsPerSecond = 75;
/** Bytes of sound in a sector: 16 bits, two channels, 44,100 Hz. */
inline constexpr uint32_t SoundSectorBytes = 2352;
/** All of a sector with its sub-channels behind it. */
inline constexpr uint32_t LongSectorBytes = 2448;

/** How the sectors of a track lie in an image; sizes in bytes. */
struct TrackFormat {
    std::string_view name; ///< as in a cue sheet
    enum class Content { Audio, Mode1, Mode2 } content;
    uint32_t sectorSize;
    uint32_t headerSize; ///< in front of a data sector's own bytes
};

/** The format of that name in capitals; null for an unknown one. */
const TrackFormat* trackFormat(std::string_view name);

} // namespace zm::disc::image
