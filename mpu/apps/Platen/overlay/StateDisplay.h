#pragma once

#include "ZMModel/Mutex.h"

#include <cstdint>

struct OverlayState;

/**
 * The state picture and its text on the current bar, and the control that they answer (the key type). Event
 * thread only; the key type may be used from any thread.
 */
class StateDisplay {
public:
    explicit StateDisplay(OverlayState& state);
    StateDisplay(const StateDisplay&) = delete;
    StateDisplay& operator=(const StateDisplay&) = delete;

    /** Guard the key type. */
    void Lock() LOCK_UNCHECKED;
    void UnLock() LOCK_UNCHECKED;

    /** Shows picture `picId` with a plain or a resource text; starts no timer. */
    void ShowStateView(long picId, const wchar_t* text);
    void ShowStateView2(long picId, long textId);
    /** Tells for 3 s that a control has no function. */
    void ShowNoFunction();
    /** Takes the state picture away and forgets the key. */
    void HideStateView();
    /** Takes the state picture away and remembers the control pressed (OSD_KEY_...). */
    void SetCurKeyType(int keyType);
    int GetCurKeyType();

    /** The picture goes 3 s from now, or stays until another takes its place. */
    void SetDisplayStateTimer();
    void KillDisplayStateTimer();

private:
    void ShowStatePicture(int picture, bool shown);

    OverlayState& m_state;
    Mutex m_mutex;
    int32_t m_nCurKeyType GUARDED_BY(m_mutex);
};
