#include "parts/CounterText.h"

#include "parts/WideText.h"
#include "zmui/CUIAnalysis.h"

#include <algorithm>
#include <limits>

namespace {

constexpr int DISC_HIGHEST = 99; ///< a disc's counters have two digits
constexpr int SECONDS_A_MINUTE = 60;
constexpr int SECONDS_AN_HOUR = 3600;

} // namespace

Counter JudgeCounter(int current, int count, CounterRule rule) {
    const bool twoDigits = rule == CounterRule::TwoDigits;
    if (count < 1 || (twoDigits && (count > DISC_HIGHEST || current < 0 || current > DISC_HIGHEST))) {
        return Counter::Unknown;
    }
    return current < 1 ? Counter::CountOnly : Counter::Both;
}

void ShowCounter(CUIAnalysis& ui, int window, int item, Counter shown, int current, int count) {
    wchar_t text[WIDE_TEXT_SIZE] = L"--/--";
    if (shown == Counter::Both) {
        FormatWide(text, L"%d/%d", current, count);
    } else if (shown == Counter::CountOnly) {
        FormatWide(text, L"--/%d", count);
    }
    ui.SetItemText(window, item, text);
    ui.drawItem(window, item);
}

void SetTimeText(CUIAnalysis& ui, int window, int item, int seconds) {
    wchar_t text[WIDE_TEXT_SIZE];
    const int minutes = seconds / SECONDS_A_MINUTE % SECONDS_A_MINUTE;
    if (seconds >= SECONDS_AN_HOUR) {
        FormatWide(text, L"%02d:%02d:%02d", seconds / SECONDS_AN_HOUR, minutes, seconds % SECONDS_A_MINUTE);
    } else {
        FormatWide(text, L"%02d:%02d", minutes, seconds % SECONDS_A_MINUTE);
    }
    ui.SetItemText(window, item, text);
}

int PlayTimePercent(int elapsed, int total) {
    constexpr int LARGEST = std::numeric_limits<int>::max();
    if (total == 0) {
        return elapsed == 0 ? 0 : LARGEST;
    }
    const float percentage = static_cast<float>(elapsed) / static_cast<float>(total) * 100.0F;
    return static_cast<int>(std::clamp<double>(percentage, std::numeric_limits<int>::min(), LARGEST));
}
