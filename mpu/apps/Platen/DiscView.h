#pragma once

#include "zmcar/ViewUI.h"

#include <memory>
#include <string>

class CDiscData;
class CUIWndMng;
class DiscViewController;
struct DiscViewParts;

/**
 * The full-screen view of the disc player: what the framework tells it, it hands to the object that knows
 * (DiscViewParts). View messages, launcher messages, timers, keys and touches arrive on the event thread, where every
 * operation runs but AttachControl, ViewInit, SetVoicePlayPar, SetWaitDeviceStateTimer and Close (start-up
 * and shut-down). SetSimpleViewTimer and OnGotoSampleView belong to the interface and do nothing.
 */
class DiscView : public Oro::ZMCAR::ViewUI {
public:
    /** `name` is the view's name and the source name of video capture; what it shows stands in `data`. */
    DiscView(const std::string& name, CDiscData& data);
    ~DiscView() override;

    /** Gives the view its commands, timers and capture; without one it sends nothing. */
    void AttachControl(DiscViewController* controller);
    /** Sets the start values of the pages and opens the catalogue; once,
     * after the resource has been loaded. */
    void ViewInit();
    /** A voice request given at start-up; carried out once music plays. */
    void SetVoicePlayPar(std::string song);
    /** No device report within 15 s counts as no disc. */
    void SetWaitDeviceStateTimer();
    /** Ends the catalogue worker, stops capture that is on, closes the framework's view. */
    bool Close() override;

    int OnUserMessage(APP_MSG_S* msg) override;
    void OnAppsMessage(APP_MSG_S* msg) override;
    void OnClick(CUIWndMng* wndMng, long wndId, long ctrlId, int btState) override;
    bool OnLButtonDown(int x, int y) override;
    bool OnLButtonUp(int x, int y) override;
    bool OnKey(int key, int state, int param) override;
    bool OnKeyboard(int nKey) override;
    void OnShow(int dwWndId, bool bShow, int flag) override;
    void OnClose() override {}
    int OnChildPost(const char* strChild) override;
    void OnListInfoMessage(CUIWndMng* wndMng, int nWndId, int kind, _tagList_Info* info) override;

    void SetSimpleViewTimer() {}
    void OnGotoSampleView() {}

private:
    void FillPage(int nWndId);
    void OnTimer(unsigned int id);

    std::unique_ptr<DiscViewParts> m_pParts;
};
