#pragma once

#include <memory>

/** What a list control reports while it is scrolled. */
struct _tagList_Info {
    int nItemId; ///< item of the list control
    int nState;  ///< 3 scrolling began, 5 scrolling ended
    int nTopIndex;
};

/**
 * A list control: rows of one text and icons in slots, drawn only where they are in view. Rows are counted
 * from 0; calls on a row that does not exist return false and do nothing. Event thread only.
 */
class CUI_BtList {
public:
    struct Impl;
    explicit CUI_BtList(std::unique_ptr<Impl> impl);
    ~CUI_BtList();

    int GetItemCount();
    /** Inserts an empty row before `index` (the end if `index` is the count);
     * `data` is free for the caller. */
    bool InsertItem(int index, int data);
    /** Empties the list, which draws itself. */
    bool DeleteAllItems();
    /**
     * Puts picture `icon` (0 for none) into slot `slot`: 0 the kind at the row's start, 2 the playing mark at
     * its end. `state` is the button state it is for (4 all); `redraw` nonzero draws the row if it is in
     * view.
     */
    bool SetItemICon(int index, int icon, int state, int slot, int redraw);
    bool SetItemString(int index, const wchar_t* text, int redraw);
    /** The selected row; false when nothing is selected. `a` and `b` receive 0. */
    bool GetCurSel(int* index, int* a, int* b);
    bool SetCurSel(int index, int flag);
    int GetTopIndex();
    /** Makes `index` the top row in view; any row is taken, a negative one becomes 0. */
    bool SetTopIndex(int index, int redraw, int a, int b, int c);

    Impl& impl() { return *m_pImpl; }

private:
    std::unique_ptr<Impl> m_pImpl;
};
