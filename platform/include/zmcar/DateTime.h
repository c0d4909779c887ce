#pragma once

/** Date and time as the head unit shows them. */
struct T_ZMDatetime {
    int nYear;
    int nMonth;
    int nDay;
    int nHour; ///< 0..23
    int nMinute;
    int nSecond;
    int nHourFormat; ///< 1: 12-hour display; anything else: 24-hour display
};
