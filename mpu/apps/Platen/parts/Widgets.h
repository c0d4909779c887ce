#pragma once

class CUIAnalysis;
class CUIWndMng;

/** Access to the items and the windows of a view's resource; both null until it has been loaded. */
struct Widgets {
    CUIAnalysis* m_pUIAnalysis = nullptr;
    CUIWndMng* m_pWndMng = nullptr;
};
