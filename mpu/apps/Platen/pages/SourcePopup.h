#pragma once

class ControlLink;
class SourceGroup;
struct PageState;
struct Widgets;

/** The source popup of the main view's current page, which gets every control that a page does not know. */
class SourcePopup {
public:
    SourcePopup(const Widgets& widgets, const ControlLink& control, const PageState& state)
        : m_widgets(widgets), m_control(control), m_state(state) {}

    void OnClickSrcGroup(long nCtrlId);
    /** Closes the popup and redraws everything. */
    void Close();
    /** Expiry of the timer that an opening started. */
    void OnTimerSource();

private:
    SourceGroup Sources() const;

    const Widgets& m_widgets;
    const ControlLink& m_control;
    const PageState& m_state;
};
