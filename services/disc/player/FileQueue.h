#pragma once

#include "services/disc/model/Contents.h"
#include "services/disc/model/DiscState.h"
#include "services/disc/player/PlayOrder.h"
#include "services/disc/player/TrackAddress.h"

#include <array>
#include <memory>
#include <optional>

namespace zm::disc::player {

/** Which file of a data disc, or track of a CD, is the current one, which follows it, and what could not be played. */
class FileQueue {
public:
    /** `contents` has `first`. */
    FileQueue(std::shared_ptr<const model::Contents> contents, const ItemPlace& first,
              const model::PlayModes& modes);

    const model::Contents& contents() const { return *m_contents; }
    model::MediaKind kind() const { return m_kind; }
    ItemPlace place() const { return {m_kind, order().current()}; }
    const model::Item& item() const { return itemAt(order().current()); }
    const model::Item& itemAt(size_t index) const { return m_contents->of(m_kind)[index]; }
    model::TrackInfo trackInfo() const;

    void setModes(const model::PlayModes& modes);
    /** The kind's own current item. */
    void choose(model::MediaKind kind);
    void choose(const ItemPlace& place);
    /** The user's keys: go round at both ends. */
    void next() { order().next(); }
    void previous() { order().previous(); }
    /** The current item has ended; false when the round is over. */
    bool advance() { return order().advance().has_value(); }

    /** The kind that the user's lists show. */
    void browse(model::MediaKind kind) { m_browsed = kind; }
    /** The item that a "PlayTrack" names. */
    std::optional<ItemPlace> named(int first, int second) const;

    /** The index of what would follow by itself; remembered until it follows or is forgotten. Whatever the user
     * does before that, it has not been played. */
    std::optional<size_t> prepare();
    bool isPrepared() const { return m_after.has_value(); }
    /** Whether there was anything. */
    bool forgetPrepared();
    /** What was prepared is the current item. */
    void follow();

    void itemFailed() { ++m_failures; }
    void itemPlayed();
    /** Whether as many in a row have failed as a round has. */
    bool roundFailed() const { return m_failures >= order().roundSize(); }
    /** Nothing of this kind can be played: chooses the next one, in the order of preference, of which not a whole
     * round has failed; false without one. */
    bool leaveKind();

private:
    PlayOrder& order() { return *m_orders[model::kindIndex(m_kind)]; }
    const PlayOrder& order() const { return *m_orders[model::kindIndex(m_kind)]; }

    std::shared_ptr<const model::Contents> m_contents;
    std::array<std::optional<PlayOrder>, model::KindCount> m_orders;
    model::MediaKind m_kind;
    model::MediaKind m_browsed;
    std::optional<PlayOrder> m_after; ///< the order once what is prepared follows
    size_t m_failures = 0;            ///< items in a row that could not be played
    int m_brokenKinds = 0; ///< mixed bits of the kinds of which a whole round has failed since one was played
};

} // namespace zm::disc::player
