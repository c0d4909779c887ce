#pragma once

class CDiscData;
class ListMenu;
class PlayingRow;
class PlayingTitle;
struct ListState;
struct PageState;
struct T_MPEG_MEDIA_INFO;
struct Widgets;

/** What a list page shows besides its rows, when it is shown and when another item plays. */
class ListPage {
public:
    ListPage(const Widgets& widgets, const PageState& state, ListState& lists, ListMenu& menu,
             PlayingTitle& title, PlayingRow& playingRow)
        : m_widgets(widgets), m_state(state), m_lists(lists), m_menu(menu), m_title(title),
          m_playingRow(playingRow) {}

    /** A list page of a data disc. */
    void FillListPage(int nWndId);
    void FillCDPage();
    /** Marks the row of what plays now and shows its title. */
    void FollowTrack();

private:
    const Widgets& m_widgets;
    const PageState& m_state;
    ListState& m_lists;
    ListMenu& m_menu;
    PlayingTitle& m_title;
    PlayingRow& m_playingRow;
};
