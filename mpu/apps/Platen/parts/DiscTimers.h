#pragma once

namespace Oro::ZMCAR {
class TimerBase;
}

/** The timers of both views. They run on the controller's facility; the main view's OnTimer gets every
 * expiry. */
enum : unsigned int {
    ENUM_TIMER_UNUSED = 1, ///< never started; killed with the others
    ENUM_TIMER_QUERY_WAIT = 2,
    ENUM_TIMER_DISPLAY_STATE = 3,
    ENUM_TIMER_DISPLAY_OSD = 4,
    ENUM_TIMER_DISPLAY_PLAYVIEW = 5,
    ENUM_TIMER_NO_DISC = 6,
    ENUM_TIMER_WAIT_DEVICESTATE = 7,
    ENUM_TIMER_LOADING = 8,
    ENUM_TIMER_DISPLAY_SRC = 9
};

/** Starts timer `id` (ENUM_TIMER_...) with its period, anew if it runs. Without `timers` nothing happens. */
void StartDiscTimer(Oro::ZMCAR::TimerBase* timers, unsigned int id);
/** Stops timer `id`. Without `timers` nothing happens. */
void KillDiscTimer(Oro::ZMCAR::TimerBase* timers, unsigned int id);
