#include "platform/linux/toolkit/Item.h"

#include "zmui/CUI_BtList.h"

#include <algorithm>
#include <utility>

namespace zm {

namespace {

/** What still is as one description had it becomes what the next one says. */
template <class T>
void follow(T& present, const T& before, const T& next) {
    if (present == before) {
        present = next;
    }
}

} // namespace

Item::Item(const ItemSpec& itemSpec, Window& owner, Item* parentItem)
    : spec(itemSpec), window(owner), parent(parentItem), visible(itemSpec.visible), enabled(itemSpec.enabled),
      state(itemSpec.state), textId(itemSpec.textId), text(itemSpec.text), icons(itemSpec.icons) {
    if (parent) {
        parent->children.push_back(this);
    }
}

Item::~Item() = default;

void Item::redefine(const ItemSpec& next, Item* nextParent) {
    follow(visible, spec.visible, next.visible);
    follow(enabled, spec.enabled, next.enabled);
    follow(state, spec.state, next.state);
    follow(icons, spec.icons, next.icons);
    const bool textOfPage = textId == spec.textId && (textId != 0 || text == spec.text);
    if (textOfPage) {
        textId = next.textId;
        text = next.text;
    }
    spec = next;
    parent = nextParent;
    children.clear();
    if (parent) {
        parent->children.push_back(this);
    }
    pressed = false;
    kept = {};
}

bool Item::onPage() const {
    return visible && (!parent || parent->onPage());
}

int Item::icon(int buttonState) const {
    auto found = icons.find(buttonState);
    if (found == icons.end()) {
        found = icons.find(stateAll);
    }
    return found == icons.end() ? 0 : found->second;
}

void Item::markTree() {
    dirty = true;
    for (Item* child : children) {
        child->markTree();
    }
}

void Window::redefine(WindowSpec next) {
    spec = std::move(next);
    auto before = std::exchange(items, {});
    m_byId.clear();
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
    }
}

Item* Window::find(int id) const {
    const auto found = m_byId.find(id);
    return found == m_byId.end() ? nullptr : found->second;
}

} // namespace zm
