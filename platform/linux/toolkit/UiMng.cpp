#include "platform/linux/toolkit/UiMng.h"

#include "zmui/CUI_BtList.h"

#include <algorithm>
#include <initializer_list>

using zm::Item;
using zm::ItemKind;

namespace {

Item* itemOfKind(zm::Pages& pages, int window, int id, std::initializer_list<ItemKind> kinds) {
    Item* item = pages.item(window, id);
    const bool fits =
        item && (kinds.size() == 0 || std::find(kinds.begin(), kinds.end(), item->spec.kind) != kinds.end());
    return fits ? item : nullptr;
}

/** Stores a value and remembers that the item has to be drawn. */
template <class T>
void change(Item& item, T& present, T wanted) {
    if (present != wanted) {
        present = std::move(wanted);
        item.dirty = true;
    }
}

/** Those that bear texts and pictures. */
constexpr std::initializer_list<ItemKind> labels = {ItemKind::Text, ItemKind::Icon, ItemKind::Button};

} // namespace

CUIWndMng::CUIWndMng(std::unique_ptr<Impl> impl) : m_pImpl(std::move(impl)) {
    m_pImpl->analysis = std::make_unique<CUIAnalysis>(*this);
}

CUIWndMng::~CUIWndMng() = default;

CUIAnalysis* CUIWndMng::GetUIAnalysisObj() {
    return m_pImpl->analysis.get();
}

void CUIWndMng::drawAllItem() {
    m_pImpl->pages.drawAll();
}

bool CUIAnalysis::GetItemData(int wndId, int itemId, CUI_BtList*& list) {
    Item* item = itemOfKind(m_wndMng.impl().pages, wndId, itemId, {ItemKind::List});
    list = item ? item->list.get() : nullptr;
    return list != nullptr;
}

bool CUIAnalysis::SetItemText(int wndId, int itemId, int textId) {
    zm::Pages& pages = m_wndMng.impl().pages;
    Item* item = itemOfKind(pages, wndId, itemId, labels);
    if (!item || !pages.resource().texts.contains(textId)) {
        return false;
    }
    zm::Content content = item->set;
    pages.setText(content, textId);
    change(*item, item->set, std::move(content));
    return true;
}

bool CUIAnalysis::SetItemText(int wndId, int itemId, const wchar_t* text) {
    Item* item = itemOfKind(m_wndMng.impl().pages, wndId, itemId, labels);
    if (!item || !text) {
        return false;
    }
    change(*item, item->set.textId, 0);
    change(*item, item->set.text, zm::fromWide(text));
    return true;
}

bool CUIAnalysis::SetItemIcon(int wndId, int itemId, int pictureId, int state) {
    zm::Pages& pages = m_wndMng.impl().pages;
    Item* item = itemOfKind(pages, wndId, itemId, labels);
    const bool pictureKnown = pictureId == 0 || pages.resource().pictures.contains(pictureId);
    if (!item || !pictureKnown || state < zm::StatePressed || state > zm::StateAll) {
        return false;
    }
    auto icons = item->set.icons;
    if (state == zm::StateAll) {
        icons.clear();
    }
    icons[state] = pictureId;
    change(*item, item->set.icons, std::move(icons));
    return true;
}

bool CUIAnalysis::ShowItem(int wndId, int itemId, bool show) {
    Item* item = itemOfKind(m_wndMng.impl().pages, wndId, itemId, {});
    if (!item) {
        return false;
    }
    change(*item, item->set.visible, show);
    return true;
}

bool CUIAnalysis::EnableItem(int wndId, int itemId, bool enable) {
    Item* item = itemOfKind(m_wndMng.impl().pages, wndId, itemId, {});
    if (!item) {
        return false;
    }
    change(*item, item->set.enabled, enable);
    return true;
}

bool CUIAnalysis::SetItemState(int wndId, int itemId, int state) {
    Item* item = itemOfKind(m_wndMng.impl().pages, wndId, itemId, labels);
    if (!item || (state != zm::StateNormal && state != zm::StateSelected)) {
        return false;
    }
    change(*item, item->set.state, state);
    return true;
}

bool CUIAnalysis::SetProgressItemValues(int wndId, int itemId, int maximum, int minimum) {
    Item* item = itemOfKind(m_wndMng.impl().pages, wndId, itemId, {ItemKind::Progress});
    if (!item || maximum < minimum) {
        return false;
    }
    change(*item, item->set.progress.maximum, maximum);
    change(*item, item->set.progress.minimum, minimum);
    return SetProgressItemPos(wndId, itemId, item->set.progress.position);
}

bool CUIAnalysis::SetProgressItemPos(int wndId, int itemId, int position) {
    Item* item = itemOfKind(m_wndMng.impl().pages, wndId, itemId, {ItemKind::Progress});
    if (!item) {
        return false;
    }
    zm::ProgressValue& value = item->set.progress;
    change(*item, value.position, std::clamp(position, value.minimum, value.maximum));
    return true;
}

bool CUIAnalysis::TriggerAnimation(int wndId, int from, int to) {
    zm::Window* window = m_wndMng.impl().pages.window(wndId);
    return window && m_wndMng.impl().motion.trigger(*window, from, to);
}

bool CUIAnalysis::drawItem(int wndId, int itemId) {
    Item* item = itemOfKind(m_wndMng.impl().pages, wndId, itemId, {});
    if (!item) {
        return false;
    }
    m_wndMng.impl().pages.draw(*item);
    return true;
}
