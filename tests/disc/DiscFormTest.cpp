#include "tests/disc/CdImage.h"
#include "tests/disc/GaplessFixture.h"

#include <filesystem>

using namespace zm::test;

namespace {

/** What the head unit is told of a disc, and how it sounds. */
class DiscForms : public Gapless {
protected:
    void SetUp() override {}
    nlohmann::json loaded(const std::string& path) {
        m_unit.request({{"op", "insert"}, {"path", path}});
        return m_unit
            .next("drivestate",
                  [&](const Published& each) {
                      return each.json()["state"] == "loaded" && each.json()["path"] == path;
                  })
            .json();
    }
};

class ImageSound : public Gapless {};

} // namespace

TEST_F(DiscForms, TheHeadUnitIsToldWhatADiscIsAndByWhat) {
    m_unit.startService();
    writeFile(m_disc / "1.bin", cdSound(1, 440));
    writeFile(m_disc / "1.cue",
              "CATALOG 0724359532257\nFILE 1.bin BINARY\nTRACK 01 AUDIO\nISRC DEABC1234567\n"
              "INDEX 01 00:00:00\n");
    const auto cd = loaded(m_disc / "1.cue");
    EXPECT_EQ(cd["kind"], "audio CD");
    EXPECT_EQ(cd["form"], "cue sheet");
    EXPECT_EQ(cd["catalog"], "0724359532257");
    EXPECT_EQ(cd["isrc"], nlohmann::json({"DEABC1234567"}));

    writeFile(m_disc / "2/1.mp3", "");
    writeFile(m_disc / "2/2.png", "");
    const auto files = loaded(m_disc / "2");
    EXPECT_EQ(files["kind"], "files: music, photos");
    EXPECT_EQ(files["form"], "folder");
    EXPECT_FALSE(files.contains("catalog")) << "nothing of the disc before";
    EXPECT_FALSE(files.contains("isrc"));

    m_unit.request({{"op", "eject"}});
    const auto empty =
        m_unit.next("drivestate", [](const Published& each) { return each.json()["state"] == "empty"; });
    EXPECT_FALSE(empty.json().contains("kind"));
    EXPECT_FALSE(empty.json().contains("form"));
}

TEST_F(DiscForms, ARefusalLeavesWhatIsKnownOfTheDiscInside) {
    m_unit.startService();
    writeFile(m_disc / "2/1.mp3", "");
    loaded(m_disc / "2");
    writeFile(m_disc / "x.iso", "PK\3\4" + std::string(100000, '\0'));
    m_unit.request({{"op", "insert"}, {"path", m_disc / "x.iso"}});
    const auto refused = m_unit.next("drivestate", [](const Published& each) {
        return each.json()["state"] == "loaded" && each.json()["text"] != "";
    });
    EXPECT_EQ(refused.json()["text"], (m_disc / "x.iso") + ": an archive (zip): unpack it first");
    EXPECT_EQ(refused.json()["kind"], "files: music");
}

TEST_F(ImageSound, EncodedTracksOfACueSheetFollowEachOtherWithoutAGap) {
    writeTwo();
    writeFile(m_disc / "d.cue", "FILE 1.flac WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                "FILE 2.flac WAVE\nTRACK 02 AUDIO\nINDEX 01 00:00:00\n");
    EXPECT_EQ(passages(playToTheEnd(m_disc / "d.cue")), (std::vector<Passage>{{0, Both}}));
}

TEST_F(ImageSound, SoundWithTheHighByteFirstSoundsTheSame) {
    constexpr size_t Frames = 588 * 75 * 3;
    std::string bytes = bytesOf(noise(0, Frames));
    for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
        std::swap(bytes[i], bytes[i + 1]);
    }
    writeFile(m_disc / "d.bin", bytes);
    writeFile(m_disc / "d.cue", "FILE d.bin MOTOROLA\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                "TRACK 02 AUDIO\nINDEX 01 00:01:30\n");
    EXPECT_EQ(passages(playToTheEnd(m_disc / "d.cue"), Frames), (std::vector<Passage>{{0, Frames}}));
}

TEST_F(ImageSound, AMixedDiscPlaysItsTracksThenItsFiles) {
    constexpr size_t Frames = 588 * 75 * 3;
    writePieces([](size_t first, size_t count) { return noise(first + Frames, count); }, {2 * 44100}, "flac",
                "");
    std::filesystem::create_directories(m_disc / "content");
    std::filesystem::rename(m_disc / "1.flac", m_disc / "content/1.flac");
    const std::string image = m_disc / "data.iso";
    const std::string command =
        "genisoimage -quiet -V FILES -r -o '" + image + "' '" + (m_disc / "content") + "' 2>/dev/null";
    ASSERT_EQ(std::system(command.c_str()), 0);
    writeFile(m_disc / "d.bin", bytesOf(noise(0, Frames)) + dataSectors(readFile(image), 2048, 16));
    writeFile(m_disc / "d.cue", "FILE d.bin BINARY\nTRACK 01 AUDIO\nTITLE One\nINDEX 01 00:00:00\n"
                                "TRACK 02 MODE1/2352\nINDEX 01 00:03:00\n");
    playOnce(m_disc / "d.cue");
    nextTitle("1");
    EXPECT_EQ(passages(waitForTheEnd(), Frames + 2 * 44100), (std::vector<Passage>{{0, Frames + 2 * 44100}}));
    for (const auto& each : m_unit.recorder().all()) {
        if (each.name == "mediatype" && each.value != "255") {
            EXPECT_EQ(each.value, "2") << "a disc of files";
        }
    }
}
