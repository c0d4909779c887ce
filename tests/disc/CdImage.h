#pragma once

#include <string>
#include <vector>

namespace zm::test {

/** A track of an audio CD that a test makes: a tone. */
struct CdTrack {
    int seconds = 0;
    int frequency = 440; ///< whole waves a second
    std::string title{};
    std::string performer{};
};

inline constexpr int SectorBytes = 2352;

/** `seconds` of a tone as it stands on a CD. */
std::string cdSound(int seconds, int frequency);

/** A time of `sectors` as in a cue sheet. */
std::string cdTime(int sectors);

/** Writes `folder`/disc.bin and `folder`/disc.cue with these tracks, one behind the other; gives the cue
 * sheet's path. */
std::string writeAudioCd(const std::string& folder, const std::vector<CdTrack>& tracks);

} // namespace zm::test
