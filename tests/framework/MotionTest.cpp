// Pages and windows that come and go softly: only where the head unit wants it, and never while the car drives.
#include "tests/framework/TestApplication.h"

#include <gmock/gmock.h>

namespace zm::test {

namespace {

constexpr int Parked = 1;
constexpr int Driving = 0;

class MotionTest : public testing::Test {
protected:
    void begin(const char* motion, int parking) {
        m_headUnit = std::make_unique<FakeHeadUnit>(json{{"motion", motion}, {"devices", {{"2", parking}}}});
        m_app = std::make_unique<TestApplication>(*m_headUnit);
        ASSERT_NO_FATAL_FAILURE(m_app->start());
        m_headUnit->settle();
    }
    size_t frames() { return m_headUnit->screen("commit").size(); }
    /** In how many frames the page goes over to another one; of many not all. */
    size_t framesOfAPage() {
        const size_t before = frames();
        EXPECT_TRUE(m_app->main.ShowWnd(6, true, 0));
        EXPECT_TRUE(m_headUnit->waitForScreen("commit", before + 1));
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(600);
        while (std::chrono::steady_clock::now() < end && frames() < before + 3) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return frames() - before;
    }

    std::unique_ptr<FakeHeadUnit> m_headUnit;
    std::unique_ptr<TestApplication> m_app;
};

} // namespace

TEST_F(MotionTest, APageComesAtOnceWhileTheCarDrives) {
    ASSERT_NO_FATAL_FAILURE(begin("on", Driving));
    EXPECT_EQ(framesOfAPage(), 1u);
}

TEST_F(MotionTest, APageComesAtOnceWhereNobodyWantsItOtherwise) {
    ASSERT_NO_FATAL_FAILURE(begin("", Parked));
    EXPECT_EQ(framesOfAPage(), 1u);
}

// The bars over the picture fade out before their window goes.
TEST_F(MotionTest, AWindowIsHiddenOnceItHasFaded) {
    ASSERT_NO_FATAL_FAILURE(begin("on", Parked));
    m_app->main.onHandler = [this](const std::string& line) {
        if (line == "key 20" || line == "key 21") {
            EXPECT_TRUE(m_app->osd.ShowWnd(1, line == "key 20", 0));
            EXPECT_TRUE(m_app->main.SetVisible("Disc_osd", line == "key 20"));
            EXPECT_TRUE(m_app->main.FlushContext());
        }
    };
    m_headUnit->askData({{"t", "key"}, {"code", 20}});
    m_headUnit->settle();
    ASSERT_EQ(m_headUnit->screen("props").size(), 1u);
    m_headUnit->askData({{"t", "key"}, {"code", 21}});
    ASSERT_TRUE(m_headUnit->waitForScreen("props", 2)); // by itself: nobody asks for anything meanwhile
    EXPECT_EQ(m_headUnit->screen("props").back(), (json{{"t", "props"}, {"window", 2}, {"visible", false}}));
}

} // namespace zm::test
