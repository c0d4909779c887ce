#include "parts/StatusBar.h"

#include "parts/WideText.h"
#include "zmcar/PublicController.h"
#include "zmui/CUIAnalysis.h"

namespace {

constexpr int HOURS_12 = 1; ///< hour format of the 12-hour display
constexpr int NOON = 12;
constexpr int HOURS_A_DAY = 24;
constexpr int MUTED = 255;
constexpr int TEMP_LOWEST = -400;
constexpr int TEMP_HIGHEST = 870;
constexpr int TEXT_SIZE = 32;

struct ClockFace {
    int hour;
    bool am;
    bool pm;
};

ClockFace FaceOf(const T_ZMDatetime& time) {
    const int hour = time.nHour;
    if (time.nHourFormat != HOURS_12 || hour < 0 || hour >= HOURS_A_DAY) {
        return {hour, false, false};
    }
    return {hour % NOON == 0 ? NOON : hour % NOON, hour < NOON, hour >= NOON};
}

} // namespace

void StatusBar::Draw(int item) {
    if (m_bRedraw) {
        m_items.drawItem(m_nWindow, item);
    }
}

void StatusBar::ShowClock(const T_ZMDatetime& time) {
    const ClockFace face = FaceOf(time);
    wchar_t text[TEXT_SIZE];
    FormatWide(text, L"%0.2d:%0.2d", face.hour, time.nMinute);
    m_items.SetItemText(m_nWindow, OSD_ITEM_CLOCK, text);
    m_items.ShowItem(m_nWindow, OSD_ITEM_AM, face.am);
    m_items.ShowItem(m_nWindow, OSD_ITEM_PM, face.pm);
    Draw(OSD_ITEM_CLOCK);
    Draw(OSD_ITEM_AM);
    Draw(OSD_ITEM_PM);
}

void StatusBar::ShowBluetooth(int state) {
    wchar_t text[TEXT_SIZE];
    FormatWide(text, L"%d", state);
    m_items.SetItemText(m_nWindow, OSD_ITEM_BT, text);
    Draw(OSD_ITEM_BT);
}

void StatusBar::ShowMute(int status) {
    m_items.ShowItem(m_nWindow, OSD_ITEM_MUTE, status == MUTED);
    Draw(OSD_ITEM_MUTE);
}

void StatusBar::ShowTemperature(int tenths) {
    wchar_t text[TEXT_SIZE] = L"--.-";
    if (tenths >= TEMP_LOWEST && tenths <= TEMP_HIGHEST) {
        // Narrowed to single precision before printing, as the head unit's other applications do.
        FormatWide(text, L"%4.1f", static_cast<float>(tenths / 10.0));
    }
    m_items.SetItemText(m_nWindow, OSD_ITEM_TEMP, text);
    Draw(OSD_ITEM_TEMP);
}

int ReadDeviceStatus(Oro::ZMCAR::PublicController& controller, int id, int fallback) {
    int value = fallback;
    return controller.GetDeviceStatus(id, value) ? value : fallback;
}
