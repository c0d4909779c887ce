// What counts as calm.
#include "platform/linux/framework/Settler.h"
#include "platform/linux/framework/EventThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>

namespace zm::test {

namespace {

/** Posts an event the first time that it is waited for, and has nothing else to do. */
class Poster : public ActivitySource {
public:
    explicit Poster(std::function<void()> post) : m_post(std::move(post)) {}
    bool drain(TimePoint) override {
        if (m_post) {
            std::exchange(m_post, nullptr)();
        }
        return true;
    }
    uint64_t activity() const override { return 0; }

private:
    std::function<void()> m_post;
};

} // namespace

TEST(Settler, WaitsForWhatWasPostedAfterTheEventsHadRun) {
    auto events = std::make_shared<EventThread>();
    ASSERT_TRUE(events->start([] {}, [] {}));
    std::atomic<bool> ran{false};
    auto poster = std::make_shared<Poster>([&] {
        events->post([&ran] {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            ran = true;
        });
    });
    Settler settler;
    settler.add(events);
    settler.add(poster);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    EXPECT_EQ(settler.settle(deadline), Settler::Outcome::Calmed);
    EXPECT_TRUE(ran);
    events->stop();
}

} // namespace zm::test
