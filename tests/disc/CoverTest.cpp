// Where the cover of a song comes from, and when it is published.
#include "tests/disc/CdImage.h"
#include "tests/disc/CoverFixture.h"

#include <glib.h>

#include <algorithm>

using namespace zm::disc::model;
using namespace zm::test;

namespace fs = std::filesystem;

namespace {

constexpr const char* Red = "embedded red";

class CoverOfFormat : public Covers, public testing::WithParamInterface<const char*> {};

std::string fourBytes(size_t number) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        text += static_cast<char>(number >> shift);
    }
    return text;
}

// What stands in the comments of an Ogg file for a picture.
std::string pictureComment(const std::string& picture) {
    constexpr size_t FrontCover = 3;
    const std::string type = "image/png";
    const std::string block = fourBytes(FrontCover) + fourBytes(type.size()) + type + fourBytes(0) +
                              std::string(16, '\0') + fourBytes(picture.size()) + picture;
    char* text = g_base64_encode(reinterpret_cast<const guchar*>(block.data()), block.size());
    std::string comment = text;
    g_free(text);
    return comment;
}

std::string oggWith(const std::string& type, const std::string& color) {
    return sample({"sleeve-" + color + "." + type,
                   "-i " + toneFile("wav", 60) +
                       " -metadata METADATA_BLOCK_PICTURE=" + pictureComment(readFile(plainPicture(color)))});
}

// A PNG that claims to be as large as that.
std::string pngOfSize(size_t width, size_t height) {
    std::string png = readFile(plainPicture("red"));
    return png.replace(16, 8, fourBytes(width) + fourBytes(height));
}

} // namespace

TEST_P(CoverOfFormat, IsThePictureInTheTags) {
    const std::string type = GetParam();
    place(type == "ogg" || type == "opus" ? oggWith(type, "red")
                                          : withPictures(type, {{"red", "Cover (front)"}}),
          m_disc / ("song." + type));
    place(plainPicture("blue"), m_disc / "cover.png");
    begin();
    const auto cover = nextCover();
    EXPECT_EQ(brief(cover), Red);
    EXPECT_EQ(cover["folder"], 1);
    EXPECT_EQ(cover["file"], 1);
    const std::string png = readFile(cover["path"]);
    ASSERT_EQ(png.substr(0, 4), "\x89PNG");
    EXPECT_EQ(png.substr(16, 8), fourBytes(320) + fourBytes(320)) << "scaled to the size that is shown";
}

INSTANTIATE_TEST_SUITE_P(Music, CoverOfFormat, testing::Values("mp3", "flac", "m4a", "ogg", "opus"));

TEST_F(Covers, AreTheFrontRatherThanAnythingElse) {
    const std::vector<Sleeve> sleeves = {
        {"blue", "Cover (back)"}, {"green", "Artist/performer"}, {"red", "Cover (front)"}};
    place(withPictures("mp3", sleeves), m_disc / "1.mp3");
    place(withPictures("flac", sleeves), m_disc / "2.flac");
    begin();
    EXPECT_EQ(nextBrief(), Red);
    m_unit.command(Next);
    const auto second = nextCover();
    EXPECT_EQ(brief(second), Red);
    EXPECT_EQ(second["file"], 2);
}

TEST_F(Covers, LieBesideTheSongUnderAnyOfTheirNames) {
    song("1/a.mp3");
    place(plainPicture("red", "64x64", "jpg"), m_disc / "1/FOLDER.JPG");
    song("2/a.mp3");
    place(plainPicture("red"), m_disc / "2/front.png");
    place(plainPicture("blue"), m_disc / "2/folder.png");
    place(plainPicture("lime"), m_disc / "2/Cover.PNG");
    song("3/a.mp3");
    place(sample({"plain-red.gif", "-f lavfi -i color=red:s=64x64 -frames:v 1"}), m_disc / "3/cover.gif");
    song("4/a.mp3");
    place(sample({"plain-red.bmp", "-f lavfi -i color=red:s=64x64 -frames:v 1"}), m_disc / "4/cover.bmp");
    begin();
    for (const char* expected : {"file red", "file lime", "file red", "file red"}) {
        EXPECT_EQ(nextBrief(), expected);
        m_unit.command(Next);
    }
}

