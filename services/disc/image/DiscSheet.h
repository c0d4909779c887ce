#pragma once

#include "services/disc/image/TrackFormat.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace zm::disc::image {

/** Longer sheets are refused. */
inline constexpr size_t MaxSheetBytes = 256 * 1024;
inline constexpr size_t MaxSheetFiles = 99;
inline constexpr int MaxTrackNumber = 99;
/** What comes before the first track and is shorter than that is no hidden track. */
inline constexpr uint64_t LeastHiddenSectors = 4 * SectorsPerSecond;

/** What stands in a file that a sheet names. */
enum class SheetFileType {
    Sectors,        ///< as they lie on the disc
    SwappedSectors, ///< sound with the high byte of each sample first
    SoundFile       ///< a file of sound with a header of its own
};

/** A file: its name as it stands in the sheet and as UTF-8. */
struct SheetFile {
    std::string rawName;
    std::string name;
    SheetFileType type = SheetFileType::Sectors;
};

/** A run of a track's bytes; those of a sound file are counted as they are on a disc. */
struct SheetPiece {
    std::optional<size_t> file;  ///< in `DiscSheet::files`; nothing: silence
    uint64_t begin = 0;          ///< first byte in the file
    std::optional<uint64_t> end; ///< byte behind the last one; nothing: the file's end
};

struct SheetTrack {
    int number = 0; ///< as the sheet counts
    TrackFormat format{};
    std::string title; ///< UTF-8, empty when unknown
    std::string performer;
    std::string isrc;               ///< its recording's number, empty when unknown
    std::vector<SheetPiece> pieces; ///< at least one
};

/** What the description of a disc says: at least one track. */
struct DiscSheet {
    std::string title; ///< of the disc
    std::string performer;
    std::string catalogNumber; ///< 13 digits, or empty
    std::string cdTextFile;    ///< raw name of a file with the texts, or empty
    std::vector<SheetFile> files;
    std::vector<SheetTrack> tracks;
    std::optional<SheetPiece> hidden; ///< sound before the first track, when it is longer than a pause
};

/** The texts in `sheet` as UTF-8, whatever the character set that all of them are in. */
void repairTexts(DiscSheet& sheet);

} // namespace zm::disc::image
