#pragma once

#include <string>

namespace zm::test {

/** The usual screen, in the pixels of a screenshot. */
inline constexpr int ScreenWidth = 800;
inline constexpr int ScreenHeight = 480;

struct Pixel {
    int red = 0;
    int green = 0;
    int blue = 0;
};

/** One pixel of a PNG file of the whole screen; a file that is none is a test failure. */
Pixel pixelOf(const std::string& file, int x, int y);

} // namespace zm::test
