#pragma once

#include "base/Result.h"

#include <string>
#include <string_view>

namespace zm {

/** How much an object may hold as text, and how much one write may have. */
constexpr size_t PpsObjectBytes = 32 * 1024;
/** What waits for a delta reader unless it asks for another limit. */
constexpr size_t PpsBacklogBytes = 256 * 1024;

/** Open flags in the target's numbers. */
enum PpsOpenFlag : int {
    PpsAccessMask = 3,
    PpsReadOnly = 0,
    PpsWriteOnly = 1,
    PpsCreate = 256,
    PpsTruncate = 512
};

/** A path with its open options, taken apart. */
struct PpsPath {
    std::string name;   ///< below /pps: "zelmar/disc/status"
    std::string folder; ///< "zelmar/disc"; empty for the root
    std::string leaf;   ///< "status"
    bool delta = false;
    bool wait = false;
    size_t backlog = PpsBacklogBytes;

    /** ".all": stands for all objects of its folder. */
    bool wholeFolder() const { return leaf == ".all"; }
};

/**
 * Takes "/pps/zelmar/disc/status?delta,nopersist" apart; the error names what is wrong. As nothing outlives
 * the service, "nopersist" is what every object is anyway.
 */
Result<PpsPath> parsePpsPath(std::string_view path);

} // namespace zm
