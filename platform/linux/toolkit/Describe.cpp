#include "platform/linux/toolkit/ListControl.h"
#include "platform/linux/toolkit/SceneImpl.h"

#include <nlohmann/json.hpp>

namespace zm {

namespace {

using nlohmann::json;

json describeRows(const CUI_BtList::Impl& list) {
    json rows = json::array();
    for (const auto& row : list.rows) {
        json icons = json::object();
        for (size_t slot = 0; slot < row.icons.size(); ++slot) {
            if (row.icons[slot] != CUI_BtList::Impl::noPicture) {
                icons[std::to_string(slot)] = row.icons[slot];
            }
        }
        rows.push_back({{"text", list.text(row)}, {"icons", std::move(icons)}});
    }
    return rows;
}

json describeItem(const Pages& pages, const Item& item) {
    json icons = json::object();
    for (const auto& [state, picture] : item.set.icons) {
        icons[std::to_string(state)] = picture;
    }
    const Rect& rect = item.spec.rect;
    json result = {{"kind", itemKindNames[static_cast<size_t>(item.spec.kind)]},
                   {"visible", item.set.visible},
                   {"enabled", item.set.enabled},
                   {"text", item.set.text},
                   {"textId", item.set.textId},
                   {"icons", std::move(icons)},
                   {"state", item.set.state},
                   {"progress", item.set.progress.position},
                   {"rect", {rect.x, rect.y, rect.w, rect.h}}};
    if (!item.spec.bound.empty()) {
        const Bound* bound = pages.bound(item.spec.bound);
        result["picture"] = bound && bound->picture ? bound->text : "";
    }
    if (!item.spec.value.empty()) {
        const Bound* bound = pages.bound(item.spec.value);
        result["value"] = bound ? bound->text : "";
    }
    if (item.list) {
        const CUI_BtList::Impl& list = item.list->impl();
        result["rows"] = describeRows(list);
        result["current"] = list.current;
        result["top"] = list.top();
    }
    return result;
}

bool fills(const Pages& pages, const Item& item) {
    return item.spec.kind == ItemKind::Panel && pages.style(item).look(LookState::Normal).fill != noColor;
}

// Whether something that is drawn later lies over that point of the item.
bool covered(const Pages& pages, const Item& item, int x, int y) {
    bool later = false;
    for (const Window* window : pages.shown()) {
        if (later && window != &item.window && window->spec.background != noColor) {
            return true;
        }
        for (const auto& other : window->items) {
            if (later && fills(pages, *other) && other->onPage() && other->spec.rect.contains(x, y)) {
                return true;
            }
            later = later || other.get() == &item;
        }
    }
    return false;
}

/** Collects what is seen of the items. */
struct Seen {
    const Pages& pages;
    const Touch& touch;
    json entries = json::array();

    void add(const Item& item, const std::string& text, const Rect& rect) {
        const int x = rect.x + rect.w / 2;
        const int y = rect.y + rect.h / 2;
        const bool touched = item.spec.touch && touch.reaches(x, y, item);
        if ((text.empty() && !touched) || covered(pages, item, x, y)) {
            return;
        }
        json entry = {{"window", item.window.spec.id},
                      {"item", item.spec.id},
                      {"kind", itemKindNames[static_cast<size_t>(item.spec.kind)]},
                      {"text", text},
                      {"rect", {rect.x, rect.y, rect.w, rect.h}},
                      {"enabled", item.drawn.enabled}};
        if (touched) {
            entry["touch"] = {x, y};
        }
        entries.push_back(std::move(entry));
    }

    void addRows(const Item& item, const CUI_BtList::Impl& list) {
        for (int row = 0; list.has(row); ++row) {
            const Rect rect = list.rowRect(row);
            if (item.spec.rect.contains(rect.x + rect.w / 2, rect.y + rect.h / 2)) {
                add(item, list.text(list.rows[static_cast<size_t>(row)]), rect);
            }
        }
    }
};

} // namespace

nlohmann::json Scene::describeSeen() const {
    Seen seen{m_impl->pages, m_impl->touch};
    for (const Window* window : m_impl->pages.shown()) {
        for (const auto& item : window->items) {
            if (!item->onPage()) {
                continue;
            }
            if (item->list) {
                seen.addRows(*item, item->list->impl());
            } else {
                seen.add(*item, item->drawn.text, item->spec.rect);
            }
        }
    }
    return std::move(seen.entries);
}

nlohmann::json Scene::describe(std::optional<int> window) const {
    json result = json::object();
    for (const auto& [id, page] : m_impl->pages.windows()) {
        if (window && id != *window) {
            continue;
        }
        json items = json::object();
        for (const auto& item : page->items) {
            json described = describeItem(m_impl->pages, *item);
            described["style"] = m_impl->pages.style(*item).name;
            items[std::to_string(item->spec.id)] = std::move(described);
        }
        result[std::to_string(id)] = {{"items", std::move(items)}};
    }
    return result;
}

} // namespace zm
