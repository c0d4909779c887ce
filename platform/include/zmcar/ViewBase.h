#pragma once

#include "screen/screen.h"
#include "zmcar/AppMessage.h"
#include "zmcar/IViewMessage.h"

#include <memory>
#include <string>

class CUIWndMng;
struct _tagList_Info;

namespace Oro::ZMCAR {

class ViewUI;
struct ViewImpl;

/**
 * A view: its resource, its window, its event handlers. The first view that is initialised is the
 * application's main view and owns the event thread; others are joined to it. All On... handlers run on the
 * event thread.
 */
class ViewBase : public IViewMessage {
public:
    ViewBase();
    ~ViewBase() override;
    ViewBase(const ViewBase&) = delete;
    ViewBase& operator=(const ViewBase&) = delete;

    /** Blocks SIGTERM and SIGINT in the calling thread and those it starts, for WaitforSignals. */
    bool MaskSignals();
    /**
     * Connects to the head unit and loads `rccPath` + `resourceFile` with fonts from `fontPath`; the window
     * has `width` x `height` pixels and owns window group `windowGroup`. False (and a log line that says why)
     * if the head unit does not answer within two seconds or the resource is faulty.
     */
    virtual bool Init(std::string rccPath, std::string viewName, std::string resourceFile,
                      std::string windowGroup, std::string fontPath, int width, int height);
    /** Adds an initialised view under `name` with z-order `order`. */
    bool JoinView(ViewUI* child, std::string name, int order);
    /** Starts the event thread; false if it cannot be started. */
    bool StartEventLoop();
    /** Blocks until SIGTERM or SIGINT arrives or the head unit goes away for good. */
    bool WaitforSignals();
    /** Ends the event thread, waits for it and closes the window. */
    virtual bool Close();

    bool SendViewMessage(const APP_MSG_S& message) override;

    /** The joined view of that name, or null. */
    ViewUI* GetViewUI(const std::string& name);
    /** Shows or hides the joined view or posted child window `name`; takes effect at FlushContext. */
    bool SetVisible(const std::string& name, bool show);
    /** Sets the z-order of the child `name`; higher is in front. */
    bool SetZOrder(const std::string& name, int order);
    /** Makes window properties take effect and draws what changed. */
    bool FlushContext();
    std::string GetWinGroupName();
    /** The child window that somebody posted under `name` into this view's window group; false if there is
     * none. */
    bool GetPostScreenWin(const std::string& name, screen_window_t& window);

    virtual int OnUserMessage(APP_MSG_S* msg);
    virtual void OnLanguageChange(int language);
    virtual void OnUIStytleChange(int style);
    virtual bool OnKey(int key, int state, int param);
    /** A hard key; returns whether it was handled. */
    virtual bool OnKeyboard(int key);
    /** A touch on a control: state 0 press, 1 release, 4 held for 800 ms. Control 0: no item was hit. */
    virtual void OnClick(CUIWndMng* wndMng, long wndId, long ctrlId, int btState);
    virtual void OnComponent(CUIWndMng* wndMng, int wndId, int ctrlId, int param);
    virtual void OnWindowInitMessage(CUIWndMng* wndMng, int wndId);
    virtual void OnScrollViewMessage(CUIWndMng* wndMng, int wndId, int ctrlId, int param);
    /** A list's notification: `kind` 3 is scrolling, its state stands in `info`. */
    virtual void OnListInfoMessage(CUIWndMng* wndMng, int wndId, int kind, _tagList_Info* info);
    virtual bool OnMouseMove(int x, int y);
    virtual bool OnLButtonDown(int x, int y);
    virtual bool OnLButtonUp(int x, int y);
    /** Page `wndId` was shown or hidden; inside ShowWnd. */
    virtual void OnShow(int wndId, bool show, int flag);
    virtual void OnClose();
    virtual void OnSetFocus();
    virtual void OnKillFocus();
    virtual bool OnCreateWindow();
    /** A child window or view of that name has been posted; returns 1 if it was expected, else 0. */
    virtual int OnChildPost(const char* child);
    /** A launcher, timer, clock or vehicle message for the main view. */
    virtual void OnAppsMessage(APP_MSG_S* msg);

protected:
    friend struct ViewImpl;
    std::unique_ptr<ViewImpl> m_pImpl;
};

} // namespace Oro::ZMCAR
