#pragma once

class ControlLink;
struct PageState;
struct Widgets;

/** The status indicators of the main view's current page; `bRedraw` also draws what was set. */
class StatusIndicators {
public:
    StatusIndicators(const Widgets& widgets, const ControlLink& control, const PageState& state)
        : m_widgets(widgets), m_control(control), m_state(state) {}

    void UpdateDateTime(bool bRedraw);
    void UpdateBTStatus(bool bRedraw);
    void UpdateMuteStatus(bool bRedraw);
    void UpdateCarTemp(bool bRedraw);
    /** All of them, for a page that is being shown. */
    void FillPage();

private:
    bool CanShow() const;

    const Widgets& m_widgets;
    const ControlLink& m_control;
    const PageState& m_state;
};