TEST_F(Covers, AreDrawnWhereThereIsNoPictureAndKeepTheColourOfTheirAlbum) {
    place(toneFile("mp3", 60, "Lamplight", "Ada", "Quiet Hours", 1), m_disc / "1.mp3");
    place(toneFile("mp3", 60, "雨后的街", "Ada", "Quiet Hours", 2), m_disc / "2.mp3");
    place(toneFile("mp3", 60, "Lamplight", "Ada", "Morning Roads", 3), m_disc / "3.mp3");
    begin();
    std::vector<nlohmann::json> covers;
    for (int i = 0; i < 3; ++i) {
        covers.push_back(nextCover());
        EXPECT_EQ(covers.back()["kind"], "drawn");
        m_unit.command(Next);
    }
    EXPECT_NE(covers[0]["path"], covers[1]["path"]) << "other letters";
    EXPECT_NE(covers[0]["path"], covers[2]["path"]) << "another album";
    // The letters are white and count little: the tile's colour is what is left.
    const auto red = [](const nlohmann::json& cover) {
        return std::stoi(cover["color"].get<std::string>().substr(1, 2), nullptr, 16);
    };
    EXPECT_NEAR(red(covers[0]), red(covers[1]), 12);
}

TEST_F(Covers, ThatCannotBeDecodedGiveWayToTheNextSource) {
    // In its tags something that is no picture; beside it a damaged one, then a good one.
    const std::string good = readFile(withPictures("mp3", {{"red", "Cover (front)"}}));
    std::string wrong = good;
    wrong.replace(wrong.find("\x89PNG"), 4, "nope");
    writeFile(m_disc / "1/a.mp3", wrong);
    writeFile(m_disc / "1/cover.jpg", readFile(plainPicture("blue", "640x640", "jpg")).substr(0, 400));
    place(plainPicture("lime"), m_disc / "1/folder.png");
    // Nothing, a text, a bomb.
    song("2/a.mp3");
    writeFile(m_disc / "2/cover.jpg", "");
    writeFile(m_disc / "2/folder.jpg", "this is no picture, whatever its name says");
    writeFile(m_disc / "2/front.png", pngOfSize(60000, 60000));
    // A back that can be seen is better than a front that cannot.
    std::string front = readFile(withPictures("mp3", {{"lime", "Cover (back)"}, {"red", "Cover (front)"}}));
    front.replace(front.rfind("\x89PNG"), 4, "nope");
    writeFile(m_disc / "3/a.mp3", front);
    begin();
    EXPECT_EQ(nextBrief(), "file lime");
    m_unit.command(Next);
    EXPECT_EQ(nextCover()["kind"], "drawn");
    m_unit.command(Next);
    EXPECT_EQ(nextBrief(), "embedded lime");
}

TEST_F(Covers, OfOtherShapesAreFittedAndNearlySquareOnesCut) {
    for (const auto& [folder, size] : {std::pair{"1", "640x360"}, {"2", "300x330"}, {"3", "16x16"}}) {
        song(std::string(folder) + "/a.mp3");
        place(plainPicture("red", size), m_disc / (std::string(folder) + "/cover.png"));
    }
    begin();
    for (const auto& size : {fourBytes(320) + fourBytes(180), fourBytes(320) + fourBytes(320),
                             fourBytes(320) + fourBytes(320)}) {
        EXPECT_EQ(readFile(nextCover()["path"]).substr(16, 8), size);
        m_unit.command(Next);
    }
}

