#pragma once

class CDiscData;
class ControlLink;
class Notices;
struct PageState;

/** Errors of the drive: an item that cannot be read is skipped, a wrong region said. */
class ErrorReports {
public:
    ErrorReports(CDiscData& data, const ControlLink& control, const PageState& state, Notices& notices)
        : m_data(data), m_control(control), m_state(state), m_notices(notices) {}

    void OnUserMsgErrorStatus();

private:
    void SkipUnreadable();

    CDiscData& m_data;
    const ControlLink& m_control;
    const PageState& m_state;
    Notices& m_notices;
};
