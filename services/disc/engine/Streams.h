#pragma once

#include <string>
#include <vector>

namespace zm::disc::engine {

/** One sound or subtitle stream; texts are empty when unknown. */
struct Stream {
    std::string language; ///< code, such as "en"
    std::string format;
};

/** The streams among which the user can choose. */
struct Streams {
    std::vector<Stream> audio;
    std::vector<Stream> subtitles;
};

/** Which side of a sound is heard; a single one from both loudspeakers. */
enum class SoundChannel { Both, Left, Right };

/** Which streams are heard and read; counted from 0. */
struct StreamChoice {
    static constexpr int NoSubtitle = -1;
    int audio = 0;
    int subtitle = NoSubtitle;
    SoundChannel channel = SoundChannel::Both;
};

} // namespace zm::disc::engine
