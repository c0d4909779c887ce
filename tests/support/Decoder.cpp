#include "tests/support/Decoder.h"

#include "base/Paths.h"
#include "tests/support/Harness.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>

namespace zm::test {

namespace {

constexpr auto answerLimit = 5s;
constexpr int width = 800;
constexpr int height = 480;
/** 0xAARRGGBB, which is B G R A in memory. */
constexpr std::array<uint32_t, 8> bars = {0xFFFFFFFF, 0xFFE0D040, 0xFF40C8D8, 0xFF50B850,
                                          0xFFB850B0, 0xFFC03838, 0xFF3848B0, 0xFF000000};

} // namespace

Decoder::Decoder(const Unit& unit) {
    auto client = ScreenClient::connect(screenSocket(unit.runtimeDir()), "video", answerLimit);
    EXPECT_TRUE(client) << client.error();
    m_client = std::move(*client);
    auto window = m_client->makeWindow({.name = "video", .width = width, .height = height});
    EXPECT_TRUE(window) << window.error();
    m_window = *window;
}

template <class ColorOfColumn>
void Decoder::show(ColorOfColumn color) {
    EXPECT_TRUE(m_client->receive());
    uint8_t* frame = m_window->freeBuffer();
    ASSERT_NE(frame, nullptr);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const uint32_t pixel = color(static_cast<size_t>(x));
            std::memcpy(frame + y * m_window->stride() + x * 4, &pixel, sizeof pixel);
        }
    }
    EXPECT_TRUE(m_window->commitBuffer());
    EXPECT_TRUE(m_client->sync(answerLimit));
}

void Decoder::showBars() {
    show([](size_t column) { return bars[column * bars.size() / width]; });
}

void Decoder::showColor(uint32_t color) {
    show([color](size_t) { return color; });
}

} // namespace zm::test
