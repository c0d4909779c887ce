#pragma once

#include "platform/linux/toolkit/Painter.h"
#include "platform/linux/toolkit/Scene.h"
#include "platform/linux/toolkit/Touch.h"
#include "zmui/CUIWndMng.h"

namespace zm {

struct Scene::Impl {
    Impl(Resource resource, std::unique_ptr<FontBook> fontBook, int width, int height,
         SceneListener& listener);

    std::unique_ptr<FontBook> fonts; ///< before everything that keeps layouts
    Pages pages;
    Motion motion;
    Touch touch;
    Painter painter;
    std::unique_ptr<CUIWndMng> wndMng;
};

} // namespace zm
