#pragma once

#include <optional>

class CUIAnalysis;

namespace zm::bench::screen {

/** What the status bar tells of the car. */
struct CarStatus {
    int hour = 0;
    int minute = 0;
    bool twelveHours = false;
    int bluetooth = 0; ///< as the telephone says: 0, 1 or 2
    bool muted = false;
    std::optional<int> temperature = {}; ///< outside, in tenths of a degree
};

/** Puts it into the items of a page, with the numbers and marks that the disc player's own pages have. */
void showStatus(CUIAnalysis& items, int window, const CarStatus& status);

} // namespace zm::bench::screen
