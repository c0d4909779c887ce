#pragma once

#include "services/disc/medium/Medium.h"

#include "services/disc/medium/Zisofs.h"

#include <optional>

namespace zm::disc::medium {

/** What the system-use part of a record adds to it. */
struct RockRidge {
    std::string name;                  ///< empty when there is none
    std::optional<uint32_t> relocated; ///< block in which the folder really lies
    bool hidden = false;               ///< stands here only because it was relocated
    std::string link;                  ///< what it stands for, as a path; empty when it stands for itself
    std::optional<ZisofsHeader> compressed;
};

/** Reads the system-use entries in `area` and where they go on elsewhere in the image. */
RockRidge readRockRidge(ByteReader& image, std::string_view area);

/** The bytes to skip in front of the entries when `area`, of the root's own record, says that there are such;
 * nothing when it does not. */
std::optional<size_t> rockRidgeSkip(std::string_view area);

} // namespace zm::disc::medium
