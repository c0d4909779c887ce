#include "platform/linux/framework/EventThread.h"

#include "tests/support/FailingThreads.h"

#include <gtest/gtest.h>

namespace zm::test {

TEST(EventThread, IsStartedLaterWhenThereIsNoThreadForItNow) {
    EventThread events;
    bool ran = false;
    events.post([&ran] { ran = true; });
    threadsLeft = 0;
    const Status refused = events.start([] {}, [] {});
    threadsLeft = -1;
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error(), "event thread: Resource temporarily unavailable");
    EXPECT_FALSE(events.running());
    const Status started = events.start([] {}, [] {});
    ASSERT_TRUE(started) << started.error();
    EXPECT_TRUE(events.drain(std::chrono::steady_clock::now() + std::chrono::seconds(30)));
    EXPECT_TRUE(ran) << "what was posted before is not lost";
    events.stop();
}

} // namespace zm::test
