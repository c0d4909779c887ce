#pragma once

#include "services/disc/dvd/Session.h"
#include "services/disc/model/DiscState.h"

namespace zm::disc::dvd {

/** How a DVD takes a repeat mode of files: a folder is a title, one file a chapter. */
struct RepeatMode {
    int mode;
    int next; ///< the one that follows when the next one is asked for
    model::Tip tip;
    Repeat repeat;
};

inline constexpr int RepeatAllMode = 2;

/** That of the number `mode`; that of no repeat if it has none. */
const RepeatMode& repeatMode(int mode);

} // namespace zm::disc::dvd
