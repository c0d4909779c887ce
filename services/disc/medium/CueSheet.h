#pragma once

#include "base/Result.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zm::disc {

/** Sectors of a disc in a second. */
inline constexpr int SectorsPerSecond = 75;
/** Longer cue sheets are refused. */
inline constexpr size_t MaxCueBytes = 256 * 1024;

/** How the sectors of a track lie in an image; sizes in bytes. */
struct TrackFormat {
    std::string_view name; ///< as in a cue sheet
    enum class Content { Audio, Mode1, Mode2 } content;
    uint32_t sectorSize;
    uint32_t headerSize; ///< in front of a data sector's own bytes
};

struct CueTrack {
    int number = 0; ///< as the cue sheet counts
    TrackFormat format{};
    std::string title; ///< UTF-8, empty when unknown
    std::string performer;
    size_t file = 0;             ///< in `CueSheet::files`
    uint64_t begin = 0;          ///< first byte in the file
    std::optional<uint64_t> end; ///< byte behind the last one; nothing: the file's end
};

/** A file of sectors: its name as it stands in the cue sheet and as UTF-8. */
struct CueFile {
    std::string rawName;
    std::string name;
};

/** What a cue sheet says: at least one track, each beginning behind the one before it in the same file. */
struct CueSheet {
    std::string title; ///< of the disc
    std::string performer;
    std::vector<CueFile> files;
    std::vector<CueTrack> tracks;
};

/**
 * Reads the text of a cue sheet, of any character set. A track lasts from its INDEX 01 to that of the next
 * track in the same file, as on a disc; it ends at INDEX 00 already where the format of the sectors changes.
 * The error names the line and what is wrong in it.
 */
Result<CueSheet> parseCueSheet(std::string_view text);

} // namespace zm::disc
