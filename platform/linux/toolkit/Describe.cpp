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

json describeItem(const Item& item) {
    json icons = json::object();
    for (const auto& [state, picture] : item.icons) {
        icons[std::to_string(state)] = picture;
    }
    const Rect& rect = item.spec.rect;
    json result = {{"kind", itemKindNames[static_cast<size_t>(item.spec.kind)]},
                   {"visible", item.visible},
                   {"enabled", item.enabled},
                   {"text", item.text},
                   {"textId", item.textId},
                   {"icons", std::move(icons)},
                   {"state", item.state},
                   {"progress", item.progress.position},
                   {"rect", {rect.x, rect.y, rect.w, rect.h}}};
    if (item.list) {
        const CUI_BtList::Impl& list = item.list->impl();
        result["rows"] = describeRows(list);
        result["current"] = list.current;
        result["top"] = list.top();
    }
    return result;
}

} // namespace

nlohmann::json Scene::describe(std::optional<int> window) const {
    json result = json::object();
    for (const auto& [id, page] : m_impl->pages.windows()) {
        if (window && id != *window) {
            continue;
        }
        json items = json::object();
        for (const auto& item : page->items) {
            items[std::to_string(item->spec.id)] = describeItem(*item);
        }
        result[std::to_string(id)] = {{"items", std::move(items)}};
    }
    return result;
}

} // namespace zm
