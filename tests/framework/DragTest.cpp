// A drag that is asked for as a whole: the way that its finger takes.
#include "platform/linux/framework/AppClock.h"
#include "platform/linux/framework/TouchInput.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace zm::test {

namespace {

class Finger : public Touchable {
public:
    void fingerDown(Point at) override { note("down", at); }
    void fingerMoved(Point to, int64_t nowMs) override {
        note("to", to);
        times.push_back(nowMs);
    }
    void fingerRested() override { way.push_back("rests"); }
    void fingerUp(Point at, int64_t nowMs) override {
        note("up", at);
        times.push_back(nowMs);
    }
    void fingerIgnored() override { way.push_back("ignored"); }

    std::vector<std::string> way;
    std::vector<int64_t> times;

private:
    void note(const char* what, Point at) {
        way.push_back(std::string(what) + " " + std::to_string(at.x) + "," + std::to_string(at.y));
    }
};

} // namespace

TEST(Drag, GoesEvenlyAndRestsBeforeTheFingerLeaves) {
    EventThread events;
    AppClock clock(events);
    clock.setManual(true);
    Finger finger;
    TouchInput input(clock, [&finger](Point) { return &finger; });
    input.drag({100, 300}, {200, 100});
    EXPECT_THAT(finger.way, testing::ElementsAre("down 100,300", "to 110,280", "to 120,260", "to 130,240",
                                                 "to 140,220", "to 150,200", "to 160,180", "to 170,160",
                                                 "to 180,140", "to 190,120", "to 200,100", "up 200,100"));
    ASSERT_EQ(finger.times.size(), 11u);
    for (size_t i = 2; i + 1 < finger.times.size(); ++i) {
        EXPECT_EQ(finger.times[i] - finger.times[i - 1], finger.times[1] - finger.times[0]);
    }
    EXPECT_GT(finger.times[10] - finger.times[9], 80) << "a list does not go on by itself";
}

} // namespace zm::test
