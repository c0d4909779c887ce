#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace zm::disc::engine {

/**
 * Which of a file's decoded samples are its sound, counted without its channels. Lossy formats begin and end with
 * more than was encoded.
 */
struct SoundRange {
    static constexpr int64_t ToTheEnd = std::numeric_limits<int64_t>::max();
    int64_t first = 0;
    int64_t count = ToTheEnd;
    int64_t rate = 0; ///< the samples a second that were counted; 0 for those of the decoder
    /** What the demuxer has to read in the place of the file's bytes: an edit list says the same in times that are not
     * exact. */
    struct Patch {
        uint64_t offset = 0;
        std::string bytes;
    };
    std::vector<Patch> patches;
};

/** At most that many bytes of a file from that place on. */
using ReadBytes = std::function<std::string(uint64_t offset, size_t size)>;

} // namespace zm::disc::engine
