#pragma once

class CUIAnalysis;
class CUIWndMng;

namespace Oro::ZMCAR {
class PublicController;
}

inline constexpr int OSD_ITEM_SRC_GROUP = 101; ///< the source popup, on every page of both views

/** Controls of the source group, the same on every page of both views. */
enum : int {
    OSD_CTRL_SRC_OPEN = 5,
    OSD_CTRL_SRC_CLOSE = 99,
    OSD_CTRL_SRC_RADIO = 103,
    OSD_CTRL_SRC_USB = 105,
    OSD_CTRL_SRC_BTTEL = 106,
    OSD_CTRL_SRC_NAVI = 107,
    OSD_CTRL_SRC_ASR = 111,
    OSD_CTRL_SRC_AUX = 118,
    OSD_CTRL_SRC_AIRCOND = 119
};

enum class SourceGroupClick {
    Other,  ///< no control of the group; nothing was done
    Opened, ///< the popup was opened; the caller starts the timer that closes it
    Done
};

/**
 * The popup with which the user changes to another application, on one page. Each of its controls beeps.
 * Without the two widget accessors it is neither opened nor closed, without a controller it neither beeps nor
 * asks the launcher. Event thread only.
 */
class SourceGroup {
public:
    /** `speechData` is what the speech recogniser is started with. */
    SourceGroup(CUIAnalysis* items, CUIWndMng* windows, Oro::ZMCAR::PublicController* controller, int window,
                const char* speechData)
        : m_pItems(items), m_pWindows(windows), m_pController(controller), m_nWindow(window),
          m_pSpeechData(speechData) {}

    SourceGroupClick Click(long ctrlId);
    /** Shows or hides the popup and redraws everything. */
    void ShowPopup(bool show);

private:
    void Beep();

    CUIAnalysis* m_pItems;
    CUIWndMng* m_pWindows;
    Oro::ZMCAR::PublicController* m_pController;
    int m_nWindow;
    const char* m_pSpeechData;
};
