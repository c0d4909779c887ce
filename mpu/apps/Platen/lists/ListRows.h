#pragma once

class CUI_BtList;

inline constexpr int ROWS_IN_VIEW = 5;

/** The mark of the playing row. */
void MarkPlayingRow(CUI_BtList& list, int nRow);
void UnmarkRows(CUI_BtList& list);
/** Selects a row and scrolls to `nTopIndex`. */
void SelectRow(CUI_BtList& list, int nRow, int nTopIndex);
/** False, and nRow as it was, without a list or a selection. */
bool SelectedRow(CUI_BtList* list, int& nRow);
/** The keys: move the selection by a row, if there is a list, a selection and such a row. */
void OnHandle_ListDown(CUI_BtList* list);
void OnHandle_ListUp(CUI_BtList* list);
