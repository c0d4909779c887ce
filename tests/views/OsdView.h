#pragma once

#include "tests/views/MainView.h"

namespace zm::test {

/** A kind of clip that the overlay has a bar for. */
struct OsdClip {
    int type;
    int window;
};
inline constexpr OsdClip DVD = {PLAY_TYPE_DVD, OSD_WND_DVD};
inline constexpr OsdClip VCD = {PLAY_TYPE_VCD, OSD_WND_VCD};
inline constexpr OsdClip VIDEO = {PLAY_TYPE_VIDEO, OSD_WND_VIDEO};
inline constexpr OsdClip PICTURE = {PLAY_TYPE_PHOTO, OSD_WND_PICTURE};
inline constexpr OsdClip EVERY_CLIP[] = {DVD, VCD, VIDEO, PICTURE};

/** The next overlay that start-up makes gets no controller. */
UnitOptions withoutOverlayControl();

/** The overlay over a clip that plays. */
class OsdView : public MainView {
protected:
    using MainView::MainView;

    void playClip(const OsdClip& clip) {
        play(clip.type);
        window = clip.window;
        // Start-up shows the pad's window; it stays until the overlay goes for the first time.
        unit.onViewThread([&] { unit.osdView().HideGotoView(); });
        unit.settle();
    }
    Item item(int id) { return unit.osd.item(window, id); }
    std::string text(int id) { return item(id).text; }
    /** The state display: picture 0 when it is hidden. */
    int picture() {
        const Item shown = item(OSD_ITEM_STATE_PIC);
        return shown.visible ? shown.icon() : 0;
    }
    void press(int control) { unit.clickOsd(window, control, BT_STATE_RELEASED); }
    void hold(int control) { unit.clickOsd(window, control, BT_STATE_HELD); }
    int keyType() { return unit.osdView().GetCurKeyType(); }
    void setKeyType(int type) {
        unit.onViewThread([&] { unit.osdView().SetCurKeyType(type); });
        unit.settle();
    }
    int message(int code) {
        int result = -1;
        unit.onViewThread([&] {
            APP_MSG_S message{{code, 0, 0, 0}};
            result = unit.osdView().OnUserMessage(&message);
        });
        unit.settle();
        return result;
    }
    void forget() {
        unit.clearCommands();
        unit.clearRequests();
    }

    int window = OSD_WND_DVD;
};

} // namespace zm::test
