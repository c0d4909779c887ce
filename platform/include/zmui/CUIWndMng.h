#pragma once

#include <memory>

class CUIAnalysis;

/** The window manager of one view: its pages and their drawing. Event thread only. */
class CUIWndMng {
public:
    struct Impl;
    explicit CUIWndMng(std::unique_ptr<Impl> impl);
    ~CUIWndMng();

    /** The item accessor; never null. */
    CUIAnalysis* GetUIAnalysisObj();
    /** Makes every change of every shown page visible. */
    void drawAllItem();

    Impl& impl() { return *m_pImpl; }

private:
    std::unique_ptr<Impl> m_pImpl;
};
