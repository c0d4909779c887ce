#pragma once

struct OverlayState;

/** The status bar of the current bar; each call refreshes one indicator, `redraw` also draws it. */
class Indicators {
public:
    explicit Indicators(OverlayState& state) : m_state(state) {}

    void UpdateDateTime(bool redraw);
    void UpdateBTStatus(bool redraw);
    void UpdateMuteStatus(bool redraw);
    void UpdateCarTemp(bool redraw);

private:
    OverlayState& m_state;
};
