#pragma once

class CDiscData;
class ListControls;
class ParkingGate;
class PlayPage;
struct ListState;
struct PageState;

/** From a list to the page of what plays, by a touch or a timer; remembers where the list stood. */
class BackToPlaying {
public:
    BackToPlaying(CDiscData& data, const PageState& state, ListState& lists, const ListControls& controls,
                  PlayPage& playPage, ParkingGate& films)
        : m_data(data), m_state(state), m_lists(lists), m_controls(controls), m_playPage(playPage),
          m_films(films) {}

    /** The button of list page `nWndId` of a data disc. */
    void OnClickToPlaying(int nWndId);
    /** That of the CD's list. */
    void OnClickCDToPlaying();
    void OnTimerPlayView();
    /** Notes the top row of that page's list; a list of folders has a note of its own. */
    void RememberTop(int nWndId);

private:
    bool IsRunning() const;

    CDiscData& m_data;
    const PageState& m_state;
    ListState& m_lists;
    const ListControls& m_controls;
    PlayPage& m_playPage;
    ParkingGate& m_films;
};
