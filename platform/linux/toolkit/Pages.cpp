#include "platform/linux/toolkit/Pages.h"

#include "platform/linux/toolkit/TimeText.h"

#include <algorithm>

namespace zm {

Pages::Pages(Resource resource, const ScreenFit& fit)
    : m_fit(fit), m_resource(std::move(resource)), m_screen(fit.screen().area()),
      m_palette(&m_resource.themes.at(m_theme)) {
    m_fit.apply(m_resource);
    for (WindowSpec& spec : m_resource.windows) {
        const int id = spec.id;
        m_windows[id] = std::make_unique<Window>(std::move(spec));
    }
    translate();
}

Status Pages::fits(const Resource& next) const {
    for (const auto& [id, window] : m_windows) {
        const auto same = std::find_if(next.windows.begin(), next.windows.end(),
                                       [number = id](const WindowSpec& spec) { return spec.id == number; });
        if (same == next.windows.end()) {
            return Error{"found no window " + std::to_string(id) + ", expected each one of the start"};
        }
        for (const auto& item : window->items) {
            const auto isThatList = [&](const ItemSpec& spec) {
                return spec.id == item->spec.id && spec.kind == ItemKind::List;
            };
            if (item->list && std::none_of(same->items.begin(), same->items.end(), isThatList)) {
                return Error{"found no list " + std::to_string(item->spec.id) + " in window " +
                             std::to_string(id) + ", expected each one of the start"};
            }
        }
    }
    if (next.windows.size() != m_windows.size()) {
        return Error{"found new windows, expected those of the start only"};
    }
    return ok();
}

void Pages::redefine(Resource next) {
    m_resource = std::move(next);
    m_fit.apply(m_resource);
    for (WindowSpec& spec : m_resource.windows) {
        Window& window = *m_windows.at(spec.id);
        window.redefine(std::move(spec));
    }
    m_mirrored = false;
    setLanguage(std::string(m_languageCode));
    if (!setTheme(std::string(m_theme))) {
        setTheme("night");
    }
}

Window* Pages::window(int id) const {
    const auto found = m_windows.find(id);
    return found == m_windows.end() ? nullptr : found->second.get();
}

Item* Pages::item(int windowId, int itemId) const {
    const Window* owner = window(windowId);
    return owner ? owner->find(itemId) : nullptr;
}

bool Pages::isShown(const Window& window) const {
    return std::find(m_shown.begin(), m_shown.end(), &window) != m_shown.end();
}

bool Pages::opaque() const {
    return std::any_of(m_shown.begin(), m_shown.end(), [&](const Window* window) {
        const std::string& theme = window->spec.theme.empty() ? m_theme : window->spec.theme;
        const int background = window->spec.background;
        return background != noColor &&
               m_resource.themes.at(theme)[static_cast<size_t>(background)].alpha >= 1;
    });
}

bool Pages::show(Window& window, bool show) {
    if (show == isShown(window)) {
        return false;
    }
    if (!show) {
        std::erase(m_shown, &window);
    } else if (window.spec.stacked) {
        m_shown.push_back(&window);
    } else {
        const auto isPage = [](const Window* other) { return !other->spec.stacked; };
        const auto present = std::find_if(m_shown.begin(), m_shown.end(), isPage);
        m_replaced = present == m_shown.end() ? nullptr : *present;
        // What lay above the page before does not belong to this one.
        m_shown.assign(1, &window);
    }
    Rect area = window.spec.stacked ? Rect{} : m_screen;
    for (const auto& item : window.items) {
        if (show) {
            takeOver(*item);
            item->progressShown = item->drawn.progress.position;
        }
        area = area.united(item->spec.rect);
    }
    m_damage.add(area);
    return true;
}

void Pages::takeOver(Item& item) {
    item.dirty = false;
    item.drawn = item.set;
    for (Item* child : item.children) {
        const std::vector<int>& texts = child->spec.whenText;
        if (!texts.empty()) {
            const bool shown = std::find(texts.begin(), texts.end(), item.drawn.textId) != texts.end();
            child->dirty = child->dirty || child->set.visible != shown;
            child->set.visible = shown;
        }
    }
    for (Item* rest : item.window.rests) {
        if (rest->spec.total == item.spec.id || rest->spec.elapsed == item.spec.id) {
            showRest(*rest);
        }
    }
}

void Pages::showRest(Item& rest) {
    const auto seconds = [&](int id) { return secondsOf(rest.window.find(id)->drawn.text); };
    const int left = seconds(rest.spec.total) - seconds(rest.spec.elapsed);
    const std::string text = left > 0 ? "\u2212" + timeText(left) : "";
    if (rest.set.text != text) {
        rest.set.text = rest.drawn.text = text;
        m_damage.add(rest.spec.rect);
    }
}

void Pages::draw(Item& item) {
    if (!isShown(item.window)) {
        return;
    }
    if (item.dirty) {
        const bool withChildren =
            item.set.visible != item.drawn.visible || item.set.enabled != item.drawn.enabled;
        m_damage.add(withChildren ? item.bounds() : drawnRect(item));
        const bool group = item.spec.kind == ItemKind::Panel || item.spec.kind == ItemKind::Animation;
        if (group && item.set.visible != item.drawn.visible && groupChanged) {
            groupChanged(item);
        }
        takeOver(item);
        if (item.spec.kind == ItemKind::Progress && progressDrawn) {
            progressDrawn(item);
        }
    }
    for (Item* child : item.children) {
        draw(*child);
    }
}

Rect Pages::drawnRect(const Item& item) const {
    Rect rect = item.spec.rect;
    if (item.spec.kind == ItemKind::Progress && !item.pressed) {
        rect.y += style(item).bubble;
        rect.h -= style(item).bubble;
    }
    return rect;
}

void Pages::drawWindow(Window& window) {
    for (const auto& item : window.items) {
        draw(*item);
    }
}

void Pages::drawAll() {
    for (Window* window : m_shown) {
        drawWindow(*window);
    }
}

void Pages::repaint() {
    drawAll();
    damageAll();
}

void Pages::damage(const Window& window, const Rect& area) {
    if (isShown(window)) {
        m_damage.add(area);
    }
}

void Pages::publish(const Binding& binding, Bound value) {
    m_bound[binding] = std::move(value);
    for (const Window* window : m_shown) {
        if (window->spec.tint == binding) {
            damageAll();
        }
        for (const auto& item : window->items) {
            if (item->spec.bound == binding || item->spec.value == binding) {
                m_damage.add(item->spec.rect);
            }
        }
    }
}

const Bound* Pages::bound(const Binding& binding) const {
    const auto found = m_bound.find(binding);
    return found == m_bound.end() ? nullptr : &found->second;
}

bool Pages::setLanguage(const std::string& code) {
    const auto found = std::find(m_resource.languages.begin(), m_resource.languages.end(), code);
    const bool known = found != m_resource.languages.end();
    m_languageCode = code;
    m_language = known ? static_cast<size_t>(found - m_resource.languages.begin()) : 0;
    m_rightToLeft = m_resource.languages[m_language] == "ar";
    translate();
    mirror();
    damageAll();
    return known;
}

void Pages::mirror() {
    if (m_mirrored == m_rightToLeft) {
        return;
    }
    m_mirrored = m_rightToLeft;
    for (const auto& [id, window] : m_windows) {
        for (const auto& item : window->items) {
            if (Rect& rect = item->spec.rect; item->spec.mirrors) {
                rect.x = m_screen.w - rect.x - rect.w;
            }
        }
    }
}

void Pages::translate() {
    for (const auto& [id, window] : m_windows) {
        for (const auto& item : window->items) {
            for (Content* content : {&item->set, &item->drawn}) {
                if (content->textId != 0) {
                    setText(*content, content->textId);
                }
            }
        }
    }
}

void Pages::setText(Content& content, int textId) const {
    content.textId = textId;
    content.text = m_resource.text(textId, m_language);
}

void Pages::paletteOf(const Window& window) {
    m_palette = &m_resource.themes.at(window.spec.theme.empty() ? m_theme : window.spec.theme);
}

bool Pages::setTheme(const std::string& name) {
    const auto found = m_resource.themes.find(name);
    if (found == m_resource.themes.end()) {
        return false;
    }
    m_theme = name;
    m_palette = &found->second;
    damageAll();
    return true;
}

} // namespace zm
