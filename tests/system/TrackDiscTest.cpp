#include "tests/disc/CdImage.h"
#include "tests/system/SystemTest.h"

namespace zm::test {

namespace {

constexpr int PlayPage = 6;
constexpr int TrackList = 27;
constexpr int Artist = 2061;
constexpr int Album = 2063;
constexpr int Title = 2065;
constexpr int Elapsed = 2067;
constexpr int Total = 2068;
constexpr int TrackNumber = 2075;
constexpr int List = 2000;
constexpr int ToList = 6508;
constexpr int ShownRows = 5;

} // namespace

/** An audio CD in the drive of the whole system, seen on its pages. */
class AudioCdSystem : public SystemTest {
protected:
    std::string text(int id) { return item(PlayPage, id)["text"]; }
    bool plays(const std::string& title, const std::string& track) {
        return window() == PlayPage && text(Title) == title && text(TrackNumber) == track;
    }
};

TEST_F(AudioCdSystem, IsShownWithTitlesAndARunningTimeAndItsListPlaysATrack) {
    const auto cue =
        writeAudioCd(folder + "/cd", {{60, 440, "One", "Ann"}, {60, 550, "Two", ""}, {60, 660, "Three", ""}});
    startBench({"--no-web", "--launcher", "passive"});
    must({"insert", cue});
    ASSERT_TRUE(eventually([this] { return plays("One", "1/3"); })) << screen()["main"];
    EXPECT_EQ(text(Artist), "Ann");
    EXPECT_EQ(text(Album), "Demo CD");
    EXPECT_TRUE(eventually([this] { return text(Elapsed) >= "00:01"; }));
    EXPECT_EQ(text(Total), "01:00");
    const std::string before = text(Elapsed);
    EXPECT_TRUE(eventually([&] { return text(Elapsed) > before; })) << "the time runs";

    must({"key", "20"});
    ASSERT_TRUE(eventually([this] { return plays("Two", "2/3"); })) << "next track";
    EXPECT_EQ(text(Artist), "The Tones");

    must({"click", "main", std::to_string(PlayPage), std::to_string(ToList), "1"});
    ASSERT_TRUE(eventually([this] {
        return window() == TrackList && item(TrackList, List)["rows"].size() == 3;
    })) << screen()["main"];
    EXPECT_EQ(item(TrackList, List)["rows"][2]["text"], "3  Three");
    const Json place = item(TrackList, List)["rect"];
    const int rowHeight = place[3].get<int>() / ShownRows;
    must({"touch", "400", std::to_string(place[1].get<int>() + 2 * rowHeight + rowHeight / 2)});
    EXPECT_TRUE(eventually([this] { return plays("Three", "3/3"); })) << screen()["main"];
}

} // namespace zm::test
