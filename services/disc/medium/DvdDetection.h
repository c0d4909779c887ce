#pragma once

#include "services/disc/medium/Medium.h"
#include "services/disc/model/Contents.h"

#include <optional>

namespace zm::disc::medium {

/**
 * Whether a disc is a DVD-Video: a folder VIDEO_TS (or the root itself) with the disc's table of contents,
 * VIDEO_TS.IFO, in any case of letters, in a folder with or without a version (";1"); where that is damaged its copy VIDEO_TS.BUP counts. Reads as much as that takes; may block as
 * long as the drive does.
 */
std::optional<model::DvdMark> findDvd(Medium& medium);

} // namespace zm::disc::medium
