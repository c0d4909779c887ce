#include "services/disc/player/TrackAddress.h"

#include <algorithm>
#include <utility>

namespace zm::disc::player {

namespace {

constexpr uint32_t LargestUnpacked = 0xFFFF;

std::optional<ItemPlace> place(const model::Contents& contents, model::MediaKind kind, int folderId,
                               int fileId) {
    const auto index = findItem(contents, kind, folderId, fileId);
    if (!index) {
        return std::nullopt;
    }
    return ItemPlace{kind, *index};
}

} // namespace

std::optional<size_t> findItem(const model::Contents& contents, model::MediaKind kind, int folderId,
                               int fileId) {
    const auto& items = contents.of(kind);
    const std::pair wanted{folderId, fileId};
    const auto found = std::lower_bound(items.begin(), items.end(), wanted,
                                        [](const model::Item& item, const std::pair<int, int>& key) {
                                            return std::pair{item.folderId, item.fileId} < key;
                                        });
    if (found == items.end() || std::pair{found->folderId, found->fileId} != wanted) {
        return std::nullopt;
    }
    return static_cast<size_t>(found - items.begin());
}

std::optional<ItemPlace> resolveTrack(const model::Contents& contents, const TrackContext& context, int a,
                                      int b) {
    const auto number = static_cast<uint32_t>(a);
    if (number > LargestUnpacked) {
        const auto row = std::find_if(model::kinds.begin(), model::kinds.end(),
                                      [&](const model::KindNumbers& each) { return each.trackKind == b; });
        if (row == model::kinds.end()) {
            return std::nullopt;
        }
        return place(contents, row->kind, static_cast<int>(number >> 16),
                     static_cast<int>(number & LargestUnpacked));
    }
    if (b > 0) {
        std::optional<ItemPlace> found;
        for (const auto kind : {context.browsed, context.playing.kind, model::MediaKind::Music,
                                model::MediaKind::Video, model::MediaKind::Photo}) {
            found = found ? found : place(contents, kind, b, a);
        }
        return found;
    }
    const auto& playing = contents.of(context.playing.kind)[context.playing.index];
    return place(contents, context.playing.kind, playing.folderId, a);
}

} // namespace zm::disc::player
