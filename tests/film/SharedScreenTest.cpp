#include "services/film/SharedScreen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <thread>

namespace zm::test {

using film::SharedScreen;

TEST(SharedScreen, PartsThatChangeArriveInTheirPlace) {
    const auto memory = SharedScreen::make();
    ASSERT_TRUE(memory);
    auto bench = SharedScreen::open(memory->get());
    const auto camera = SharedScreen::open(memory->get());
    ASSERT_TRUE(bench && camera);
    Image frame(800, 480);
    std::ranges::fill(frame.pixels, uint8_t{7});
    bench->put(frame, {790, 470, 100, 100});
    bench->put(SharedScreen::Fingers{{{1, 2, 3, 4, 5}}});

    Image seen(800, 480);
    SharedScreen::Fingers fingers;
    ASSERT_TRUE(camera->take(seen, fingers));
    EXPECT_EQ(std::ranges::count(seen.pixels, 7), 4 * 10 * 10);
    EXPECT_EQ(*seen.at(799, 479), 7);
    EXPECT_EQ(fingers[0].y, 4);
}

TEST(SharedScreen, HasTheSizeOfTheUnitsScreen) {
    const auto memory = SharedScreen::make({1280, 720});
    ASSERT_TRUE(memory);
    auto bench = SharedScreen::open(memory->get());
    const auto camera = SharedScreen::open(memory->get());
    ASSERT_TRUE(bench && camera);
    EXPECT_EQ(camera->size(), (ScreenSize{1280, 720}));
    Image frame(1280, 720);
    frame.at(1279, 719)[2] = 200;
    bench->put(frame, {0, 0, 1280, 720});
    Image seen(1280, 720);
    SharedScreen::Fingers fingers;
    ASSERT_TRUE(camera->take(seen, fingers));
    EXPECT_EQ(seen.pixels, frame.pixels);
}

TEST(SharedScreen, APictureIsOfOneMoment) {
    const auto memory = SharedScreen::make();
    auto bench = SharedScreen::open(memory->get());
    const auto camera = SharedScreen::open(memory->get());
    std::atomic<bool> end{false};
    std::thread changes([&] {
        Image frame(800, 480);
        for (uint8_t shade = 0; !end; ++shade) {
            std::memset(frame.pixels.data(), shade, frame.pixels.size());
            bench->put(frame, {0, 0, frame.width, frame.height});
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    Image seen(800, 480);
    SharedScreen::Fingers fingers;
    int taken = 0;
    for (int look = 0; look < 100; ++look) {
        if (camera->take(seen, fingers)) {
            ++taken;
            EXPECT_EQ(std::memcmp(seen.pixels.data(), seen.pixels.data() + 1, seen.pixels.size() - 1), 0);
        }
    }
    end = true;
    changes.join();
    EXPECT_GT(taken, 20);
}

} // namespace zm::test
