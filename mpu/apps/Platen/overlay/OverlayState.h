#pragma once

#include "DiscOsdIds.h"
#include "DiscViewIds.h"

#include <cstdint>
#include <initializer_list>

class CDiscData;
class CUIAnalysis;
class CUIWndMng;
class DiscViewController;

/**
 * What the overlay's objects share: the state store, who takes their commands and timers, the widgets, and
 * the clip whose bar is current. Each of the three pointers may be null; whatever needs it then does nothing.
 */
struct OverlayState {
    explicit OverlayState(CDiscData& data) : m_data(data) {}

    bool IsClip(std::initializer_list<int> types) const;
    /** Key click. */
    void ToBeep() const;

    CDiscData& m_data;
    DiscViewController* m_pController = nullptr;
    CUIAnalysis* m_pUIAnalysis = nullptr;
    CUIWndMng* m_pWndMng = nullptr;
    uint32_t m_nCurPlayType = PLAY_TYPE_UNKNOWN;
    int32_t m_nCurWndId = OSD_WND_DVD; ///< the bar of the clip type
    bool m_bTrackChanged = false;      ///< a change of track is being shown
};
