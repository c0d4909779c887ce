#pragma once

class CDiscData;
class ControlLink;
class DirectionKeys;
class GotoPage;
class OverlayWindow;
struct ListState;
struct PageState;

/** The hard keys: a row each. */
class HardKeys {
public:
    HardKeys(CDiscData& data, const ControlLink& control, const PageState& state, ListState& lists,
             OverlayWindow& overlay, GotoPage& gotoPage, DirectionKeys& directions)
        : m_data(data), m_control(control), m_state(state), m_lists(lists), m_overlay(overlay),
          m_gotoPage(gotoPage), m_directions(directions) {}

    /** Whether there is such a key, and a controller. */
    bool OnKeyboard(int nKey);

private:
    struct KeyRow;

    CDiscData& m_data;
    const ControlLink& m_control;
    const PageState& m_state;
    ListState& m_lists;
    OverlayWindow& m_overlay;
    GotoPage& m_gotoPage;
    DirectionKeys& m_directions;
};
