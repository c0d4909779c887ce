#pragma once

#include "tests/views/OsdView.h"

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
    /** Each indicator of the page's status bar is drawn when it changes;
     * the clock stands at 10:10 of 24 hours. */
    void expectStatusDrawn(const View& view, int page) {
        const auto drawn = [&](std::initializer_list<int> items, const std::function<void()>& action) {
            expectChange(view, page, items, action);
        };
        drawn({OSD_ITEM_CLOCK}, [&] { unit.time("10:11", 24); });
        drawn({OSD_ITEM_AM}, [&] { unit.time("10:11", 12); });
        drawn({OSD_ITEM_AM, OSD_ITEM_PM}, [&] { unit.time("22:11", 12); });
        drawn({OSD_ITEM_PM}, [&] { unit.time("22:11", 24); });
        drawn({OSD_ITEM_BT}, [&] { unit.device(DEV_STATUS_BT, 2); });
        drawn({OSD_ITEM_MUTE}, [&] { unit.device(DEV_STATUS_MUTE, 255); });
        drawn({OSD_ITEM_MUTE}, [&] { unit.device(DEV_STATUS_MUTE, 0); });
        drawn({OSD_ITEM_TEMP}, [&] { unit.device(DEV_STATUS_CAR_TEMP, -52); });
    }
};

} // namespace zm::test
