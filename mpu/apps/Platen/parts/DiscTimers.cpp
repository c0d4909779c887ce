#include "parts/DiscTimers.h"

#include "FindRow.h"
#include "zmcar/TimerBase.h"

namespace {

struct TimerRow {
    unsigned int id;
    unsigned int milliseconds;
};

constexpr TimerRow TIMERS[] = {
    {ENUM_TIMER_QUERY_WAIT, 50},     {ENUM_TIMER_DISPLAY_STATE, 3000},
    {ENUM_TIMER_DISPLAY_OSD, 10000}, {ENUM_TIMER_DISPLAY_PLAYVIEW, 8000},
    {ENUM_TIMER_NO_DISC, 3000},      {ENUM_TIMER_WAIT_DEVICESTATE, 15000},
    {ENUM_TIMER_LOADING, 40000},     {ENUM_TIMER_DISPLAY_SRC, 5000},
};

} // namespace

void StartDiscTimer(Oro::ZMCAR::TimerBase* timers, unsigned int id) {
    const TimerRow* row = FindRow(TIMERS, &TimerRow::id, id);
    if (timers && row) {
        timers->SetTimer(id, row->milliseconds);
    }
}

void KillDiscTimer(Oro::ZMCAR::TimerBase* timers, unsigned int id) {
    if (timers) {
        timers->KillTimer(id);
    }
}
