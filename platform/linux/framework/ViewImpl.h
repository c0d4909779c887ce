#pragma once

#include "platform/linux/framework/ScreenMap.h"
#include "platform/linux/framework/ViewHost.h"
#include "platform/linux/screen/ScreenClient.h"
#include "platform/linux/toolkit/Scene.h"
#include "zmcar/ViewBase.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace Oro::ZMCAR {

/** What stands behind a view: its pages, its window and what the application last asked of it. */
struct ViewImpl : zm::SceneListener, zm::Touchable {
    ViewImpl(ViewBase& owner, zm::ViewHost& viewHost) : view(owner), host(viewHost) {}

    /** Loads the pages; false if it was done before or the resource is faulty. */
    zm::Status load(const std::string& resourceFile, const std::string& fontPath, int width, int height);
    /** Event thread. */
    bool isMain() const { return host.isMain(*this); }

    /** Asks for visibility or order; takes effect at the next flush. What moves has faded before it is hidden. */
    void setVisible(bool show);
    /** Asks for what waited until the pages had faded; true if there was anything. */
    bool hideFaded();
    void setOrder(int order);
    void setAlpha(bool alpha);
    /** Sends what was asked for since the last flush. */
    zm::Status flushProps();
    /** Shows or hides a page, tells the view of it and of the pads that went with that, and draws what the
     * view then has set on it. */
    void showWindow(int page, bool show, int flag);
    /** Draws and commits what changed. */
    zm::Status paint();
    /** Empty if what is drawn is what the pages say; else where and why it is not. */
    std::string staleness();
    /** What the head unit's `screen` request tells of the view. */
    nlohmann::json describe(std::optional<int> window) const;

    void itemClicked(int window, int control, int state) override;
    void listScrolled(int window, int kind, _tagList_Info& info) override;
    bool isUnder(zm::Point at) const;
    void fingerDown(zm::Point at) override;
    void fingerMoved(zm::Point to, int64_t nowMs) override;
    void fingerRested() override;
    void fingerUp(zm::Point at, int64_t nowMs) override;
    void fingerIgnored() override;

    ViewBase& view;
    zm::ViewHost& host;
    std::string name;        ///< of the view and of its window
    std::string windowGroup; ///< of the main view
    zm::SurfaceSpec spec;    ///< `visible` and `order` as last asked for
    zm::ScreenMap map;       ///< what it draws and is touched in are the screen's pixels
    zm::WindowProps pending;
    bool hides = false;  ///< as soon as its pages have faded
    std::set<int> pages; ///< all pages of the resource; may be read from any thread after loading
    std::unique_ptr<zm::Scene> scene;
    zm::ScreenWindow* window = nullptr;
    int64_t tickedMs = 0; ///< time of the scene's latest tick
};

} // namespace Oro::ZMCAR
