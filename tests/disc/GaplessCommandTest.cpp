// What the driver does just before one song passes into the next.
#include "tests/disc/DecoderProcesses.h"
#include "tests/disc/GaplessFixture.h"

#include <csignal>

using namespace zm::test;
using namespace zm::disc::model;

namespace {

// A time at which the next song is prepared already, and one more to go on from.
constexpr int Late = 2;

} // namespace

TEST_F(Gapless, TheNextSongIsPublishedAsAnyOther) {
    writeTwo();
    playOnce(disc());
    nextTime(Late, Late);
    const size_t begin = m_unit.recorder().all().size();
    nextTrack(1, 2);
    EXPECT_GT(published("playtime", begin), 0u) << "the song before was timed to its end";
    nextTime(0, 0);
    m_unit.nextState(PlayState::Playing);
    nextTime(1, 1);
    EXPECT_EQ(published("trackinfo", begin), 1u);
    EXPECT_EQ(published("discstate", begin), 1u);
    EXPECT_EQ(published("errorstatus", begin), 0u);
}

TEST_F(Gapless, ARepeatedSongFollowsItself) {
    writeTwo();
    m_unit.play(disc());
    m_unit.command(9, RepeatOne);
    for (int round = 0; round < 2; ++round) {
        nextTime(Late, Late);
        nextTrack(1, 1);
        nextTime(0, 0);
    }
    nextTime(1, 1);
    m_unit.stopService();
    const auto heard = passages(recordedSound(heardFile()));
    ASSERT_EQ(heard.size(), 3u);
    EXPECT_EQ(heard[0], (Passage{0, First}));
    EXPECT_EQ(heard[1], (Passage{0, First}));
    EXPECT_EQ(heard[2].first, 0u);
}

TEST_F(Gapless, AModeChosenLateCounts) {
    writeTwo();
    m_unit.play(disc());
    nextTime(Late, Late);
    m_unit.command(9, RepeatOne);
    nextTrack(1, 1);
    nextTime(0, 0);
    m_unit.stopService();
    const auto heard = passages(recordedSound(heardFile()));
    ASSERT_EQ(heard.size(), 2u);
    EXPECT_EQ(heard[0], (Passage{0, First}));
    EXPECT_EQ(heard[1].first, 0u);
}

TEST_F(Gapless, AfterASeekBackTheEndPassesOnAllTheSame) {
    writeTwo();
    playOnce(disc());
    nextTime(Late, Late);
    m_unit.command(185, 1);
    const auto heard = passages(waitForTheEnd());
    ASSERT_EQ(heard.size(), 2u);
    EXPECT_EQ(heard[0].first, 0u);
    EXPECT_EQ(heard[1], (Passage{44100, Both - 44100}));
}

TEST_F(Gapless, APauseNearTheEndLosesNothing) {
    writeTwo();
    playOnce(disc());
    nextTime(3, 3);
    m_unit.command(130);
    m_unit.nextState(PlayState::Paused);
    m_unit.mark();
    EXPECT_FALSE(m_unit.follows("discstate", "2", 1500ms)) << "the next song does not begin by itself";
    m_unit.command(131);
    m_unit.nextState(PlayState::Playing);
    EXPECT_EQ(passages(waitForTheEnd()), (std::vector<Passage>{{0, Both}}));
}

TEST_F(Gapless, NextAndPreviousNearTheEndBeginASong) {
    writeTwo();
    playOnce(disc());
    nextTime(Late, Late);
    m_unit.command(1);
    nextTrack(1, 2);
    nextTime(1, 1);
    m_unit.command(2);
    nextTrack(1, 1);
    const auto heard = passages(waitForTheEnd());
    ASSERT_EQ(heard.size(), 3u);
    EXPECT_EQ(heard[0].first, 0u);
    EXPECT_EQ(heard[1].first, First);
    EXPECT_EQ(heard[2], (Passage{0, Both}));
}

TEST_F(Gapless, FastForwardOverTheEndBeginsTheNextSong) {
    writeTwo();
    playOnce(disc());
    nextTime(Late, Late);
    m_unit.command(3);
    m_unit.nextState(PlayState::Forward);
    nextTrack(1, 2);
    m_unit.nextState(PlayState::Playing);
    const auto heard = passages(waitForTheEnd());
    ASSERT_EQ(heard.size(), 2u);
    EXPECT_EQ(heard[0].first, 0u);
    EXPECT_EQ(heard[1], (Passage{First, Second}));
}

TEST_F(Gapless, ARepeatedPassageNearTheEndIsNotLeft) {
    writeTwo();
    playOnce(disc());
    nextTime(Late, Late);
    m_unit.command(10);
    nextTime(Late + 1, Late + 1);
    m_unit.command(10);
    nextTip(12);
    const size_t begin = m_unit.recorder().all().size();
    for (int round = 0; round < 3; ++round) {
        nextTime(Late, Late);
        nextTime(Late + 1, Late + 1);
    }
    EXPECT_EQ(published("trackinfo", begin), 0u);
}

