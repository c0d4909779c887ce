// A CD's tracks that lie in one encoded file: what is heard is compared with what was encoded.
#include "tests/disc/CdImage.h"
#include "tests/disc/GaplessFixture.h"

#include <filesystem>

using namespace zm::test;

namespace {

constexpr size_t SectorFrames = 588;
constexpr size_t borders[] = {0, 75 * 3 + 7, 75 * 5 + 74};
constexpr size_t Sectors = 75 * 9 + 11;
constexpr size_t CutFrames = Sectors * SectorFrames;
constexpr const char* threeTracks = "TRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                    "TRACK 02 AUDIO\nINDEX 00 00:02:50\nINDEX 01 00:03:07\n"
                                    "TRACK 03 AUDIO\nINDEX 01 00:05:74\n";

/** A form in which all of a CD's sound lies in one file. */
struct OneFile {
    const char* name;
    const char* extension;
    const char* options;
    bool exact = true; ///< gives back what was encoded
    uint32_t rate = 44100;
};
std::ostream& operator<<(std::ostream& out, const OneFile& form) {
    return out << form.name;
}

class CutSound : public Gapless, public testing::WithParamInterface<OneFile> {
protected:
    std::string writeDisc() {
        const OneFile& form = GetParam();
        // Sound of another rate is as long.
        writePieces(form.exact ? noise : hiss,
                    {CutFrames / 44100 * form.rate + CutFrames % 44100 * form.rate / 44100}, form.extension,
                    form.options, form.rate);
        writeFile(m_disc / "d.cue", std::string("FILE 1.") + form.extension + " WAVE\n" + threeTracks);
        return m_disc / "d.cue";
    }
    static Sound wanted(size_t first, size_t count) {
        return GetParam().exact ? noise(first, count) : hiss(first, count);
    }
    // `heard` is what stands at `first` in the file.
    static void expectHeard(const Sound& heard, size_t first, size_t count) {
        ASSERT_EQ(heard.size() / 2, count) << "frames";
        const Sound sound = wanted(first, count);
        if (GetParam().exact) {
            const auto [inHeard, inSound] = std::mismatch(heard.begin(), heard.end(), sound.begin());
            EXPECT_EQ(inHeard, heard.end()) << "differs at frame " << (inHeard - heard.begin()) / 2;
            return;
        }
        EXPECT_GT(likeness(heard.data(), sound.data(), heard.size()), 0.97);
        for (const size_t border : borders) {
            const size_t at = border * SectorFrames;
            if (at > first && at < first + count) {
                EXPECT_EQ(latenessAt(heard, sound, at - first + 2000), 0) << "behind " << border;
                EXPECT_EQ(latenessAt(heard, sound, at - first - 3000), 0) << "before " << border;
            }
        }
    }
};

} // namespace

TEST_P(CutSound, TracksFollowEachOtherAsTheyLieInTheFile) {
    expectHeard(playToTheEnd(writeDisc()), 0, CutFrames);
}

TEST_P(CutSound, ATrackThatIsChosenBeginsWhereItsIndexSays) {
    m_unit.play(writeDisc());
    m_unit.command(9, RepeatOff);
    m_unit.command(182, 3);
    const Sound heard = waitForTheEnd();
    const size_t first = borders[2] * SectorFrames;
    const size_t count = CutFrames - first;
    ASSERT_GE(heard.size() / 2, count);
    expectHeard(Sound(heard.end() - static_cast<std::ptrdiff_t>(2 * count), heard.end()), first, count);
}

TEST_P(CutSound, ASecondIsCountedFromTheTracksBeginning) {
    m_unit.play(writeDisc());
    m_unit.command(9, RepeatOff);
    m_unit.command(182, 3);
    nextTime(1, 3);
    m_unit.command(185, 2);
    const Sound heard = waitForTheEnd();
    const size_t first = borders[2] * SectorFrames + size_t{2} * 44100;
    const size_t count = CutFrames - first;
    ASSERT_GE(heard.size() / 2, count);
    expectHeard(Sound(heard.end() - static_cast<std::ptrdiff_t>(2 * count), heard.end()), first, count);
}

// ---- what is wrong with the file

class DamagedCutSound : public Gapless {
protected:
    void SetUp() override {
        Gapless::SetUp();
        if (!IsSkipped()) {
            writePieces(noise, {CutFrames}, "flac", "");
            writeFile(m_disc / "d.cue", std::string("FILE 1.flac WAVE\n") + threeTracks);
        }
    }
};

TEST_F(DamagedCutSound, AScratchIsSilentAndTheRestIsWhereItWas) {
    std::string file = readFile(m_disc / "1.flac");
    file.replace(file.size() / 2, 30000, std::string(30000, '\0'));
    writeFile(m_disc / "1.flac", file);
    const Sound heard = playToTheEnd(m_disc / "d.cue");
    EXPECT_EQ(heard.size() / 2, CutFrames);
    const auto found = passages(heard, CutFrames);
    ASSERT_GE(found.size(), 2u);
    EXPECT_EQ(found.front().first, 0u);
    EXPECT_EQ(found.back().first + found.back().count, CutFrames);
    size_t lost = CutFrames;
    for (const auto& each : found) {
        lost -= each.count;
    }
    EXPECT_GT(lost, 0u);
    EXPECT_LT(lost, size_t{2} * 44100);
    for (const auto& each : m_unit.recorder().all()) {
        EXPECT_FALSE(each.name == "errorstatus" && each.value == "32")
            << "no track is given up: " << readFile(zm::logFile(m_unit.runtime()));
    }
}

TEST_F(DamagedCutSound, ATrackBehindTheFilesEndIsAnErrorAndTheOthersPlay) {
    writeFile(m_disc / "d.cue", "FILE 1.flac WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                "TRACK 02 AUDIO\nINDEX 01 00:06:00\nTRACK 03 AUDIO\nINDEX 01 00:20:00\n");
    m_unit.play(m_disc / "d.cue");
    m_unit.command(182, 3);
    m_unit.next("errorstatus", "32");
    nextTime(1, 9);
}

INSTANTIATE_TEST_SUITE_P(Forms, CutSound,
                         testing::Values(OneFile{"Flac", "flac", ""},
                                         OneFile{"FlacOf24Bits", "flac", "-sample_fmt s32", false},
                                         OneFile{"WaveOf24Bits", "wav", "-c:a pcm_s24le", false},
                                         OneFile{"Mp3", "mp3", "-c:a libmp3lame -b:a 320k", false},
                                         OneFile{"Mp3OfVaryingRate", "mp3", "-c:a libmp3lame -q:a 0", false}),
                         [](const auto& each) { return std::string(each.param.name); });
