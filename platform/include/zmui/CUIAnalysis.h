#pragma once

class CUIWndMng;
class CUI_BtList;

/**
 * Access to the items of a view's pages by page id and item id. Every call returns false and does nothing
 * when the resource has no such item or the item is of another kind. Changes are kept whether or not the page
 * is shown and become visible with drawItem or CUIWndMng::drawAllItem (or when the page is next shown). Event
 * thread only.
 */
class CUIAnalysis {
public:
    explicit CUIAnalysis(CUIWndMng& wndMng) : m_wndMng(wndMng) {}

    /** The list control of that item; `list` becomes null when there is none. */
    bool GetItemData(int wndId, int itemId, CUI_BtList*& list);
    /** Sets a text of the resource; it follows the language. */
    bool SetItemText(int wndId, int itemId, int textId);
    /** Sets a plain text (32-bit characters); it stays when the language changes. */
    bool SetItemText(int wndId, int itemId, const wchar_t* text);
    /** Sets the picture for one state of the item (1 pressed, 2 normal, 3 selected, 4 all states); picture 0
     * is none. */
    bool SetItemIcon(int wndId, int itemId, int pictureId, int state);
    bool ShowItem(int wndId, int itemId, bool show);
    bool EnableItem(int wndId, int itemId, bool enable);
    /** Sets the button state: 2 normal, 3 selected. */
    bool SetItemState(int wndId, int itemId, int state);
    /** Sets the range's end and its start. */
    bool SetProgressItemValues(int wndId, int itemId, int maximum, int minimum);
    /** Sets the position; it is limited to the range (0..100 unless set). */
    bool SetProgressItemPos(int wndId, int itemId, int position);
    /** Plays animation `from`..`to` on the page. */
    bool TriggerAnimation(int wndId, int from, int to);
    /** Makes the item's present content visible. */
    bool drawItem(int wndId, int itemId);

private:
    CUIWndMng& m_wndMng;
};
