#include "DiscViewLists.h"

#include "DiscViewItems.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/FindRow.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUI_BtList.h"

namespace {

/** Controls of the list pages that only they have. */
enum : int {
    LIST_CTRL_MENU_CLOSE = 500,
    LIST_CTRL_MENU_OPEN = 501,
    LIST_CTRL_FOLDER_UP = 1013,
    LIST_CTRL_MENU = 5002,
    LIST_CTRL_NOP_6003 = 6003,
    LIST_CTRL_NOP_6004 = 6004,
    LIST_CTRL_NOP_6005 = 6005,
    LIST_CTRL_GOTO = 6505,
    LIST_CTRL_GOTO_PAD = 6545
};

} // namespace

/** A list page of a data disc. */
struct DiscView::ListPage {
    int window;
    bool guardsNoFiles; ///< the menu does nothing while the chosen type has no files
};

/** What a control of the two list pages does after the beep. */
struct DiscView::ListControl {
    long control;
    void (*act)(DiscView& view, const ListPage& page, long ctrlId);
};

void DiscView::OnClickAudioListWnd(long nCtrlId) {
    static constexpr ListPage PAGE = {WND_MEDIA_LIST, true};
    if (nCtrlId == ITEM_LIST) {
        ToBeep();
        OnClickMediaRow();
    } else {
        OnClickListPage(PAGE, nCtrlId);
    }
}

void DiscView::OnClickFolderListWnd(long nCtrlId) {
    static constexpr ListPage PAGE = {WND_FOLDER_LIST, false};
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnClickFolderListWnd] nCtrlId=%ld,m_nCurListFrom=%d\n",
            nCtrlId, m_nCurListFrom);
    if (nCtrlId == ITEM_LIST) {
        ToBeep();
        OnClickFolderRow();
    } else if (nCtrlId == LIST_CTRL_FOLDER_UP) {
        ToBeep();
        OnHandleUIReturnUpFolder(m_nCurListFrom);
    } else {
        OnClickListPage(PAGE, nCtrlId);
    }
}

void DiscView::OnClickListPage(const ListPage& page, long nCtrlId) {
    static constexpr auto NOTHING = [](DiscView&, const ListPage&, long) {};
    static constexpr auto ALL_FILES = [](DiscView& view, const ListPage& where, long control) {
        view.OnClickAllFiles(where, control);
    };
    static constexpr ListControl ROWS[] = {
        {ITEM_TYPE_ICON, [](DiscView& view, const ListPage& where, long) { view.OnClickToPlaying(where); }},
        {ITEM_ALL_MUSIC, ALL_FILES},
        {ITEM_ALL_VIDEO, ALL_FILES},
        {ITEM_ALL_PHOTO, ALL_FILES},
        {ITEM_FOLDER_MENU,
         [](DiscView& view, const ListPage& where, long) { view.OnClickFolderMenu(where); }},
        {ITEM_TAB_MUSIC, [](DiscView& view, const ListPage&, long) { view.OnHandleChangeToMusic(); }},
        {ITEM_TAB_VIDEO, [](DiscView& view, const ListPage&, long) { view.OnHandleChangeToVideo(); }},
        {ITEM_TAB_PHOTO, [](DiscView& view, const ListPage&, long) { view.OnHandleChangeToPhoto(); }},
        {LIST_CTRL_MENU,
         [](DiscView& view, const ListPage& where, long) { view.OnClickMenu(where, Menu::Open); }},
        {LIST_CTRL_MENU_CLOSE,
         [](DiscView& view, const ListPage& where, long) { view.OnClickMenu(where, Menu::Closed); }},
        {LIST_CTRL_GOTO, [](DiscView& view, const ListPage& where, long) { view.OnClickGoto(where); }},
        {LIST_CTRL_GOTO_PAD, [](DiscView& view, const ListPage& where, long) { view.OnClickGotoPad(where); }},
        {LIST_CTRL_NOP_6003, NOTHING},
        {LIST_CTRL_NOP_6004, NOTHING},
        {LIST_CTRL_NOP_6005, NOTHING},
        {ITEM_HOME, [](DiscView& view, const ListPage&, long) { view.QueryHome(); }},
    };
    if (const ListControl* row = FindRow(ROWS, &ListControl::control, nCtrlId)) {
        ToBeep();
        row->act(*this, page, nCtrlId);
    } else {
        OnClickSrcGroup(nCtrlId);
    }
}

void DiscView::OnClickMediaRow() {
    if (!m_pAudioList) {
        return;
    }
    int nRow = -1;
    SelectedRow(m_pAudioList, nRow);
    m_nListTopIndex = m_pAudioList->GetTopIndex();
    if (m_nCurType == PLAY_TYPE_CD) {
        OnHandleUIListClick(ROW_MUSIC, LIST_FROM_CUR_AUDIO, nRow);
        return;
    }
    const MediaType* type = FindMediaType(m_nCurType);
    if (!type) {
        return;
    }
    if (m_nCurListFrom == type->allFrom) {
        OnHandleUIListClick(type->rowKind, type->allFrom, nRow);
        m_nPlayListFrom = type->playList;
    } else if (m_nCurListFrom == type->foldersFrom) {
        m_nClickFolderId = ROOT_FOLDER;
        OnOpenFolder(type->foldersFrom, nRow);
        m_nFolderCurSel = nRow;
        m_nFolderTopIndex = m_pAudioList->GetTopIndex();
    } else if (m_nCurListFrom == LIST_FROM_SEARCH && m_nCurType == PLAY_TYPE_MUSIC) {
        OnHandleUIListClick(ROW_MUSIC, LIST_FROM_SEARCH, nRow);
        m_nPlayListFrom = PLAY_LIST_SEARCH;
    }
}

