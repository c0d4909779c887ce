#include "services/bench/screen/CarStatus.h"

#include "zmui/CUIAnalysis.h"

#include <array>
#include <cstdio>
#include <string>

namespace zm::bench::screen {

namespace {

enum StatusItem : int { Clock = 8, BeforeNoon = 11, AfterNoon = 12, Bluetooth = 15, Mute = 17, Outside = 20 };

constexpr int Noon = 12;
constexpr int HoursOfDay = 24;
constexpr int Coldest = -400;
constexpr int Hottest = 870;

template <class... Values>
std::wstring formatted(const char* format, Values... values) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), format, values...);
    return {text.data(), text.data() + std::char_traits<char>::length(text.data())};
}

std::wstring temperatureText(std::optional<int> tenths) {
    const bool known = tenths && *tenths >= Coldest && *tenths <= Hottest;
    return known ? formatted("%4.1f", *tenths / 10.0) : L"--.-";
}

} // namespace

void showStatus(CUIAnalysis& items, int window, const CarStatus& status) {
    const bool halves = status.twelveHours && status.hour < HoursOfDay;
    const int hour = halves ? (status.hour + Noon - 1) % Noon + 1 : status.hour;
    items.SetItemText(window, Clock, formatted("%02d:%02d", hour, status.minute).c_str());
    items.ShowItem(window, BeforeNoon, halves && status.hour < Noon);
    items.ShowItem(window, AfterNoon, halves && status.hour >= Noon);
    items.SetItemText(window, Bluetooth, std::to_wstring(status.bluetooth).c_str());
    items.ShowItem(window, Mute, status.muted);
    items.SetItemText(window, Outside, temperatureText(status.temperature).c_str());
}

} // namespace zm::bench::screen
