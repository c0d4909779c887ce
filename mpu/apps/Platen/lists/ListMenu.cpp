#include "lists/ListMenu.h"

#include "DiscViewItems.h"
#include "ListSources.h"
#include "lists/MediaTypes.h"
#include "pages/PageState.h"
#include "parts/Widgets.h"
#include "zmui/CUIAnalysis.h"

namespace {

int MarkState(bool bMarked) {
    return bMarked ? ITEM_STATE_SELECTED : ITEM_STATE_NORMAL;
}

} // namespace

void ListMenu::SetMediaTypeIcon(int nWndId) {
    if (!m_widgets.m_pUIAnalysis || !FindMediaType(m_state.m_nCurType)) {
        return;
    }
    for (const MediaType& type : MediaTypes()) {
        const int nTab = static_cast<int>(type.tab);
        m_widgets.m_pUIAnalysis->SetItemState(nWndId, nTab, MarkState(type.type == m_state.m_nCurType));
        m_widgets.m_pUIAnalysis->drawItem(nWndId, nTab);
    }
}

void ListMenu::SetShowLeftState(int nWndId, int n) {
    static constexpr int MENU_ITEMS[] = {ITEM_ALL_MUSIC, ITEM_ALL_VIDEO, ITEM_ALL_PHOTO};
    const ListSource& source = ListSourceOf(n);
    if (!m_widgets.m_pUIAnalysis) {
        return;
    }
    CUIAnalysis& ui = *m_widgets.m_pUIAnalysis;
    if (source.menuItem) {
        for (const int item : MENU_ITEMS) {
            ui.ShowItem(nWndId, item, item == source.menuItem);
        }
        ui.SetItemState(nWndId, source.menuItem, MarkState(source.menuMark == MenuMark::Files));
        ui.SetItemState(nWndId, ITEM_FOLDER_MENU, MarkState(source.menuMark == MenuMark::Folders));
        ui.drawItem(nWndId, ITEM_FOLDER_MENU);
    }
    for (const int item : MENU_ITEMS) {
        ui.drawItem(nWndId, item);
    }
}

void ListMenu::SetListTip(int nWndId, int nTextId) {
    if (m_widgets.m_pUIAnalysis) {
        m_widgets.m_pUIAnalysis->SetItemText(nWndId, ITEM_LIST_TIP, nTextId);
        m_widgets.m_pUIAnalysis->ShowItem(nWndId, ITEM_LIST_TIP, true);
    }
}

void ListMenu::HideListTips() {
    if (m_widgets.m_pUIAnalysis) {
        m_widgets.m_pUIAnalysis->ShowItem(WND_MEDIA_LIST, ITEM_LIST_TIP, false);
        m_widgets.m_pUIAnalysis->ShowItem(WND_FOLDER_LIST, ITEM_LIST_TIP, false);
    }
}

void ListMenu::OpenMenu(int nWndId) {
    SetMediaTypeIcon(nWndId);
    ShowMenu(nWndId, true);
}

void ListMenu::CloseMenu(int nWndId) {
    ShowMenu(nWndId, false);
}

void ListMenu::ShowMenu(int nWndId, bool bOpen) {
    if (m_widgets.m_pUIAnalysis) {
        m_widgets.m_pUIAnalysis->ShowItem(nWndId, ITEM_MENU_OPEN, !bOpen);
        m_widgets.m_pUIAnalysis->ShowItem(nWndId, ITEM_MENU_CLOSE, bOpen);
        m_widgets.m_pUIAnalysis->drawItem(nWndId, ITEM_MENU);
    }
}
