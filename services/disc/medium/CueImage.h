#pragma once

#include "services/disc/medium/CueSheet.h"

namespace zm::disc {

/** A track of a disc image: which bytes of which file it is. */
struct ImageTrack {
    TrackFormat format{};
    std::string title; ///< UTF-8, empty when unknown
    std::string performer;
    std::string file; ///< path
    uint64_t offset = 0;
    uint64_t size = 0; ///< whole sectors; 0 if the file ends before the track
};

/** The image of a disc that a cue sheet describes. */
struct CueImage {
    std::string path;  ///< of the cue sheet
    std::string title; ///< of the disc; UTF-8, empty when unknown
    std::string performer;
    std::string label; ///< the title, else the cue sheet's name
    std::vector<ImageTrack> tracks;
};

/**
 * Reads the cue sheet at `path` and looks up its files, which lie beside it or in folders below. The error
 * names the file, its line and what is wrong.
 */
Result<CueImage> readCueImage(const std::string& path);

} // namespace zm::disc
