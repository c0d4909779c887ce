#include "services/bench/screen/SurfaceBlend.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

namespace zm::test {

TEST(SurfaceBlend, WhatLiesUnderAPictureShowsThroughToTheNearestStep) {
    constexpr int Steps = 256;
    Image below(Steps, Steps); // a row has all brightnesses
    Image above(Steps, Steps); // black, and with each row less clear
    for (int y = 0; y < Steps; ++y) {
        for (int x = 0; x < Steps; ++x) {
            const auto bright = static_cast<uint8_t>(x);
            const uint8_t grey[] = {bright, bright, bright, 255};
            std::copy(std::begin(grey), std::end(grey), below.at(x, y));
            above.at(x, y)[3] = static_cast<uint8_t>(y);
        }
    }
    const auto layer = [](const Image& image, bool alpha) {
        return bench::screen::SurfaceLayer{image.pixels.data(), image.width,          image.height,
                                           image.stride,        {0, 0, Steps, Steps}, alpha};
    };
    Image frame(Steps, Steps);
    bench::screen::composeLayers(frame, {0, 0, Steps, Steps}, {layer(below, false), layer(above, true)});
    int wrong = 0;
    for (int y = 0; y < Steps; ++y) {
        for (int x = 0; x < Steps; ++x) {
            const int exact = (2 * x * (255 - y) + 255) / 510;
            for (int channel = 0; channel < 3; ++channel) {
                wrong += frame.at(x, y)[channel] != exact;
            }
        }
    }
    EXPECT_EQ(wrong, 0);
}

} // namespace zm::test
