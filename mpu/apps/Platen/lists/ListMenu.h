#pragma once

struct PageState;
struct Widgets;

/** Tabs, left menu, drop-down menu and tip of the list pages. */
class ListMenu {
public:
    ListMenu(const Widgets& widgets, const PageState& state) : m_widgets(widgets), m_state(state) {}

    /** Selects the tab of the browsed type. */
    void SetMediaTypeIcon(int nWndId);
    /** Shows the left menu of list source `n`. */
    void SetShowLeftState(int nWndId, int n);
    /** The text over an empty list. */
    void SetListTip(int nWndId, int nTextId);
    void HideListTips();
    void OpenMenu(int nWndId);
    void CloseMenu(int nWndId);

private:
    void ShowMenu(int nWndId, bool bOpen);

    const Widgets& m_widgets;
    const PageState& m_state;
};
