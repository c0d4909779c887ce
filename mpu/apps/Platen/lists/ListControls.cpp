#include "lists/ListControls.h"

#include "DiscViewItems.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUI_BtList.h"

namespace {

void TakeList(CUIAnalysis& ui, int nWndId, CUI_BtList*& list) {
    ui.GetItemData(nWndId, ITEM_LIST, list);
    if (list) {
        list->DeleteAllItems();
    }
}

} // namespace

void ListControls::TakeLists(CUIAnalysis& ui) {
    TakeList(ui, WND_MEDIA_LIST, m_pAudioList);
    TakeList(ui, WND_FOLDER_LIST, m_pFolderAudioList);
    TakeList(ui, WND_CD_LIST, m_pCDList);
}

CUI_BtList* ListControls::ListOf(int nWndId) const {
    switch (nWndId) {
    case WND_MEDIA_LIST:
        return m_pAudioList;
    case WND_FOLDER_LIST:
        return m_pFolderAudioList;
    case WND_CD_LIST:
        return m_pCDList;
    default:
        return nullptr;
    }
}

void ListControls::DeleteRows(int nWndId) const {
    if (CUI_BtList* list = ListOf(nWndId)) {
        list->DeleteAllItems();
    }
}