void DiscView::OnClickFolderRow() {
    LOGBASE(LOG_LEV_TRACE, "OnClickFolderListWnd",
            "[DiscView::OnClickFolderListWnd] m_nCurType=%d,m_nCurListFrom=%d\n", m_nCurType, m_nCurListFrom);
    if (!m_pFolderAudioList) {
        LOGBASE(LOG_LEV_TRACE, "OnClickFolderListWnd",
                "[DiscView::OnClickFolderListWnd] m_pFolderAudioList null\n");
        return;
    }
    int nRow = -1;
    SelectedRow(m_pFolderAudioList, nRow);
    m_nListTopIndex = m_pFolderAudioList->GetTopIndex();
    const MediaType* type = FindMediaType(m_nCurType);
    if (type && m_nCurListFrom == type->inFolderFrom) {
        OnOpenFolder(type->inFolderFrom, nRow);
    }
}

void DiscView::RememberTop(int nWndId) {
    if (CUI_BtList* list = ListOf(nWndId)) {
        const bool bFolders =
            nWndId == WND_MEDIA_LIST && FindRow(MediaTypes(), &MediaType::foldersFrom, m_nCurListFrom);
        (bFolders ? m_nFolderTopIndex : m_nListTopIndex) = list->GetTopIndex();
    }
}

void DiscView::OnClickToPlaying(const ListPage& page) {
    if (m_bNoFileOfType || m_nCurPlayType != m_nCurType || !ListOf(page.window)) {
        return;
    }
    RememberTop(page.window);
    if (IsAudioType(m_nCurPlayType)) {
        OnGotoAudioPlayPage();
        return;
    }
    const bool bFilmOrPhoto = m_nCurPlayType == PLAY_TYPE_VIDEO || m_nCurPlayType == PLAY_TYPE_PHOTO;
    if (bFilmOrPhoto && IsRunning(CDiscData::GetInstance()->GetCurPlayStatus().discState)) {
        GotoVideoPage(m_nCurPlayType);
    }
}

void DiscView::OnClickAllFiles(const ListPage& page, long nCtrlId) {
    if (m_pController && !(page.guardsNoFiles && m_bNoFileOfType)) {
        ShowAllFiles(*FindRow(MediaTypes(), &MediaType::allControl, nCtrlId));
        m_bSelPlayingRow = true;
    }
}

void DiscView::OnClickFolderMenu(const ListPage& page) {
    if (page.guardsNoFiles && m_bNoFileOfType) {
        return;
    }
    if (const MediaType* type = FindMediaType(m_nCurType)) {
        m_uiCurState = type->state;
    }
    m_nClickFolderId = CDiscData::GetInstance()->GetCurPlayInfo().parentFolder;
    OnGotoFolderListPage(0);
}

void DiscView::OnClickMenu(const ListPage& page, Menu menu) {
    if (menu == Menu::Open) {
        SetMediaTypeIcon(page.window);
    }
    if (m_pUIAnalysis) {
        m_pUIAnalysis->ShowItem(page.window, LIST_CTRL_MENU_OPEN, menu == Menu::Closed);
        m_pUIAnalysis->ShowItem(page.window, LIST_CTRL_MENU_CLOSE, menu == Menu::Open);
        m_pUIAnalysis->drawItem(page.window, LIST_CTRL_MENU);
    }
}

void DiscView::OnClickGoto(const ListPage& page) {
    if (!m_bNoFileOfType && m_nCurPlayType == m_nCurType) {
        RememberTop(page.window);
        ShowGotoView();
    }
}

void DiscView::OnClickGotoPad(const ListPage& page) {
    if (!(page.guardsNoFiles && m_bNoFileOfType)) {
        ShowGotoView();
    }
}

void DiscView::OnClickCDListWnd(long nCtrlId) {
    switch (nCtrlId) {
    case ITEM_LIST:
        ToBeep();
        OnClickCDRow();
        break;
    case ITEM_TYPE_ICON:
        ToBeep();
        RememberTop(WND_CD_LIST);
        OnGotoAudioPlayPage();
        break;
    case ITEM_ALL_MUSIC:
    case LIST_CTRL_NOP_6003:
    case LIST_CTRL_NOP_6004:
    case LIST_CTRL_NOP_6005:
        ToBeep();
        break;
    case LIST_CTRL_GOTO:
    case LIST_CTRL_GOTO_PAD:
        ToBeep();
        ShowGotoView();
        break;
    case ITEM_HOME:
        ToBeep();
        QueryHome();
        break;
    default:
        OnClickSrcGroup(nCtrlId);
        break;
    }
}

void DiscView::OnClickCDRow() {
    if (m_pCDList && m_nCurPlayType == PLAY_TYPE_CD) {
        int nRow = -1;
        SelectedRow(m_pCDList, nRow);
        m_nListTopIndex = m_pCDList->GetTopIndex();
        OnHandleUIListClick(ROW_MUSIC, LIST_FROM_CUR_AUDIO, nRow);
    }
}
