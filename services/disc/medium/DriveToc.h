#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zm::disc::medium {

/** What a drive says of the CD inside, as it says it: nothing of it is checked. Places are sectors. */
struct DriveToc {
    struct Track {
        int number = 0;
        bool data = false;
        int64_t begin = 0;
    };
    std::vector<Track> tracks;
    int64_t end = 0;                     ///< of the last track
    std::optional<int64_t> laterSession; ///< where the last session begins, if there are several
    std::string texts;                   ///< CD-TEXT, or empty
};

/** Asks the drive at `path`; nothing where there is no drive, or no disc with such a table. May take as long as the drive
 * does. */
std::optional<DriveToc> readDriveToc(const std::string& path);

/** The CD-TEXT of the CD in the drive at `path`; empty without one. */
std::string readDriveTexts(const std::string& path);

} // namespace zm::disc::medium
