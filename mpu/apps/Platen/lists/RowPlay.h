#pragma once

class CDiscData;
class ControlLink;
class DiscQDB;
class ParkingGate;
class PlayPage;
struct PageState;

/** From a touched row to a player command and the page of what then plays. */
class RowPlay {
public:
    RowPlay(CDiscData& data, DiscQDB& catalogue, const ControlLink& control, const PageState& state,
            PlayPage& playPage, ParkingGate& films)
        : m_data(data), m_discDb(catalogue), m_control(control), m_state(state), m_playPage(playPage),
          m_films(films) {}

    /** `nPlayType` is a ROW_..., `nUiFrom` a list source, `nLine` a row of it. */
    void OnHandleUIListClick(int nPlayType, int nUiFrom, int nLine);

private:
    struct FileIds {
        int nFid;
        int nFolder;
    };

    void OnHandleUIListClickAudio(int nUiFrom, int nLine);
    void OnHandleUIListClickVideo(int nUiFrom, int nLine);
    void OnHandleUIListClickPicture(int nUiFrom, int nLine);
    FileIds ReadFileIds(const char* logName, int nUiFrom, int nLine);
    void PlayPacked(const char* logName, const FileIds& ids, int nKind);

    CDiscData& m_data;
    DiscQDB& m_discDb;
    const ControlLink& m_control;
    const PageState& m_state;
    PlayPage& m_playPage;
    ParkingGate& m_films;
};
