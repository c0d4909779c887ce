#pragma once

class BackToPlaying;
class CDiscData;
class ControlLink;
class Folders;
class GotoPage;
class ListChange;
class ListMenu;
class RowClicks;
class SourcePopup;
struct ListState;
struct PageState;

/** Touches on the list pages. */
class ListClicks {
public:
    ListClicks(CDiscData& data, const ControlLink& control, PageState& state, ListState& lists,
               ListMenu& menu, Folders& folders, ListChange& change, BackToPlaying& backToPlaying,
               GotoPage& gotoPage, RowClicks& rows, SourcePopup& sources)
        : m_data(data), m_control(control), m_state(state), m_lists(lists), m_menu(menu), m_folders(folders),
          m_change(change), m_backToPlaying(backToPlaying), m_gotoPage(gotoPage), m_rows(rows),
          m_sources(sources) {}

    void OnClickAudioListWnd(long nCtrlId);
    void OnClickFolderListWnd(long nCtrlId);
    void OnClickCDListWnd(long nCtrlId);

private:
    struct PageRules;
    struct ListControl;

    void OnClickListPage(const PageRules& page, long nCtrlId);
    void OnClickAllFiles(const PageRules& page, long nCtrlId);
    void OnClickFolderMenu(const PageRules& page);
    void OnClickGoto(const PageRules& page);
    void OnClickGotoPad(const PageRules& page);
    bool IsWithoutFiles(const PageRules& page) const;

    CDiscData& m_data;
    const ControlLink& m_control;
    PageState& m_state;
    ListState& m_lists;
    ListMenu& m_menu;
    Folders& m_folders;
    ListChange& m_change;
    BackToPlaying& m_backToPlaying;
    GotoPage& m_gotoPage;
    RowClicks& m_rows;
    SourcePopup& m_sources;
};
