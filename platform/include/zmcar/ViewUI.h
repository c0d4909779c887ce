#pragma once

#include "zmcar/ViewBase.h"

namespace Oro::ZMCAR {

/** A view that draws the pages of a resource. */
class ViewUI : public ViewBase {
public:
    ViewUI();
    ~ViewUI() override;

    /** Access to the windows and items of the view's resource; null before Init. */
    CUIWndMng* GetUIWndMgrWrapper();
    /**
     * Shows or hides page `wndId`; OnShow runs inside the call on the event thread (and before the event loop
     * is started), from any other thread the call is posted. A page that the resource lets return gives way,
     * once hidden, to the page that it replaced, which is reported as shown. False if the resource has no
     * such page.
     */
    bool ShowWnd(int wndId, bool show, int flag);
    /** Makes the view's window blend with what lies under it. */
    bool EnableAlphaBlending(bool enable);
};

} // namespace Oro::ZMCAR
