#pragma once

#include "platform/linux/toolkit/Painter.h"
#include "platform/linux/toolkit/Scene.h"
#include "platform/linux/toolkit/Touch.h"
#include "zmui/CUIWndMng.h"

#include <optional>

namespace zm {

struct Scene::Impl {
    Impl(Resource resource, std::unique_ptr<FontBook> fontBook, const ScreenFit& fit,
         SceneListener& listener);

    /** Gives each list item its control. */
    void makeLists();
    void redefine(Resource next);
    struct ListPlace;
    /** A window came or went: the picture fades over; `covered` tells whether it was opaque before. */
    void fadeOver(const Window& changed, bool covered);
    void paint(uint8_t* pixels, int stride, const std::vector<Rect>& areas, Contents contents);

    std::unique_ptr<FontBook> fonts; ///< before everything that keeps layouts
    Pages pages;
    Motion motion;
    Touch touch;
    std::optional<Painter> painter;
    std::unique_ptr<CUIWndMng> wndMng;
};

} // namespace zm
