#include "platform/linux/framework/ViewImpl.h"

#include "zmui/CUI_BtList.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace Oro::ZMCAR {

zm::Status ViewImpl::load(const std::string& resourceFile, const std::string& fontPath, int width,
                          int height) {
    if (scene) {
        return zm::Error{"view " + name + ": initialised before"};
    }
    const zm::ScreenSize own{width, height};
    map = {own, zm::screenSize(own)};
    auto loaded = zm::Scene::load(resourceFile, fontPath, width, height, *this, map.screen);
    if (!loaded) {
        return loaded.failure();
    }
    scene = std::move(*loaded);
    spec.width = map.screen.width;
    spec.height = map.screen.height;
    const nlohmann::json all = scene->describe();
    for (const auto& [page, content] : all.items()) {
        pages.insert(std::atoi(page.c_str()));
    }
    return zm::ok();
}

void ViewImpl::setVisible(bool show) {
    spec.visible = show;
    scene->setSeen(show);
    hides = !show && scene->motion() == zm::MotionLevel::Full;
    if (!hides) {
        pending.visible = show;
    }
}

bool ViewImpl::hideFaded() {
    if (!hides || scene->fading()) {
        return false;
    }
    hides = false;
    pending.visible = false;
    return true;
}

void ViewImpl::setOrder(int order) {
    spec.order = order;
    pending.order = order;
}

void ViewImpl::setAlpha(bool alpha) {
    spec.alpha = alpha;
    pending.alpha = alpha;
}

zm::Status ViewImpl::flushProps() {
    const zm::WindowProps props = std::exchange(pending, {});
    if (!window || props.empty()) {
        return zm::ok();
    }
    return host.screen()->setProps(window->number(), props);
}

zm::Status ViewImpl::paint() {
    if (!window) {
        return zm::ok();
    }
    return window->present(scene->paint(window->surface(), window->stride()));
}

void ViewImpl::showWindow(int page, bool show, int flag) {
    const std::vector<int> dropped = show ? scene->droppedBy(page) : std::vector<int>();
    scene->showWindow(page, show);
    for (const int gone : dropped) {
        view.OnShow(gone, false, flag);
    }
    view.OnShow(page, show, flag);
    scene->drawWindow(page);
}

std::string ViewImpl::staleness() {
    return window ? scene->staleness(window->surface(), window->stride()) : "";
}

nlohmann::json ViewImpl::describe(std::optional<int> onlyWindow) const {
    const auto shown = scene->shownWindows();
    return {{"window", shown.empty() ? 0 : shown.back()},
            {"shown", shown},
            {"visible", spec.visible},
            {"windows", scene->describe(onlyWindow)}};
}

void ViewImpl::itemClicked(int page, int control, int state) {
    constexpr int Released = 1;
    const auto shown = scene->shownWindows();
    // A page may have gone while the finger lay on it: the release is then not meant for what is shown now.
    if (state == Released && std::ranges::find(shown, page) != shown.end()) {
        host.lifted({isMain() ? "main" : "osd", page, control});
    }
    view.OnClick(&scene->wndMng(), page, control, state);
}

void ViewImpl::listScrolled(int page, int kind, _tagList_Info& info) {
    view.OnListInfoMessage(&scene->wndMng(), page, kind, &info);
}

bool ViewImpl::isUnder(zm::Point at) const {
    return spec.visible && scene->hits(at.x, at.y);
}

void ViewImpl::fingerDown(zm::Point at) {
    const zm::Point own = map.toOwn(at);
    view.OnLButtonDown(own.x, own.y);
    scene->press(at.x, at.y);
}

void ViewImpl::fingerMoved(zm::Point to, int64_t nowMs) {
    const zm::Point own = map.toOwn(to);
    view.OnMouseMove(own.x, own.y);
    scene->move(to.x, to.y, nowMs);
}

void ViewImpl::fingerRested() {
    scene->hold();
}

void ViewImpl::fingerUp(zm::Point at, int64_t nowMs) {
    const zm::Point own = map.toOwn(at);
    view.OnLButtonUp(own.x, own.y);
    scene->release(at.x, at.y, nowMs);
}

void ViewImpl::fingerIgnored() {
    scene->letGo();
}

} // namespace Oro::ZMCAR
