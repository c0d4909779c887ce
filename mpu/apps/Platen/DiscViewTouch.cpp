#include "DiscView.h"

#include "DiscOsdView.h"
#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/FindRow.h"
#include "parts/SourceGroup.h"

#include <cstdlib>

namespace {

constexpr int SWIPE_LENGTH = 100; ///< a longer way is a swipe
constexpr int SWIPE_BOTTOM = 380; ///< where the row of buttons begins
constexpr int CORNER_WIDTH = 200; ///< in this corner a touch on a disc menu toggles the overlay
constexpr int CORNER_HEIGHT = 80;
constexpr int MENU_WIDTH = 720; ///< of a disc menu; its height is not scaled

constexpr bool IsFastButton(long ctrlId) {
    return ctrlId == ITEM_PREVIOUS || ctrlId == ITEM_NEXT;
}

} // namespace

bool DiscView::OnLButtonDown(int x, int y) {
    m_ptLButtonDown = {x, y};
    return true;
}

bool DiscView::OnLButtonUp(int x, int y) {
    m_ptLButtonUp = {x, y};
    return true;
}

/** Who handles the clicks on a page. */
struct DiscView::PageRow {
    long page;
    bool restartsTimer; ///< of the way back to the play page
    void (DiscView::*handler)(long ctrlId);
};

void DiscView::OnClick(CUIWndMng*, long nWndId, long nCtrlId, int nBtState) {
    static constexpr PageRow ROWS[] = {
        {WND_DISC_LOADING, false, &DiscView::OnClickLoadingWnd},
        {WND_PARKING, false, &DiscView::OnClickParkingWnd},
        {WND_VIDEO, false, &DiscView::OnClickVideoWnd},
        {WND_GOTO, false, &DiscView::OnClickGotoWnd},
        {WND_DISC_ERROR, false, &DiscView::OnClickErrorWnd},
        {WND_MEDIA_LIST, true, &DiscView::OnClickAudioListWnd},
        {WND_FOLDER_LIST, true, &DiscView::OnClickFolderListWnd},
        {WND_CD_LIST, true, &DiscView::OnClickCDListWnd},
    };
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnClick]--nWndId=%d,nCtrlId=%d,nBtState=%d\n",
            static_cast<int>(nWndId), static_cast<int>(nCtrlId), nBtState);
    if (nWndId == WND_AUDIO_PLAY) {
        OnClickAudioPlay(nCtrlId, nBtState);
        m_nLastBtState = nBtState;
        return;
    }
    if (nBtState != BT_STATE_RELEASED) {
        return;
    }
    if (const PageRow* row = FindRow(ROWS, &PageRow::page, nWndId)) {
        if (row->restartsTimer) {
            SetDisplayPlayViewTimer();
        }
        (this->*row->handler)(nCtrlId);
    }
}

void DiscView::OnClickAudioPlay(long nCtrlId, int nBtState) {
    if (nBtState == BT_STATE_HELD) {
        if (nCtrlId == ITEM_PREVIOUS) {
            Send(&DiscViewController::FastBackward);
        } else if (nCtrlId == ITEM_NEXT) {
            Send(&DiscViewController::FastForward);
        }
    }
    if (nBtState != BT_STATE_RELEASED) {
        return;
    }
    if (IsFastButton(nCtrlId)) {
        // The release that ends a long press is no click.
        if (m_nLastBtState == BT_STATE_PRESSED) {
            OnClickAudioPlayWnd(nCtrlId);
        }
        return;
    }
    OnClickAudioPlayWnd(nCtrlId);
    if (nCtrlId != ITEM_PROGRESS && m_ptLButtonUp.y < SWIPE_BOTTOM) {
        OnSwipe();
    }
}

void DiscView::OnSwipe() {
    const int dx = m_ptLButtonUp.x - m_ptLButtonDown.x;
    if (std::abs(dx) <= SWIPE_LENGTH) {
        return;
    }
    ToBeep();
    Send(dx > 0 ? &DiscViewController::PreviousClip : &DiscViewController::NextClip);
}

struct DiscView::ControlRow {
    long control;
    void (*action)(DiscView& view);
};

void DiscView::OnClickAudioPlayWnd(long nCtrlId) {
    using View = DiscView&;
    static constexpr ControlRow ROWS[] = {
        {ITEM_HOME, [](View view) { view.QueryHome(); }},
        {ITEM_PROGRESS, [](View) {}},
        {ITEM_SHUFFLE, [](View view) { view.Send(&DiscViewController::SetShuffleMode, 0); }},
        {ITEM_REPEAT, [](View view) { view.Send(&DiscViewController::SetRepeatMode, 0); }},
        {ITEM_TO_LIST,
         [](View view) {
             view.SetDisplayPlayViewTimer();
             view.OnHandleUIReturnList();
         }},
        {ITEM_PREVIOUS, [](View view) { view.Send(&DiscViewController::PreviousClip); }},
        {ITEM_PLAY, [](View view) { view.Send(&DiscViewController::PlayPause); }},
        {ITEM_PAUSE, [](View view) { view.Send(&DiscViewController::PlayPause); }},
        {ITEM_NEXT, [](View view) { view.Send(&DiscViewController::NextClip); }},
        {ITEM_EQUALISER, [](View view) { view.QueryApplication("zmeq"); }},
    };
    if (const ControlRow* row = FindRow(ROWS, &ControlRow::control, nCtrlId)) {
        ToBeep();
        row->action(*this);
    } else {
        OnClickSrcGroup(nCtrlId);
    }
}

void DiscView::OnClickLoadingWnd(long nCtrlId) {
    if (nCtrlId == ITEM_HOME) {
        ToBeep();
        QueryHome();
    } else {
        OnClickSrcGroup(nCtrlId);
    }
}

void DiscView::OnClickErrorWnd(long nCtrlId) {
    OnClickLoadingWnd(nCtrlId);
}

void DiscView::OnClickVideoWnd(long) {
    ToBeep();
    if (m_nCurPlayType == PLAY_TYPE_DVD && CDiscData::GetInstance()->GetDVDRootMenuFlag()) {
        OnClickDiscMenu();
    } else if (m_bVideoOsd) {
        HideOsdAndPad();
    } else {
        SetVisibleOsd(true);
    }
}

void DiscView::OnClickDiscMenu() {
    const auto [x, y] = m_ptLButtonUp;
    LOGBASE(LOG_LEV_TRACE, "OnClickVideoWnd", "[DiscView::OnLButtonUp]--X=%ld,Y=%ld\n", static_cast<long>(x),
            static_cast<long>(y));
    const bool bCorner = x < CORNER_WIDTH && y < CORNER_HEIGHT;
    if (bCorner && !m_bVideoOsd) {
        SetVisibleOsd(true);
    } else {
        HideOsdAndPad();
    }
    Send(&DiscViewController::SendTsPos, x * MENU_WIDTH / SCREEN_WIDTH, y);
}

void DiscView::OnClickPictureWnd(long) {
    SetVisibleOsd(!m_bVideoOsd);
}

SourceGroup DiscView::Sources() {
    return {m_pUIAnalysis, m_pWndMng, m_pController, m_nCurWndId, "--type=ui"};
}

void DiscView::OnClickSrcGroup(long nCtrlId) {
    if (Sources().Click(nCtrlId) == SourceGroupClick::Opened) {
        SetDisplaySrcTimer();
    }
}
