// What follows each other is heard without a sample more or less; what was heard is compared with the sum.
#include "tests/disc/GaplessFixture.h"

using namespace zm::test;
using namespace zm::disc;

namespace {

size_t firstDifference(const Sound& a, const Sound& b) {
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return static_cast<size_t>(inA - a.begin()) / 2;
}

void expectSame(const Sound& found, const Sound& wanted) {
    EXPECT_EQ(found.size() / 2, wanted.size() / 2) << "frames";
    EXPECT_EQ(firstDifference(found, wanted), wanted.size() / 2) << "first frame that differs";
}

} // namespace

TEST_F(Gapless, TheTracksOfACdAreHeardAsTheyStandOnIt) {
    constexpr size_t Frames = (75 * 9 + 11) * 588;
    writeFile(m_disc / "disc.bin", bytesOf(noise(0, Frames)));
    writeFile(m_disc / "disc.cue", "FILE \"disc.bin\" BINARY\n"
                                   "TRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                   "TRACK 02 AUDIO\nINDEX 00 00:02:50\nINDEX 01 00:03:07\n"
                                   "TRACK 03 AUDIO\nINDEX 01 00:05:74\n");
    expectSame(playToTheEnd(m_disc / "disc.cue"), noise(0, Frames));
}

TEST_F(Gapless, FlacFilesAreHeardAsOne) {
    writePieces(noise, {130001, 99999, 44177}, "flac", "");
    expectSame(playToTheEnd(disc()), noise(0, 274177));
}

TEST_F(Gapless, WavFilesAreHeardAsOne) {
    writePieces(noise, {100003, 70001}, "wav", "");
    expectSame(playToTheEnd(disc()), noise(0, 170004));
}

TEST_F(Gapless, ManyShortFilesAreHeardAsOne) {
    writePieces(noise, {30011, 30013, 40009, 30029, 35051}, "flac", "");
    expectSame(playToTheEnd(disc()), noise(0, 165113));
}