TEST_F(Covers, FollowWhenSongsAreSkippedQuicklyAndTheLastOneStays) {
    constexpr int Songs = 24;
    for (int i = 0; i < Songs; ++i) {
        char color[] = "0x000040";
        color[2] = static_cast<char>('1' + i % 8);
        color[4] = static_cast<char>('1' + i / 8);
        songWith((i < 9 ? "0" : "") + std::to_string(i + 1) + ".mp3", color);
    }
    begin();
    nextCover();
    for (int i = 0; i < 20; ++i) {
        m_unit.command(Next);
    }
    m_unit.next(
        "cover", [](const Published& each) { return each.json()["file"] == 21; }, std::chrono::seconds(30));
    m_unit.mark();
    EXPECT_FALSE(m_unit.follows("cover", "", std::chrono::seconds(2)));
    EXPECT_EQ(m_unit.since("cover"), std::vector<std::string>{}) << "none that was on its way comes late";
}

TEST_F(Covers, GoWithTheirDiscAndAreNeverShownForAnother) {
    songWith("1.mp3", "red");
    TempFolder other;
    place(toneFile("mp3", 60, "Other"), other / "1.mp3");
    begin();
    const std::string path = nextCover()["path"];
    ASSERT_TRUE(fs::exists(path));
    m_unit.mark();
    m_unit.request({{"op", "insert"}, {"path", other.path().string()}});
    m_unit.next("cover", [](const Published& each) { return each.json()["path"] == ""; });
    EXPECT_FALSE(fs::exists(path));
    const auto second = nextCover();
    EXPECT_EQ(second["kind"], "drawn");
    EXPECT_NE(fs::path(second["path"].get<std::string>()).parent_path(), fs::path(path).parent_path());
    m_unit.request({{"op", "eject"}});
    m_unit.next("cover", [](const Published& each) { return each.json()["path"] == ""; });
    EXPECT_FALSE(fs::exists(second["path"].get<std::string>()));
    EXPECT_TRUE(fs::is_empty(m_unit.runtime() + "/covers"));
}

TEST_F(Covers, OfARunThatWasEndedAreRemoved) {
    writeFile(m_unit.runtime() + "/covers/1/old.png", "old");
    song("1.mp3");
    begin();
    nextCover();
    EXPECT_FALSE(fs::exists(m_unit.runtime() + "/covers/1/old.png"));
}

TEST_F(Covers, AreThereAgainWhenTheObjectsWereLost) {
    songWith("1.mp3", "red");
    begin();
    const auto cover = nextCover();
    m_unit.stopObjects();
    m_unit.mark();
    m_unit.startObjects();
    EXPECT_EQ(nextCover(), cover);
}

TEST_F(Covers, AreOfMusicOnly) {
    songWith("1.mp3", "red");
    place(plainPicture("blue", "640x480"), m_disc / "photo.png");
    begin();
    nextCover();
    m_unit.command(182, 1 << 16 | 1, 2); // the photo
    const auto none = m_unit.next("cover", [](const Published& each) { return each.json()["path"] == ""; });
    EXPECT_EQ(none.json()["kind"], "");
    m_unit.command(182, 1 << 16 | 1, 1); // the song
    EXPECT_EQ(nextBrief(), Red);
}

TEST_F(Covers, OfAnAudioCdAreDrawnFromItsTitles) {
    begin(writeAudioCd(m_disc.path().string(), {{4, 440, "Lamplight", "Ada"}, {4, 660, "", ""}}));
    const auto first = nextCover();
    EXPECT_EQ(first["kind"], "drawn");
    EXPECT_EQ(first["file"], 1);
    m_unit.command(Next);
    EXPECT_NE(nextCover()["path"], first["path"]);
}

TEST_F(Covers, ThatTakeLongKeepNobodyWaiting) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "there so large a picture takes longer than anybody waits for one";
#endif
    song("1.mp3");
    // Ninety megapixels.
    place(sample({"plain-huge.png", "-f lavfi -i color=red:s=9500x9500 -frames:v 1 -pix_fmt rgb24"}),
          m_disc / "cover.png");
    begin();
    const auto playing = m_unit.nextState(PlayState::Playing);
    const auto cover = m_unit.next(
        "cover", [](const Published& each) { return each.json()["path"] != ""; }, std::chrono::seconds(60));
    EXPECT_EQ(cover.json()["kind"], "file");
    EXPECT_LT(playing.when, cover.when);
}
