#pragma once

#include "services/disc/model/Contents.h"

#include <optional>

namespace zm::disc::player {

/** One item of a disc: its kind and its place in the disc's order of that kind. */
struct ItemPlace {
    model::MediaKind kind = model::MediaKind::Music;
    size_t index = 0;
    bool operator==(const ItemPlace&) const = default;
};

/** What a "PlayTrack" is seen from: what plays, and which kind the user's lists show. */
struct TrackContext {
    ItemPlace playing;
    model::MediaKind browsed = model::MediaKind::Music;
};

/**
 * The item that "PlayTrack(a, b)" names, or nothing if there is none. `a` above 65535 (also a negative one,
 * which is a large unsigned one) has the folder in its upper and the file in its lower half, `b` being the
 * kind; else a `b` above 0 is the folder and the kind the browsed, the playing or any other one that has that
 * file; else `a` is the position in the playing folder.
 */
std::optional<ItemPlace> resolveTrack(const model::Contents& contents, const TrackContext& context, int a,
                                      int b);

/** Place of file `fileId` of `folderId` among the items of `kind`. */
std::optional<size_t> findItem(const model::Contents& contents, model::MediaKind kind, int folderId,
                               int fileId);

} // namespace zm::disc::player
