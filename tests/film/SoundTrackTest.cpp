#include "services/filmer/SoundTrack.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace zm::test {

using film::Millisecond;
using film::Moment;
using film::SharedSound;
using testing::ElementsAre;

/** The sound of a film that began half a second ago, by what was written for it. */
class FilmSound : public testing::Test {
protected:
    struct Part {
        Moment milliseconds;
        uint32_t rate;
        size_t frames;
        int16_t first;
        bool operator==(const Part&) const = default;
        friend std::ostream& operator<<(std::ostream& to, const Part& part) {
            return to << part.milliseconds << " ms: " << part.frames << " of " << part.first << " at "
                      << part.rate;
        }
    };

    FilmSound() {
        EXPECT_TRUE(SharedSound::make(path));
        player = SharedSound::open(path);
        track = std::make_unique<filmer::SoundTrack>(
            SharedSound::open(path), begin, [this](auto rate, auto samples, Moment time) {
                parts.push_back({time / Millisecond, rate, samples.size() / 2, samples[0]});
            });
    }
    void play(Moment milliseconds, size_t frames, int16_t value, uint32_t rate = 48000) {
        player->write(begin + milliseconds * Millisecond, rate, std::vector<int16_t>(2 * frames, value));
    }
    void pass(Moment milliseconds) { track->pass(begin + milliseconds * Millisecond); }

    const TemporaryFolder folder;
    const std::string path = SharedSound::pathIn(folder.path());
    const Moment begin = film::now() - film::Second / 2;
    std::unique_ptr<SharedSound> player;
    std::unique_ptr<filmer::SoundTrack> track;
    std::vector<Part> parts;
};

TEST_F(FilmSound, WhatIsHeardStandsAtItsMomentWithSilenceAround) {
    play(100, 480, 5);
    pass(200);
    EXPECT_THAT(parts,
                ElementsAre(Part{0, 48000, 4800, 0}, Part{100, 48000, 480, 5}, Part{110, 48000, 4320, 0}));
}

TEST_F(FilmSound, WhatFollowsCloselyFollowsWithoutAGap) {
    play(0, 960, 1);
    play(26, 960, 2);
    play(33, 960, 3);
    pass(50);
    EXPECT_THAT(parts, ElementsAre(Part{0, 48000, 960, 1}, Part{20, 48000, 960, 2}, Part{40, 48000, 960, 3}));
}

TEST_F(FilmSound, WhatWasHeardWhereSomethingIsAlreadyIsCutOff) {
    pass(100);
    play(40, 48, 1);   // wholly too late
    play(80, 2000, 2); // in part
    pass(120);
    EXPECT_THAT(parts,
                ElementsAre(Part{0, 48000, 4800, 0}, Part{100, 48000, 64, 2}, Part{101, 48000, 976, 2}));
}

TEST_F(FilmSound, AnotherRateGoesOnWhereTheFirstEnded) {
    play(0, 441, 1, 44100);
    play(10, 480, 2, 48000);
    pass(20);
    EXPECT_THAT(parts, ElementsAre(Part{0, 44100, 441, 1}, Part{10, 48000, 480, 2}));
}

TEST_F(FilmSound, WhatCannotHaveBeenHeardIsLeftOut) {
    play(-60000, 480, 1);
    play(3600000, 480, 1);
    player->write(begin, 0, {});
    player->write(begin + Millisecond, 3, std::vector<int16_t>(100, 9));
    pass(10);
    EXPECT_THAT(parts, ElementsAre(Part{0, 48000, 480, 0}));
}

TEST_F(FilmSound, WithoutAPlayerItIsSilent) {
    filmer::SoundTrack silent(SharedSound::open("/nowhere"), begin,
                              [this](auto rate, auto samples, Moment time) {
                                  parts.push_back({time, rate, samples.size() / 2, samples[0]});
                              });
    silent.pass(begin + 10 * Millisecond);
    EXPECT_THAT(parts, ElementsAre(Part{0, 48000, 480, 0}));
}

TEST_F(FilmSound, PlayersWriteOnlyForListeners) {
    const std::string other = folder.path() + "/other";
    ASSERT_TRUE(SharedSound::make(other));
    const auto alone = SharedSound::open(other);
    EXPECT_FALSE(alone->isListenedTo());
    EXPECT_TRUE(player->isListenedTo());
}

TEST_F(FilmSound, AListenerThatComesTooLateGetsTheLatest) {
    const auto late = SharedSound::open(path);
    uint64_t next = late->next();
    for (int16_t number = 1; number <= 1000; ++number) {
        play(number, 1, number);
    }
    film::HeardSound sound;
    std::vector<int16_t> got;
    while (late->read(next, sound)) {
        got.push_back(sound.samples[0]);
    }
    ASSERT_GT(got.size(), 50U);
    EXPECT_EQ(got.back(), 1000);
    EXPECT_TRUE(std::ranges::is_sorted(got));
}

TEST_F(FilmSound, AFileOfAnotherSizeIsNoSuchMemory) {
    std::ofstream(path) << "short";
    EXPECT_EQ(SharedSound::open(path), nullptr);
}

} // namespace zm::test
