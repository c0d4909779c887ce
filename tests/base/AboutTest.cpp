#include "base/About.h"
#include "base/EventLoop.h"
#include "base/Nearest.h"
#include "base/UniqueFd.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace zm::test {

static std::string answerTo(const std::vector<std::string>& arguments) {
    testing::internal::CaptureStdout();
    const bool answered = answerAbout(arguments, "zmtest", "usage: zmtest\n");
    const std::string told = testing::internal::GetCapturedStdout();
    EXPECT_EQ(answered, !told.empty());
    return told;
}

TEST(About, OneArgumentAsksForVersionOrUsage) {
    EXPECT_EQ(answerTo({"--version"}), std::string("zmtest ") + Version + "\n");
    EXPECT_EQ(answerTo({"--help"}), "usage: zmtest\n");
    EXPECT_EQ(answerTo({"-h"}), "usage: zmtest\n");
}

TEST(About, OtherArgumentsAreTheProgramsOwn) {
    EXPECT_EQ(answerTo({}), "");
    EXPECT_EQ(answerTo({"-v"}), "");
    EXPECT_EQ(answerTo({"--version", "--help"}), "");
}

TEST(Nearest, AWordThatIsMuchLongerIsNotMeant) {
    const std::string longer = "eject" + std::string(40, 't');
    EXPECT_EQ(nearestWord("ejekt", {longer, "eject"}), "eject");
    EXPECT_EQ(nearestWord("ejekt", {longer}), "");
    EXPECT_EQ(nearestWord(longer, {longer}), "");
}

TEST(UniqueFd, GivenToItselfStaysOpen) {
    UniqueFd fd(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    ASSERT_TRUE(fd.valid());
    UniqueFd& same = fd;
    const int number = fd.get();
    fd = std::move(same);
    EXPECT_EQ(fd.get(), number);
    EXPECT_NE(::fcntl(number, F_GETFD), -1);
}

TEST(SourceHandle, GivenToItselfStaysInItsLoop) {
    EventLoop loop;
    int turns = 0;
    SourceHandle timer = everyInterval(loop, std::chrono::milliseconds(1), [&] {
        if (++turns == 3) {
            loop.quit();
        }
    });
    SourceHandle& same = timer;
    timer = std::move(same);
    loop.run();
    EXPECT_EQ(turns, 3);
}

} // namespace zm::test
