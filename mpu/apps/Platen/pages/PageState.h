#pragma once

#include "DiscViewIds.h"

/** What the pages of the main view share: which of them is current, what plays and what is browsed. */
struct PageState {
    int m_nCurWndId = 0; ///< page last shown
    ViewState m_uiCurState = VIEW_STATE_LOADING;
    PlayType m_nCurPlayType = PLAY_TYPE_UNKNOWN;
    PlayType m_nCurType = PLAY_TYPE_UNKNOWN;    ///< type whose list is browsed
    int m_nMixedType = 0;                       ///< MIXED_... bits
    PlayList m_nPlayListFrom = PLAY_LIST_MUSIC; ///< list a play page returns to
    bool m_bNoFileOfType = false;               ///< the browsed type has no files on the disc
    bool m_bAppPaused = false;                  ///< paused or show-only'd by the launcher

    bool IsVideoState() const {
        return m_uiCurState == VIEW_STATE_VIDEO_PLAY || m_uiCurState == VIEW_STATE_PHOTO_PLAY;
    }
};
