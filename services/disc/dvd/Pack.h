#pragma once

#include "services/dvd/Wire.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zm::disc::dvd {

/** A piece of one stream inside a pack. Times are in 90 kHz. */
struct Fragment {
    enum class Kind { Video, Sound, Subtitle };
    Kind kind = Kind::Video;
    zm::dvd::SoundKind sound = zm::dvd::SoundKind::Unknown;
    int stream = 0; ///< number of the sound within its kind, or of the subtitle
    std::span<const uint8_t> data;
    std::optional<int64_t> time;       ///< of presentation
    std::optional<int64_t> decodeTime; ///< where it differs
    /** Where in `data` the piece begins that `time` belongs to. */
    size_t firstUnit = 0;
    /** Its content is encrypted. */
    bool scrambled = false;
};

/**
 * Takes a pack of a DVD's film apart; the fragments point into it. Bytes that are not such a pack, a cut one and one
 * of no use here (padding, navigation) give none.
 */
std::vector<Fragment> splitPack(std::span<const uint8_t> pack);

} // namespace zm::disc::dvd
