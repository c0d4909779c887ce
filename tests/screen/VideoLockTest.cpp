#include "services/bench/screen/VideoLock.h"

#include "services/bench/screen/Compositor.h"

#include <gtest/gtest.h>

#include <vector>

namespace zm::test {

class VideoLockTest : public testing::Test {
protected:
    VideoLockTest() {
        lock.parkingReads(Parked);
        lock.applicationSeen(true);
    }
    bool locked() const { return compositor.videoState().at("locked"); }
    /** The driver's touch on "show anyway". */
    void showAnyway() {
        lock.fingerDown();
        lock.fingerLifted(answer("main", 10, 2103), lock.fingerOccasion());
    }
    static Json answer(const char* view, int window, int control) {
        return {{"released", {{"view", view}, {"window", window}, {"control", control}}}};
    }

    static constexpr int Parked = 1;
    static constexpr int Driving = 0;
    EventLoop loop;
    bench::screen::Compositor compositor{loop, "unused"};
    bench::screen::VideoLock lock{compositor};
};

TEST_F(VideoLockTest, IsClosedWhileTheCarDrives) {
    EXPECT_FALSE(locked());
    lock.parkingReads(Driving);
    EXPECT_TRUE(locked());
    lock.parkingReads(Parked);
    EXPECT_FALSE(locked());
}

TEST_F(VideoLockTest, IsClosedWhenNobodyCanTell) {
    lock.parkingReads(std::nullopt);
    EXPECT_TRUE(locked());
}

TEST_F(VideoLockTest, EveryOtherValueIsParked) {
    lock.parkingReads(Driving);
    lock.parkingReads(-7);
    EXPECT_FALSE(locked());
}

TEST_F(VideoLockTest, ShowAnywayOpensItForThisDriveOnly) {
    lock.parkingReads(Driving);
    showAnyway();
    EXPECT_FALSE(locked());
    lock.parkingReads(Driving);
    EXPECT_FALSE(locked()) << "the same drive goes on";
    lock.parkingReads(Parked);
    lock.parkingReads(Driving);
    EXPECT_TRUE(locked()) << "the next one";
}

TEST_F(VideoLockTest, WhatCannotBeReadEndsTheDrive) {
    lock.parkingReads(Driving);
    showAnyway();
    lock.parkingReads(std::nullopt);
    EXPECT_TRUE(locked());
    lock.parkingReads(Driving);
    EXPECT_TRUE(locked());
}

TEST_F(VideoLockTest, ATouchWhileParkedIsForgotten) {
    showAnyway();
    lock.parkingReads(Driving);
    EXPECT_TRUE(locked());
}

TEST_F(VideoLockTest, ATouchOfAnEarlierDriveComesTooLate) {
    lock.parkingReads(Driving);
    lock.fingerDown();
    lock.parkingReads(Parked);
    lock.parkingReads(Driving);
    lock.fingerLifted(answer("main", 10, 2103), lock.fingerOccasion());
    EXPECT_TRUE(locked());
}

TEST_F(VideoLockTest, ATouchFromBeforeTheDriveDoesNotCount) {
    lock.fingerDown();
    lock.parkingReads(Driving);
    lock.fingerLifted(answer("main", 10, 2103), lock.fingerOccasion());
    EXPECT_TRUE(locked());
}

TEST_F(VideoLockTest, ATouchFromBeforeTheApplicationWasToldSomethingDoesNotCount) {
    lock.parkingReads(Driving);
    lock.fingerDown();
    lock.applicationSeen(false);
    lock.applicationSeen(true);
    lock.fingerLifted(answer("main", 10, 2103), lock.fingerOccasion());
    EXPECT_TRUE(locked());
    showAnyway();
    EXPECT_FALSE(locked()) << "the next touch";
}

TEST_F(VideoLockTest, ATouchOnWhatNobodySeesDoesNotCount) {
    lock.parkingReads(Driving);
    lock.applicationSeen(false);
    showAnyway();
    EXPECT_TRUE(locked());
}

TEST_F(VideoLockTest, WhatTheDriverAllowedOutlivesTheApplication) {
    lock.parkingReads(Driving);
    showAnyway();
    lock.applicationSeen(false);
    EXPECT_FALSE(locked());
}

TEST_F(VideoLockTest, NothingElseOpensIt) {
    lock.parkingReads(Driving);
    for (const Json& other :
         {answer("osd", 10, 2103), answer("main", 17, 2103), answer("main", 10, 3), answer("main", 10, 0),
          Json::object(), Json(), Json(2103), Json{{"released", 2103}}, Json{{"released", Json::array()}}}) {
        lock.fingerDown();
        lock.fingerLifted(other, lock.fingerOccasion());
        EXPECT_TRUE(locked()) << other;
    }
}

} // namespace zm::test
