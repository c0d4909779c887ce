#pragma once

#include "base/Rect.h"
#include "base/Result.h"

#include <string>

namespace zm {

/** Pixels of the head unit's screen. The application counts in those of the usual one, whatever the screen has. */
struct ScreenSize {
    int width = 800;
    int height = 480;

    Rect area() const { return {0, 0, width, height}; }
    /** "800x480" */
    std::string text() const { return std::to_string(width) + "x" + std::to_string(height); }
    bool operator==(const ScreenSize&) const = default;
};

/** One of the sizes that pages are made for; an error names them. */
Result<ScreenSize> parseScreenSize(const std::string& text);

/** That of the unit which this process belongs to, from the variable ZM_SCREEN; `usual` without it. */
ScreenSize screenSize(ScreenSize usual = {});

} // namespace zm
