// What follows each other is heard without a sample more or less; what was heard is compared with the sum.
#include "tests/disc/GaplessFixture.h"

#include <mp4file.h>

#include <cstdio>
#include <filesystem>

using namespace zm::test;

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

namespace {

struct LossyFormat {
    const char* name;
    const char* extension;
    const char* options;
    uint32_t rate = 44100;
};

std::ostream& operator<<(std::ostream& out, const LossyFormat& format) {
    return out << format.name;
}

constexpr size_t pieces[] = {120011, 99989, 80021};
constexpr size_t HissFrames = pieces[0] + pieces[1] + pieces[2];

class GaplessFormat : public Gapless, public testing::WithParamInterface<LossyFormat> {};

// What was heard is the hiss that was cut into pieces.
void expectHiss(const Sound& heard) {
    const Sound wanted = hiss(0, HissFrames);
    ASSERT_EQ(heard.size() / 2, HissFrames) << "frames";
    EXPECT_GT(likeness(heard.data(), wanted.data(), heard.size()), 0.97);
    size_t joint = 0;
    for (const size_t frames : pieces) {
        EXPECT_EQ(latenessAt(heard, wanted, joint + 2000), 0) << "behind " << joint;
        joint += frames;
        EXPECT_EQ(latenessAt(heard, wanted, joint - 3000), 0) << "before " << joint;
        if (joint < HissFrames) {
            constexpr size_t Around = 200;
            const size_t begin = 2 * (joint - Around);
            EXPECT_GT(likeness(heard.data() + begin, wanted.data() + begin, 4 * Around), 0.9)
                << "at " << joint;
        }
    }
}

// Gives a file the tag that tells of its sound.
void tagSound(const std::string& file, int delay, size_t frames) {
    char text[200];
    std::snprintf(text, sizeof text, " 00000000 %08X %08X %016zX 00000000 00000000", delay, 0, frames);
    TagLib::MP4::File tagged(file.c_str());
    tagged.tag()->setItem("----:com.apple.iTunes:iTunSMPB", TagLib::StringList(text));
    ASSERT_TRUE(tagged.save());
}

} // namespace

TEST_P(GaplessFormat, PiecesAreHeardAsOne) {
    const LossyFormat& format = GetParam();
    writePieces(hiss, {std::begin(pieces), std::end(pieces)}, format.extension, format.options, format.rate);
    expectHiss(playToTheEnd(disc()));
}

TEST_P(GaplessFormat, AfterASeekTheNextPieceIsInItsPlace) {
    const LossyFormat& format = GetParam();
    writePieces(hiss, {std::begin(pieces), std::end(pieces)}, format.extension, format.options, format.rate);
    playOnce(disc());
    nextTime(1, 1);
    m_unit.command(185, 2);
    const Sound heard = waitForTheEnd();
    const Sound wanted = hiss(0, HissFrames);
    // Both counted from the end.
    const size_t tail = HissFrames - pieces[0] + 5000;
    ASSERT_GT(heard.size() / 2, tail + 100);
    const Sound last(heard.end() - static_cast<std::ptrdiff_t>(2 * (tail + 10)), heard.end());
    const Sound lastWanted(wanted.end() - static_cast<std::ptrdiff_t>(2 * (tail + 10)), wanted.end());
    EXPECT_EQ(latenessAt(last, lastWanted, 1000), 0) << "before the joint";
    EXPECT_EQ(latenessAt(last, lastWanted, 8000), 0) << "behind the joint";
}

TEST_F(Gapless, FilesWithTheTagInPlaceOfAnEditListAreHeardAsOne) {
    writePieces(hiss, {std::begin(pieces), std::end(pieces)}, "m4a", "-c:a aac -b:a 320k -use_editlist 0");
    for (size_t i = 0; i < std::size(pieces); ++i) {
        tagSound(m_disc / (std::to_string(i + 1) + ".m4a"), 1024, pieces[i]);
    }
    expectHiss(playToTheEnd(disc()));
}

TEST_F(Gapless, AnMp3WithoutTheEncodersMarkIsHeardWhole) {
    writePieces(hiss, {pieces[0], pieces[1]}, "mp3", "-c:a libmp3lame -b:a 320k -write_xing 0");
    const size_t frames = playToTheEnd(disc()).size() / 2;
    EXPECT_GE(frames, pieces[0] + pieces[1] + 2 * 576) << "with what the encoder has put around it";
    EXPECT_EQ(frames % 1152, 0u) << "whole frames, without silence between the files";
}

TEST_F(Gapless, AnMp3ThatMoreWasPutBehindIsHeardWhole) {
    writePieces(hiss, {pieces[0], pieces[1]}, "mp3", "-c:a libmp3lame -b:a 320k");
    writeFile(m_disc / "1.mp3", readFile(m_disc / "1.mp3") + readFile(m_disc / "2.mp3"));
    std::filesystem::remove(m_disc / "2.mp3");
    EXPECT_GT(playToTheEnd(disc()).size() / 2, pieces[0] + pieces[1]);
}

INSTANTIATE_TEST_SUITE_P(
    Lossy, GaplessFormat,
    testing::Values(LossyFormat{"Mp3", "mp3", "-c:a libmp3lame -b:a 320k"},
                    LossyFormat{"Mp3OfVaryingRate", "mp3", "-c:a libmp3lame -q:a 0"},
                    LossyFormat{
                        "Mp3WithTags", "mp3",
                        "-c:a libmp3lame -b:a 320k -id3v2_version 3 -metadata title=A -write_id3v1 1"},
                    LossyFormat{"Aac", "m4a", "-c:a aac -b:a 320k"},
                    LossyFormat{"AacIndexInFront", "m4a", "-c:a aac -b:a 320k -movflags +faststart"},
                    LossyFormat{"Alac", "m4a", "-c:a alac"},
                    LossyFormat{"Vorbis", "ogg", "-c:a libvorbis -q:a 9"},
                    LossyFormat{"Opus", "opus", "-c:a libopus -b:a 400k", 48000}),
    [](const auto& each) { return std::string(each.param.name); });
