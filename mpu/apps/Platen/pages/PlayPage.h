#pragma once

class CDiscData;
class PlayingTitle;
struct PageState;
struct T_MPEG_MEDIA_INFO;
struct Widgets;

namespace Oro::ZMCAR {
class ViewUI;
}

/** What the music play page shows: modes, times, track and tags. Its touches: input/PlayPageTouch. */
class PlayPage {
public:
    PlayPage(Oro::ZMCAR::ViewUI& view, CDiscData& data, const Widgets& widgets, PageState& state,
             PlayingTitle& title)
        : m_view(view), m_data(data), m_widgets(widgets), m_state(state), m_title(title) {}

    void OnGotoAudioPlayPage();
    /** Shows ITEM_PAUSE while the player runs, else ITEM_PLAY. */
    void ShowPlayButton(bool bPlaying);
    void OnUserMsgPlayState();
    void OnUserMsgPlayTime();
    void OnUserMsgID3();
    /** The track of the playing item, and the title of a file. */
    void ShowTrack(const T_MPEG_MEDIA_INFO& info);

private:
    void ShowFileCounter(const T_MPEG_MEDIA_INFO& info);

    Oro::ZMCAR::ViewUI& m_view;
    CDiscData& m_data;
    const Widgets& m_widgets;
    PageState& m_state;
    PlayingTitle& m_title;
};
