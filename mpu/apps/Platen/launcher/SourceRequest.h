#pragma once

class CDiscData;
class ControlLink;
class DiscQDB;
class Notices;
struct PageState;

/** Asks the head unit once, with the first disc, to make the disc its audio source. */
class SourceRequest {
public:
    SourceRequest(CDiscData& data, DiscQDB& catalogue, const ControlLink& control, const PageState& state,
                  Notices& notices)
        : m_data(data), m_discDb(catalogue), m_control(control), m_state(state), m_notices(notices) {}

    /** The drive reports whether it holds a disc. */
    void OnUserMsgDeviceState();
    /** Asks if there is a disc and nobody asked yet; `logName` is the operation that is logged. */
    void RequestForDisc(const char* logName);
    /** Gives the source back. */
    void Release();
    bool IsRequested() const { return m_bSourceRequested; }

private:
    void Request(const char* logName);

    CDiscData& m_data;
    DiscQDB& m_discDb;
    const ControlLink& m_control;
    const PageState& m_state;
    Notices& m_notices;
    bool m_bSourceRequested = false;
    bool m_bDiscWasOut = false; ///< the last report of the drive said so
};
