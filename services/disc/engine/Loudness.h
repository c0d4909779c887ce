#pragma once

namespace zm::disc::engine {

/** How loud the head unit wants the sound. */
struct Loudness {
    static constexpr int FullVolume = 100; ///< the samples as they are on the disc
    int volume = FullVolume;               ///< 0 to FullVolume, as a knob is felt
    bool muted = false;
    bool operator==(const Loudness&) const = default;
};

} // namespace zm::disc::engine
