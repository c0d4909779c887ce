#include "base/Paths.h"
#include "tests/disc/PictureFixture.h"
#include "tests/disc/RecordedSound.h"
#include "tests/disc/VcdImage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <utility>

using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;

namespace {

/** Tones of the left and the right loudspeaker; 0 is none that the discs have. */
using Tones = std::pair<int, int>;

/** What is heard of a VCD on either side. */
class VcdChannels : public testing::Test {
protected:
    void SetUp() override {
#ifdef __SANITIZE_THREAD__
        GTEST_SKIP() << "the decoder's libraries are not instrumented";
#endif
        ::setenv("ZM_SOUND", heardFile().c_str(), 1);
    }
    void TearDown() override {
        ::unsetenv("ZM_SOUND");
    }

    std::string heardFile() const {
        return m_folder / "heard";
    }
    /** Lets what is chosen be heard. */
    void listen() {
        std::this_thread::sleep_for(1500ms);
    }
    void nextChannel(int channel) {
        m_unit.next("audiochannel", std::to_string(channel));
    }
    void press(int channel) {
        m_unit.command(11);
        nextChannel(channel);
        listen();
    }
    /** What was heard, one after the other; each for a while. */
    std::vector<Tones> heard() {
        m_unit.stopService();
        const Sound sound = recordedSound(heardFile());
        std::vector<Tones> all;
        std::map<Tones, int> run;
        for (size_t at = 0; at + Window <= sound.size() / 2; at += Window) {
            const Tones tones{tone(sound, at, 0), tone(sound, at, 1)};
            const int windows = ++run[tones];
            if (windows == 1) {
                run = {{tones, 1}};
            }
            const bool known = tones.first > 0 && tones.second > 0;
            if (known && windows == 3 && (all.empty() || all.back() != tones)) {
                all.push_back(tones);
            }
        }
        return all;
    }
    /** For how many frames in a row both sides were the same; silence does not count. */
    size_t sameFrames() {
        m_unit.stopService();
        const Sound sound = recordedSound(heardFile());
        size_t longest = 0;
        size_t run = 0;
        for (size_t at = 0; at + 1 < sound.size(); at += 2) {
            run = sound[at] == sound[at + 1] ? run + (sound[at] != 0) : 0;
            longest = std::max(longest, run);
        }
        return longest;
    }

    TempFolder m_folder;
    DiscUnit m_unit;

private:
    static constexpr size_t Window = 4410;
    static int tone(const Sound& sound, size_t begin, size_t side) {
        int crossings = 0;
        for (size_t i = begin + 1; i < begin + Window; ++i) {
            crossings += (sound[2 * i + side] >= 0) != (sound[2 * i - 2 + side] >= 0);
        }
        const int frequency = crossings * 5; // two a wave, in a tenth of a second
        for (const int each : {440, 660, 880}) {
            if (std::abs(frequency - each) <= 20) {
                return each;
            }
        }
        return 0;
    }
};

} // namespace

TEST_F(VcdChannels, TheLeftAndTheRightOneCanBeHeardAlone) {
    m_unit.startService(vcdImage("plain"));
    m_unit.command(187, 1);
    nextChannel(3);
    m_unit.nextState(PlayState::Playing);
    listen();
    press(1);
    press(2);
    press(3);
    EXPECT_EQ(heard(), (std::vector<Tones>{{440, 880}, {440, 440}, {880, 880}, {440, 880}}));
}

TEST_F(VcdChannels, TheRightOneAloneIsTheSameFromBothLoudspeakers) {
    m_unit.startService(vcdImage("plain"));
    m_unit.command(187, 1);
    nextChannel(3);
    m_unit.nextState(PlayState::Playing);
    m_unit.command(11);
    nextChannel(1);
    press(2);
    EXPECT_GE(sameFrames(), 4410u);
}

TEST_F(VcdChannels, AChoiceLastsForTheDisc) {
    m_unit.play(vcdImage("menu"));
    m_unit.command(182, 1);
    nextChannel(3);
    m_unit.nextState(PlayState::Playing);
    press(1);
    m_unit.command(145);
    m_unit.command(182, 1);
    nextChannel(1);
    m_unit.nextState(PlayState::Playing);
    listen();
    const auto tones = heard();
    ASSERT_FALSE(tones.empty());
    EXPECT_EQ(tones.back(), (Tones{440, 440}));
}

TEST_F(VcdChannels, ASuperVideoCdHasTwoSounds) {
    m_unit.play(vcdImage("super"));
    m_unit.command(182, 1);
    nextChannel(3);
    m_unit.nextState(PlayState::Playing);
    for (const int channel : {1, 2, 4}) {
        m_unit.command(11);
        nextChannel(channel);
    }
    listen();
    const auto tones = heard();
    ASSERT_FALSE(tones.empty());
    EXPECT_EQ(tones.back(), (Tones{880, 880}));
}

TEST_F(VcdChannels, AMenuWithoutSoundHasNoneToChoose) {
    m_unit.play(vcdImage("menu"));
    m_unit.mark();
    m_unit.command(11);
    nextChannel(0);
    m_unit.next("msgtip", "1");
}
