#pragma once

#include "tests/views/osd_view.h"

#include <map>

namespace zm::test {

/** What stands on the composed screen. */
class DrawingView : public OsdView {
protected:
    /** The pixels of an area of the screen. */
    std::vector<uint8_t> cut(const Rect& area) {
        const Image whole = unit.picture();
        std::vector<uint8_t> pixels;
        for (int y = area.y; y < area.y + area.h; ++y) {
            pixels.insert(pixels.end(), whole.at(area.x, y), whole.at(area.x, y) + 4L * area.w);
        }
        return pixels;
    }
    /** After `action` each of the items looks otherwise than before; `view` may be the overlay or the main view. */
    void expectChange(const View& view, int page, std::initializer_list<int> items,
                      const std::function<void()>& action) {
        std::map<int, std::vector<uint8_t>> before;
        for (const int id : items) {
            before[id] = cut(view.item(page, id).rect);
        }
        action();
        for (const int id : items) {
            EXPECT_TRUE(cut(view.item(page, id).rect) != before[id]) << "item " << id << " of page " << page;
        }
    }
};

} // namespace zm::test
