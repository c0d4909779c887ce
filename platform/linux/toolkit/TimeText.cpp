#include "platform/linux/toolkit/TimeText.h"

#include <algorithm>
#include <cstdio>

namespace zm {

int secondsOf(const std::string& text) {
    int first = 0;
    int second = 0;
    int third = 0;
    const int parts = std::sscanf(text.c_str(), "%5d:%2d:%2d", &first, &second, &third);
    return parts == 3 ? (first * 60 + second) * 60 + third : parts == 2 ? first * 60 + second : 0;
}

std::string timeText(int seconds) {
    const int whole = std::max(seconds, 0);
    char text[32];
    if (whole < 3600) {
        std::snprintf(text, sizeof text, "%02d:%02d", whole / 60, whole % 60);
    } else {
        std::snprintf(text, sizeof text, "%02d:%02d:%02d", whole / 3600, whole / 60 % 60, whole % 60);
    }
    return text;
}

} // namespace zm
