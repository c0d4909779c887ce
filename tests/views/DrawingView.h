#pragma once

#include "tests/views/OsdView.h"

namespace zm::test {

/** What stands on the composed screen. */
class DrawingView : public OsdView {
protected:
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
