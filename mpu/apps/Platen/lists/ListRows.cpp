#include "lists/ListRows.h"

#include "DiscViewIds.h"
#include "DiscViewItems.h"
#include "zmui/CUI_BtList.h"

void MarkPlayingRow(CUI_BtList& list, int nRow) {
    UnmarkRows(list);
    list.SetItemICon(nRow, ICON_ROW_PLAYING, ITEM_STATE_ALL, ROW_SLOT_PLAYING, 1);
}

void UnmarkRows(CUI_BtList& list) {
    for (int i = 0; i < list.GetItemCount(); ++i) {
        list.SetItemICon(i, ICON_NONE, ITEM_STATE_ALL, ROW_SLOT_PLAYING, 1);
    }
}

void SelectRow(CUI_BtList& list, int nRow, int nTopIndex) {
    list.SetCurSel(nRow, 0);
    list.SetTopIndex(nTopIndex, 1, 0, 0, 0);
}

bool SelectedRow(CUI_BtList* list, int& nRow) {
    int a = 0;
    int b = 0;
    return list && list->GetCurSel(&nRow, &a, &b);
}

void OnHandle_ListDown(CUI_BtList* list) {
    int nRow = 0;
    if (!SelectedRow(list, nRow) || nRow + 1 >= list->GetItemCount()) {
        return;
    }
    const int nTop = list->GetTopIndex();
    const bool bBelowView = nRow + 1 - nTop >= ROWS_IN_VIEW;
    SelectRow(*list, nRow + 1, bBelowView ? nTop + 1 : nTop);
}

void OnHandle_ListUp(CUI_BtList* list) {
    int nRow = 0;
    if (!SelectedRow(list, nRow) || nRow - 1 < 0) {
        return;
    }
    const int nTop = list->GetTopIndex();
    const bool bAboveView = nRow - 1 < nTop;
    SelectRow(*list, nRow - 1, bAboveView ? nTop - 1 : nTop);
}
