#pragma once

class CDiscData;
class ListPage;
class PlayPage;
struct ListState;
struct PageState;
struct Widgets;

/** Another item plays: the list or the play page follows. */
class TrackReports {
public:
    TrackReports(CDiscData& data, const Widgets& widgets, const PageState& state, const ListState& lists,
                 PlayPage& playPage, ListPage& listPage)
        : m_data(data), m_widgets(widgets), m_state(state), m_lists(lists), m_playPage(playPage),
          m_listPage(listPage) {}

    void OnUserMsgTrackInfo();

private:
    CDiscData& m_data;
    const Widgets& m_widgets;
    const PageState& m_state;
    const ListState& m_lists;
    PlayPage& m_playPage;
    ListPage& m_listPage;
};
