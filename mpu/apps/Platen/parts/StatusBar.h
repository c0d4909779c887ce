#pragma once

#include "zmcar/DateTime.h"

class CUIAnalysis;

namespace Oro::ZMCAR {
class PublicController;
}

/** Vehicle values, as the head unit numbers them. */
enum : int {
    DEV_STATUS_PARKING = 2,  ///< nonzero: parked
    DEV_STATUS_MUTE = 6,     ///< 255: muted
    DEV_STATUS_CAR_TEMP = 7, ///< outside temperature in tenths of a degree
    DEV_STATUS_BT = 86       ///< Bluetooth state 0, 1 or 2
};

/** Items of the status bar, the same on every page of both views. */
enum : int {
    OSD_ITEM_CLOCK = 8,
    OSD_ITEM_AM = 11,
    OSD_ITEM_PM = 12,
    OSD_ITEM_BT = 15,
    OSD_ITEM_MUTE = 17,
    OSD_ITEM_TEMP = 20
};

inline constexpr int CAR_TEMP_UNKNOWN = 999; ///< outside the range that is shown as a number

/**
 * The status indicators of one page: clock with AM and PM marks, Bluetooth, mute and outside temperature. A
 * bar object is made for one operation; with `redraw` the items are drawn too, without it only set. Event
 * thread only.
 */
class StatusBar {
public:
    StatusBar(CUIAnalysis& items, int window, bool redraw)
        : m_items(items), m_nWindow(window), m_bRedraw(redraw) {}

    void ShowClock(const T_ZMDatetime& time);
    /** Shows `state` as a number, whatever it is. */
    void ShowBluetooth(int state);
    /** Shows the mark exactly for 255. */
    void ShowMute(int status);
    /** `tenths` of a degree; outside -400..870 shows "--.-". */
    void ShowTemperature(int tenths);

private:
    void Draw(int item);

    CUIAnalysis& m_items;
    int m_nWindow;
    bool m_bRedraw;
};

/** Vehicle value `id`; `fallback` when it cannot be read. */
int ReadDeviceStatus(Oro::ZMCAR::PublicController& controller, int id, int fallback);
