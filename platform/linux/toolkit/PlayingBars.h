#pragma once

#include "platform/linux/toolkit/ListControl.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace zm {

/** The bars at the row that plays, which rise and fall while a value that somebody publishes says that it does. */
class PlayingBars {
public:
    explicit PlayingBars(Pages& pages) : m_pages(pages) {}

    /** Takes up the lists that have such bars; after the pages have been redefined. */
    void collect();
    /** Whether the bars of that list move. */
    bool moves(const Item& list) const;
    /** Whether bars that move are in view. */
    bool seen() const;
    void step(int64_t nowMs);
    /** They stand as their picture shows them. */
    void rest();
    /** How high each bar stands, in parts of a picture; nothing while that list's stand as its picture shows them. */
    std::optional<std::array<double, 3>> heights(const Item& list) const;

private:
    void damage();
    /** Where the mark of the playing row is, if it is in view. */
    static Rect mark(const CUI_BtList::Impl& list);

    Pages& m_pages;
    std::vector<Item*> m_lists;
    int64_t m_start = -1;
    double m_turn = 0; ///< 0..1
};

} // namespace zm
