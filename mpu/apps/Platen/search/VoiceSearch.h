#pragma once

#include <string>

class CDiscData;
class ControlLink;
class DiscQDB;
class ListChange;
class ParkingGate;
class PlayPage;
class RowPlay;
struct ListState;
struct PageState;

/** What others ask to be played: a number from the head unit's keyboard, a name from the voice assistant. */
class VoiceSearch {
public:
    VoiceSearch(CDiscData& data, DiscQDB& catalogue, const ControlLink& control, PageState& state,
                ListState& lists, PlayPage& playPage, ParkingGate& films, RowPlay& rowPlay,
                ListChange& change)
        : m_data(data), m_discDb(catalogue), m_control(control), m_state(state), m_lists(lists),
          m_playPage(playPage), m_films(films), m_rowPlay(rowPlay), m_change(change) {}

    /** A request given at start-up; carried out once music plays. */
    void SetVoicePlayPar(const std::string& song);
    /** The launcher's application data. */
    void OnAppsMsgAppData(std::string& data);
    /** Music plays: the pending request is carried out. */
    void PlayPending();

private:
    void PlayNumber(long nNumber);
    void RequestVoicePlay();
    void OnHandleVoicePlay(std::string name);
    bool OnQuerySongName(std::string name);
    bool OnHandleQueryResult();
    void PlayFirstMatch();

    CDiscData& m_data;
    DiscQDB& m_discDb;
    const ControlLink& m_control;
    PageState& m_state;
    ListState& m_lists;
    PlayPage& m_playPage;
    ParkingGate& m_films;
    RowPlay& m_rowPlay;
    ListChange& m_change;
    char m_szSearch[260] = {}; ///< keyboard value
    bool m_bVoicePlayPending = false;
    std::string m_strVoicePlay;
};
