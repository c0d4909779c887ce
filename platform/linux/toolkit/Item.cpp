#include "platform/linux/toolkit/Item.h"

#include "zmui/CUI_BtList.h"

namespace zm {

Item::Item(const ItemSpec& itemSpec, Window& owner, Item* parentItem)
    : spec(itemSpec), window(owner), parent(parentItem), visible(itemSpec.visible), enabled(itemSpec.enabled),
      state(itemSpec.state), textId(itemSpec.textId), text(itemSpec.text), icons(itemSpec.icons) {
    if (parent) {
        parent->children.push_back(this);
    }
}

Item::~Item() = default;

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

Window::Window(const WindowSpec& windowSpec) : spec(windowSpec) {
    for (const ItemSpec& item : spec.items) {
        items.push_back(std::make_unique<Item>(item, *this, find(item.parent)));
        m_byId[item.id] = items.back().get();
    }
}

Item* Window::find(int id) const {
    const auto found = m_byId.find(id);
    return found == m_byId.end() ? nullptr : found->second;
}

} // namespace zm
