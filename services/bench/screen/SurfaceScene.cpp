#include "services/bench/screen/SurfaceScene.h"

#include <algorithm>
#include <cstring>

namespace zm::bench::screen {

namespace {

// The part of the screen that shows `changed` of a picture of the size `size` drawn into `place`.
Rect onScreen(const Rect& changed, const SurfaceSize& size, const Rect& place) {
    const Rect inside = changed.intersected({0, 0, size.width, size.height});
    if (inside.empty() || place.empty()) {
        return {};
    }
    if (place.w == size.width && place.h == size.height) {
        return {place.x + inside.x, place.y + inside.y, inside.w, inside.h};
    }
    return place;
}

} // namespace

SurfaceWindow* SurfaceScene::find(int client, int number) {
    const auto found = std::ranges::find_if(
        m_windows, [&](const auto& window) { return window.client == client && window.number == number; });
    return found == m_windows.end() ? nullptr : &*found;
}

SurfaceWindow& SurfaceScene::add(SurfaceWindow window) {
    m_windows.push_back(std::move(window));
    return m_windows.back();
}

void SurfaceScene::forgetPicture(const SurfaceWindow& window) {
    if (window.placement.visible && window.buffer >= 0 && !window.decoder) {
        damage.add(window.placement.rect);
    }
    for (auto& child : m_children) {
        if (child.picture == &window) {
            child.picture = nullptr;
            damage.add(shows(child) ? child.placement.rect : Rect());
        }
    }
}

void SurfaceScene::remove(int client, int number) {
    std::erase_if(m_windows, [&](const auto& window) {
        const bool meant = window.client == client && window.number == number;
        if (meant) {
            forgetPicture(window);
        }
        return meant;
    });
}

void SurfaceScene::removeClient(int client) {
    std::erase_if(m_windows, [&](const auto& window) {
        if (window.client == client) {
            forgetPicture(window);
        }
        return window.client == client;
    });
}

size_t SurfaceScene::countOf(int client) const {
    return static_cast<size_t>(std::ranges::count(m_windows, client, &SurfaceWindow::client));
}

std::optional<std::pair<int, int64_t>>
SurfaceScene::commit(SurfaceWindow& window, int buffer, int64_t sequence, const std::vector<Rect>& changed) {
    std::optional<std::pair<int, int64_t>> replaced;
    if (window.buffer >= 0 && window.buffer != buffer) {
        replaced = {window.buffer, window.sequence};
    }
    const bool first = window.buffer < 0;
    window.buffer = buffer;
    window.sequence = sequence;
    const SurfaceSize& size = window.surface.size();
    const std::vector<Rect> whole{{0, 0, size.width, size.height}};
    damageWindow(window, first ? whole : changed);
    findDrawnRows(window, first ? whole : changed);
    return replaced;
}

// A page over a film is clear nearly everywhere: it is looked at when it changes, not with each of the film's pictures.
void SurfaceScene::findDrawnRows(SurfaceWindow& window, const std::vector<Rect>& changed) {
    if (window.decoder) {
        return;
    }
    const SurfaceSize& size = window.surface.size();
    window.drawnRows.resize(static_cast<size_t>(size.height), true);
    const uint8_t* pixels = window.surface.buffer(window.buffer);
    const auto rowBytes = static_cast<size_t>(size.width) * 4;
    for (const auto& rect : changed) {
        for (int y = rect.y; y < rect.y + rect.h; ++y) {
            const uint8_t* row = pixels + static_cast<ptrdiff_t>(y) * size.stride;
            window.drawnRows[static_cast<size_t>(y)] =
                row[0] != 0 || std::memcmp(row, row + 1, rowBytes - 1) != 0;
        }
    }
}

void SurfaceScene::damageWindow(const SurfaceWindow& window, const std::vector<Rect>& changed) {
    if (!window.decoder) {
        for (const auto& rect : changed) {
            damage.add(window.placement.visible ? onScreen(rect, window.surface.size(), window.placement.rect)
                                                : Rect());
        }
        return;
    }
    for (auto& child : m_children) {
        const bool black = child.picture != &window;
        child.picture = &window;
        ++child.frames;
        if (!shows(child)) {
            continue;
        }
        if (black) {
            damage.add(child.placement.rect);
            continue;
        }
        for (const auto& rect : changed) {
            damage.add(onScreen(rect, window.surface.size(), child.placement.rect));
        }
    }
}

void SurfaceScene::place(SurfacePlacement& current, const SurfacePlacement& wanted) {
    const bool same = current.rect == wanted.rect && current.order == wanted.order &&
                      current.visible == wanted.visible && current.alpha == wanted.alpha;
    if (!same) {
        damage.add(current.visible ? current.rect : Rect());
        damage.add(wanted.visible ? wanted.rect : Rect());
    }
    current = wanted;
}

SurfaceChild* SurfaceScene::findChild(const std::string& name) {
    const auto found = std::ranges::find(m_children, name, &SurfaceChild::name);
    return found == m_children.end() ? nullptr : &*found;
}

SurfaceChild* SurfaceScene::findChild(unsigned number) {
    const auto found = std::ranges::find(m_children, number, &SurfaceChild::number);
    return found == m_children.end() ? nullptr : &*found;
}

SurfaceChild& SurfaceScene::addChild(const std::string& name, const Rect& rect) {
    SurfaceChild child;
    child.name = name;
    child.number = m_nextChild++;
    child.placement.rect = rect;
    // A film that is paused, or a photo, sends no other picture.
    for (const auto& window : m_windows) {
        if (window.decoder && window.buffer >= 0) {
            child.picture = &window;
        }
    }
    m_children.push_back(std::move(child));
    return m_children.back();
}

bool SurfaceScene::removeChild(const std::string& name) {
    const auto* child = findChild(name);
    if (!child) {
        return false;
    }
    damage.add(child->placement.visible ? child->placement.rect : Rect());
    m_children.remove_if([&](const auto& candidate) { return &candidate == child; });
    return true;
}

void SurfaceScene::hideChildren() {
    for (auto& child : m_children) {
        SurfacePlacement hidden = child.placement;
        hidden.visible = false;
        place(child.placement, hidden);
    }
}

void SurfaceScene::lockChildren(bool locked) {
    if (m_childrenLocked == locked) {
        return;
    }
    m_childrenLocked = locked;
    for (const auto& child : m_children) {
        damage.add(child.placement.visible ? child.placement.rect : Rect());
    }
}

std::vector<SurfaceLayer> SurfaceScene::layers() const {
    // The children are a layer of their own below all windows: their order counts among themselves only.
    std::vector<std::pair<std::pair<bool, int>, SurfaceLayer>> ordered;
    const auto add = [&](bool above, const SurfacePlacement& placement, const SurfaceWindow* picture,
                         bool alpha) {
        if (!placement.visible || placement.rect.empty()) {
            return;
        }
        SurfaceLayer layer;
        if (picture) {
            const auto& size = picture->surface.size();
            layer = {picture->surface.buffer(picture->buffer),
                     size.width,
                     size.height,
                     size.stride,
                     {},
                     alpha,
                     &picture->drawnRows};
        }
        layer.place = placement.rect;
        ordered.emplace_back(std::pair(above, placement.order), layer);
    };
    for (const auto& window : m_windows) {
        if (!window.decoder && window.buffer >= 0) {
            add(true, window.placement, &window, window.placement.alpha);
        }
    }
    for (const auto& child : m_children) {
        if (shows(child)) {
            // The decoder's pictures have no alpha, whatever the application asks for.
            add(false, child.placement, child.picture, false);
        }
    }
    std::ranges::stable_sort(ordered, {}, [](const auto& entry) { return entry.first; });
    std::vector<SurfaceLayer> result;
    for (auto& entry : ordered) {
        result.push_back(entry.second);
    }
    return result;
}

} // namespace zm::bench::screen
