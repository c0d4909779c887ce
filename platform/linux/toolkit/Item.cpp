#include "platform/linux/toolkit/Item.h"

#include "zmui/CUI_BtList.h"

#include <algorithm>
#include <utility>

namespace zm {

namespace {

/** Takes the next description's value unless the application has changed that of the one before. */
template <class T>
void follow(T& present, const T& before, const T& next) {
    if (present == before) {
        present = next;
    }
}

} // namespace

void Content::follow(const ItemSpec& before, const ItemSpec& next) {
    zm::follow(visible, before.visible, next.visible);
    zm::follow(enabled, before.enabled, next.enabled);
    zm::follow(state, before.state, next.state);
    zm::follow(icons, before.icons, next.icons);
    const bool textOfPage = textId == before.textId && (textId != 0 || text == before.text);
    if (textOfPage) {
        textId = next.textId;
        text = next.text;
    }
}

int Content::icon(int buttonState) const {
    auto found = icons.find(buttonState);
    if (found == icons.end()) {
        found = icons.find(StateAll);
    }
    return found == icons.end() ? 0 : found->second;
}

Item::Item(const ItemSpec& itemSpec, Window& owner, Item* parentItem)
    : spec(itemSpec), window(owner),
      parent(parentItem), set{spec.visible, spec.enabled, spec.state, spec.textId, spec.text, spec.icons},
      drawn(set) {
    if (parent) {
        parent->children.push_back(this);
    }
}

Item::~Item() = default;

void Item::redefine(const ItemSpec& next, Item* nextParent) {
    set.follow(spec, next);
    drawn.follow(spec, next);
    spec = next;
    parent = nextParent;
    children.clear();
    if (parent) {
        parent->children.push_back(this);
    }
    kept = {};
}

Rect Item::bounds() const {
    Rect area = spec.rect;
    for (const Item* child : children) {
        area = area.united(child->bounds());
    }
    return area;
}

void Window::redefine(WindowSpec next) {
    spec = std::move(next);
    auto before = std::exchange(items, {});
    m_byId.clear();
    rests.clear();
    for (const ItemSpec& item : spec.items) {
        Item* parent = find(item.parent);
        const auto known = std::find_if(before.begin(), before.end(), [&](const auto& old) {
            return old && old->spec.id == item.id && old->spec.kind == item.kind;
        });
        if (known == before.end()) {
            items.push_back(std::make_unique<Item>(item, *this, parent));
        } else {
            (*known)->redefine(item, parent);
            items.push_back(std::move(*known));
        }
        m_byId[item.id] = items.back().get();
        if (item.elapsed != 0) {
            rests.push_back(items.back().get());
        }
    }
}

Item* Window::find(int id) const {
    const auto found = m_byId.find(id);
    return found == m_byId.end() ? nullptr : found->second;
}

} // namespace zm
