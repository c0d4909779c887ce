#pragma once

#include "DiscViewIds.h"
#include "parts/NumberPad.h"

class CDiscData;
class ControlLink;
class ListChange;
class ParkingGate;
class PlayPage;
class RowPlay;
class SourcePopup;
struct PageState;
struct T_MPEG_MEDIA_INFO;
struct Widgets;

namespace Oro::ZMCAR {
class ViewUI;
}

/** The page with the number pad, which lies over the page from which it was opened. */
class GotoPage {
public:
    GotoPage(Oro::ZMCAR::ViewUI& view, CDiscData& data, const Widgets& widgets, const ControlLink& control,
             PageState& state, PlayPage& playPage, ParkingGate& films, RowPlay& rowPlay, ListChange& change,
             SourcePopup& sources)
        : m_view(view), m_data(data), m_widgets(widgets), m_control(control), m_state(state),
          m_playPage(playPage), m_films(films), m_rowPlay(rowPlay), m_change(change), m_sources(sources) {}

    /** The view's resource has been loaded. */
    void TakeWidgets();
    void ShowGotoView();
    void HideGotoView();
    /** Enables the keys that may follow. */
    void DealInputNum() { m_pad.DealInputNum(); }
    void FillPage();
    void OnClickGotoWnd(long ctrlId);

private:
    int GotoTotal() const;
    void SendGoto(int nNumber);

    Oro::ZMCAR::ViewUI& m_view;
    CDiscData& m_data;
    const Widgets& m_widgets;
    const ControlLink& m_control;
    PageState& m_state;
    PlayPage& m_playPage;
    ParkingGate& m_films;
    RowPlay& m_rowPlay;
    ListChange& m_change;
    SourcePopup& m_sources;
    NumberPad m_pad;
    ViewState m_nStateBehindGoto = VIEW_STATE_LOADING; ///< of the page that the pad lies over
};
