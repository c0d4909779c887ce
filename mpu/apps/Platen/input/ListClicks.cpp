#include "input/ListClicks.h"

#include "DiscViewItems.h"
#include "FindRow.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "input/GotoPage.h"
#include "input/RowClicks.h"
#include "lists/BackToPlaying.h"
#include "lists/Folders.h"
#include "lists/ListChange.h"
#include "lists/ListMenu.h"
#include "lists/ListState.h"
#include "lists/MediaTypes.h"
#include "pages/PageState.h"
#include "pages/SourcePopup.h"
#include "parts/ControlLink.h"

/** A list page of a data disc. */
struct ListClicks::PageRules {
    int window;
    bool guardsNoFiles; ///< the menu does nothing while the chosen type has no files
};

/** What a control of the two list pages does after the beep. */
struct ListClicks::ListControl {
    long control;
    void (*act)(ListClicks& clicks, const PageRules& page, long ctrlId);
};

void ListClicks::OnClickAudioListWnd(long nCtrlId) {
    static constexpr PageRules PAGE = {WND_MEDIA_LIST, true};
    if (nCtrlId == ITEM_LIST) {
        m_control.ToBeep();
        m_rows.OnClickMediaRow();
    } else {
        OnClickListPage(PAGE, nCtrlId);
    }
}

void ListClicks::OnClickFolderListWnd(long nCtrlId) {
    static constexpr PageRules PAGE = {WND_FOLDER_LIST, false};
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnClickFolderListWnd] nCtrlId=%ld,m_nCurListFrom=%d\n",
            nCtrlId, m_lists.m_nCurListFrom);
    if (nCtrlId == ITEM_LIST) {
        m_control.ToBeep();
        m_rows.OnClickFolderRow();
    } else if (nCtrlId == BTN_FOLDER_UP) {
        m_control.ToBeep();
        m_folders.OnHandleUIReturnUpFolder(m_lists.m_nCurListFrom);
    } else {
        OnClickListPage(PAGE, nCtrlId);
    }
}

void ListClicks::OnClickListPage(const PageRules& page, long nCtrlId) {
    using Clicks = ListClicks&;
    using Page = const PageRules&;
    static constexpr auto NOTHING = [](Clicks, Page, long) {};
    static constexpr auto ALL_FILES = [](Clicks clicks, Page where, long control) {
        clicks.OnClickAllFiles(where, control);
    };
    static constexpr ListControl ROWS[] = {
        {ITEM_TYPE_ICON,
         [](Clicks clicks, Page where, long) { clicks.m_backToPlaying.OnClickToPlaying(where.window); }},
        {ITEM_ALL_MUSIC, ALL_FILES},
        {ITEM_ALL_VIDEO, ALL_FILES},
        {ITEM_ALL_PHOTO, ALL_FILES},
        {ITEM_FOLDER_MENU, [](Clicks clicks, Page where, long) { clicks.OnClickFolderMenu(where); }},
        {ITEM_TAB_MUSIC, [](Clicks clicks, Page, long) { clicks.m_change.OnHandleChangeToMusic(); }},
        {ITEM_TAB_VIDEO, [](Clicks clicks, Page, long) { clicks.m_change.OnHandleChangeToVideo(); }},
        {ITEM_TAB_PHOTO, [](Clicks clicks, Page, long) { clicks.m_change.OnHandleChangeToPhoto(); }},
        {ITEM_MENU, [](Clicks clicks, Page where, long) { clicks.m_menu.OpenMenu(where.window); }},
        {ITEM_MENU_CLOSE, [](Clicks clicks, Page where, long) { clicks.m_menu.CloseMenu(where.window); }},
        {ITEM_GOTO, [](Clicks clicks, Page where, long) { clicks.OnClickGoto(where); }},
        {ITEM_GOTO_PAD, [](Clicks clicks, Page where, long) { clicks.OnClickGotoPad(where); }},
        {ITEM_NOP_6003, NOTHING},
        {ITEM_NOP_6004, NOTHING},
        {ITEM_NOP_6005, NOTHING},
        {ITEM_HOME, [](Clicks clicks, Page, long) { clicks.m_control.QueryHome(); }},
    };
    if (const ListControl* row = FindRow(ROWS, &ListControl::control, nCtrlId)) {
        m_control.ToBeep();
        row->act(*this, page, nCtrlId);
    } else {
        m_sources.OnClickSrcGroup(nCtrlId);
    }
}

bool ListClicks::IsWithoutFiles(const PageRules& page) const {
    return page.guardsNoFiles && m_state.m_bNoFileOfType;
}

void ListClicks::OnClickAllFiles(const PageRules& page, long nCtrlId) {
    if (m_control.Controller() && !IsWithoutFiles(page)) {
        m_change.ShowAllFiles(*FindRow(MediaTypes(), &MediaType::allControl, nCtrlId));
        m_lists.m_bSelPlayingRow = true;
    }
}

void ListClicks::OnClickFolderMenu(const PageRules& page) {
    if (IsWithoutFiles(page)) {
        return;
    }
    if (const MediaType* type = FindMediaType(m_state.m_nCurType)) {
        m_state.m_uiCurState = type->state;
    }
    m_lists.m_nClickFolderId = m_data.GetCurPlayInfo().parentFolder;
    m_folders.OnGotoFolderListPage(0);
}

void ListClicks::OnClickGoto(const PageRules& page) {
    if (!m_state.m_bNoFileOfType && m_state.m_nCurPlayType == m_state.m_nCurType) {
        m_backToPlaying.RememberTop(page.window);
        m_gotoPage.ShowGotoView();
    }
}

void ListClicks::OnClickGotoPad(const PageRules& page) {
    if (!IsWithoutFiles(page)) {
        m_gotoPage.ShowGotoView();
    }
}

void ListClicks::OnClickCDListWnd(long nCtrlId) {
    switch (nCtrlId) {
    case ITEM_LIST:
        m_control.ToBeep();
        m_rows.OnClickCDRow();
        break;
    case ITEM_TYPE_ICON:
        m_control.ToBeep();
        m_backToPlaying.OnClickCDToPlaying();
        break;
    case ITEM_ALL_MUSIC:
    case ITEM_NOP_6003:
    case ITEM_NOP_6004:
    case ITEM_NOP_6005:
        m_control.ToBeep();
        break;
    case ITEM_GOTO:
    case ITEM_GOTO_PAD:
        m_control.ToBeep();
        m_gotoPage.ShowGotoView();
        break;
    case ITEM_HOME:
        m_control.ToBeep();
        m_control.QueryHome();
        break;
    default:
        m_sources.OnClickSrcGroup(nCtrlId);
        break;
    }
}
