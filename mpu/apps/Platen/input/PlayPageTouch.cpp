#include "input/PlayPageTouch.h"

#include "DiscViewController.h"
#include "DiscViewIds.h"
#include "DiscViewItems.h"
#include "FindRow.h"
#include "input/TouchPoints.h"
#include "lists/ListChange.h"
#include "pages/SourcePopup.h"
#include "parts/ControlLink.h"

#include <cstdlib>

namespace {

constexpr int SWIPE_LENGTH = 100; ///< pixels; a longer movement is a swipe
constexpr int SWIPE_BOTTOM = 380; ///< where the row of buttons begins

constexpr bool IsFastButton(long ctrlId) {
    return ctrlId == ITEM_PREVIOUS || ctrlId == ITEM_NEXT;
}

} // namespace

void PlayPageTouch::OnClickAudioPlay(long nCtrlId, int nBtState) {
    if (nBtState == BT_STATE_HELD) {
        if (nCtrlId == ITEM_PREVIOUS) {
            m_control.Send(&DiscViewController::FastBackward);
        } else if (nCtrlId == ITEM_NEXT) {
            m_control.Send(&DiscViewController::FastForward);
        }
    } else if (nBtState == BT_STATE_RELEASED) {
        OnReleased(nCtrlId);
    }
    m_nLastBtState = nBtState;
}

void PlayPageTouch::OnReleased(long nCtrlId) {
    if (IsFastButton(nCtrlId)) {
        // The release that ends a long press is not a click.
        if (m_nLastBtState == BT_STATE_PRESSED) {
            OnClickAudioPlayWnd(nCtrlId);
        }
        return;
    }
    OnClickAudioPlayWnd(nCtrlId);
    if (nCtrlId != ITEM_PROGRESS && m_points.m_ptLButtonUp.y < SWIPE_BOTTOM) {
        OnSwipe();
    }
}

void PlayPageTouch::OnSwipe() {
    const int dx = m_points.m_ptLButtonUp.x - m_points.m_ptLButtonDown.x;
    if (std::abs(dx) <= SWIPE_LENGTH) {
        return;
    }
    m_control.ToBeep();
    m_control.Send(dx > 0 ? &DiscViewController::PreviousClip : &DiscViewController::NextClip);
}

struct PlayPageTouch::ControlRow {
    long control;
    void (*action)(PlayPageTouch& page);
};

void PlayPageTouch::OnClickAudioPlayWnd(long nCtrlId) {
    using Page = PlayPageTouch&;
    static constexpr ControlRow ROWS[] = {
        {ITEM_HOME, [](Page page) { page.m_control.QueryHome(); }},
        {ITEM_PROGRESS, [](Page) {}},
        {ITEM_SHUFFLE, [](Page page) { page.m_control.Send(&DiscViewController::SetShuffleMode, 0); }},
        {ITEM_REPEAT, [](Page page) { page.m_control.Send(&DiscViewController::SetRepeatMode, 0); }},
        {ITEM_TO_LIST,
         [](Page page) {
             page.m_control.SetDisplayPlayViewTimer();
             page.m_change.OnHandleUIReturnList();
         }},
        {ITEM_PREVIOUS, [](Page page) { page.m_control.Send(&DiscViewController::PreviousClip); }},
        {ITEM_PLAY, [](Page page) { page.m_control.Send(&DiscViewController::PlayPause); }},
        {ITEM_PAUSE, [](Page page) { page.m_control.Send(&DiscViewController::PlayPause); }},
        {ITEM_NEXT, [](Page page) { page.m_control.Send(&DiscViewController::NextClip); }},
        {ITEM_EQUALISER, [](Page page) { page.m_control.QueryApplication("zmeq"); }},
    };
    if (const ControlRow* row = FindRow(ROWS, &ControlRow::control, nCtrlId)) {
        m_control.ToBeep();
        row->action(*this);
    } else {
        m_sources.OnClickSrcGroup(nCtrlId);
    }
}
