#pragma once

#include <string>

class CDiscData;
class DiscQDB;
struct PageState;
struct Widgets;

/** The name of the playing file, read from the catalogue and shown as the title of a page. */
class PlayingTitle {
public:
    PlayingTitle(CDiscData& data, DiscQDB& catalogue, const Widgets& widgets, const PageState& state)
        : m_data(data), m_discDb(catalogue), m_widgets(widgets), m_state(state) {}

    /** On the play page; stores the name, too. */
    void UpdateCurMusicTitle();
    /** On a list page, by what plays. */
    void UpdateTitleRight(int nWndId);
    void UpdateMusicTitleRight(int nWndId);
    void UpdateVideoTitleRight(int nWndId);
    void UpdatePhotoTitleRight(int nWndId);

private:
    /** Empty if the catalogue does not have it. */
    std::string QueryFileName(int nFileType);
    void ShowFileTitle(int nWndId, int nItem, const std::string& name);

    CDiscData& m_data;
    DiscQDB& m_discDb;
    const Widgets& m_widgets;
    const PageState& m_state;
};