TEST_F(Gapless, ASongThatCannotBePlayedIsAnErrorWhenItsTurnHasCome) {
    writePieces(noise, {First, Second, Second}, "flac", "");
    writeFile(m_disc / "2.flac", std::string(100000, 'x'));
    playOnce(disc());
    nextTime(Late, Late);
    const size_t begin = m_unit.recorder().all().size();
    m_unit.next("errorstatus", "32");
    EXPECT_EQ(passages(recordedSound(heardFile())), (std::vector<Passage>{{0, First}}));
    nextTrack(1, 3);
    EXPECT_EQ(published("errorstatus", begin), 2u) << "32 and 0, once";
    EXPECT_EQ(passages(waitForTheEnd(), Both + Second), (std::vector<Passage>{{0, First}, {Both, Second}}));
}

TEST_F(Gapless, ASeekIsHeardThoughTheNextSongCannotBePlayed) {
    writePieces(noise, {First, Second}, "flac", "");
    writeFile(m_disc / "2.flac", std::string(100000, 'x'));
    playOnce(disc());
    nextTime(Late, Late);
    m_unit.command(185, 1);
    m_unit.next("errorstatus", "32");
    const auto heard = passages(recordedSound(heardFile()));
    ASSERT_EQ(heard.size(), 2u);
    EXPECT_EQ(heard[1], (Passage{44100, First - 44100}));
}

TEST_F(Gapless, ASongThatEndsInDamageIsHeardAsFarAsItGoes) {
    writeTwo();
    const std::string whole = readFile(m_disc / "2.flac");
    writeFile(m_disc / "2.flac", whole.substr(0, whole.size() / 2));
    playOnce(disc());
    const auto heard = passages(waitForTheEnd());
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].first, 0u);
    EXPECT_GT(heard[0].count, First + Second / 3);
}

namespace {

/** Long blocks, each of them handed over at its beginning: the decoder has passed on to the second song while most of
 * the first one's last block is still heard. */
class GaplessPassedOn : public Gapless {
protected:
    static constexpr size_t Block = 65535;
    static constexpr size_t Song = 3 * Block;

    void playToTheLastBlock() {
        writePieces(noise, {Song, Song}, "flac", "-frame_size 65535");
        playOnce(disc());
        nextTime(3, 3);
    }
};

} // namespace

TEST_F(GaplessPassedOn, ASeekComesBack) {
    playToTheLastBlock();
    m_unit.command(185, 1);
    nextTime(1, 1);
    const auto heard = passages(waitForTheEnd(), 2 * Song);
    ASSERT_EQ(heard.size(), 2u);
    EXPECT_EQ(heard[0], (Passage{0, Song})) << "all blocks had been handed over";
    EXPECT_EQ(heard[1], (Passage{44100, 2 * Song - 44100}));
}

TEST_F(GaplessPassedOn, FastBackwardComesBack) {
    playToTheLastBlock();
    const size_t begin = m_unit.recorder().all().size();
    m_unit.command(4);
    m_unit.nextState(PlayState::Backward);
    nextTime(1, 2);
    m_unit.command(5);
    m_unit.nextState(PlayState::Playing);
    EXPECT_EQ(published("trackinfo", begin), 0u) << "it is the first song still";
    const auto heard = passages(waitForTheEnd(), 2 * Song);
    ASSERT_EQ(heard.size(), 2u) << testing::PrintToString(heard);
    EXPECT_EQ(heard[0], (Passage{0, Song}));
    EXPECT_EQ(heard[1].first + heard[1].count, 2 * Song);
    EXPECT_LT(heard[1].first, Song);
}

TEST_F(GaplessPassedOn, AModeChosenThenCounts) {
    playToTheLastBlock();
    m_unit.command(9, RepeatOne);
    nextTrack(1, 1);
    nextTime(0, 0);
    nextTime(1, 1);
}

TEST_F(GaplessPassedOn, APauseHoldsIt) {
    playToTheLastBlock();
    m_unit.command(130);
    m_unit.nextState(PlayState::Paused);
    const size_t begin = m_unit.recorder().all().size();
    EXPECT_FALSE(m_unit.follows("discstate", "2", 2000ms));
    EXPECT_EQ(published("trackinfo", begin), 0u);
    m_unit.command(131);
    nextTrack(1, 2);
    nextTime(1, 1);
}

#ifndef __SANITIZE_ADDRESS__ // which keeps it from being locked in
TEST_F(Gapless, ADecoderThatDiesWhileItPreparesIsReplaced) {
    writeTwo();
    playOnce(disc());
    nextTime(Late, Late);
    m_decoderDies = true;
    ASSERT_GT(lockedInDecoder(), 0);
    ::kill(lockedInDecoder(), SIGKILL);
    const auto heard = passages(waitForTheEnd());
    ASSERT_EQ(heard.size(), 2u) << testing::PrintToString(heard);
    EXPECT_EQ(heard[0].first, 0u);
    EXPECT_EQ(heard[1].first + heard[1].count, Both) << "also over the joint";
    EXPECT_LT(heard[1].first, First);
}
#endif
