#include "services/disc/library/DisplayNames.h"

#include <gtest/gtest.h>

using namespace zm::disc::library;
using namespace zm::disc::model;

namespace {

using Names = std::vector<std::string>;

// The names of files without tags.
Names shown(const Names& fileNames, MediaKind kind = MediaKind::Music) {
    std::vector<NamedFile> files;
    for (const auto& name : fileNames) {
        files.push_back({name, "", 0});
    }
    return displayNames(files, kind);
}

std::string shownAlone(const std::string& fileName, int track = 0) {
    return displayNames({{fileName, "", track}}, MediaKind::Music).front();
}

} // namespace

TEST(DisplayNames, TheTitleIsTheName) {
    EXPECT_EQ(displayNames({{"07 x.mp3", "Über den Wolken", 7}}, MediaKind::Music), Names{"Über den Wolken"});
}

TEST(DisplayNames, WithoutATitleItIsTheFilesNameWithoutEndingAndTrackNumber) {
    EXPECT_EQ(shownAlone("Song.mp3"), "Song");
    EXPECT_EQ(shownAlone("A. B. C.ogg"), "A. B. C");
    for (const char* name :
         {"02 - The Second Song.mp3", "02 The Second Song.flac", "02. The Second Song.ogg",
          "2. The Second Song.mp3", "02-The Second Song.mp3", "02_The Second Song.mp3",
          "02_-_The Second Song.mp3", "2 - The Second Song.mp3", "12 – The Second Song.mp3",
          "(02) The Second Song.mp3", "[2] The Second Song.mp3", "2) The Second Song.mp3",
          "1-02 The Second Song.m4a", "2.07 - The Second Song.m4a", "102 - The Second Song.wav"}) {
        EXPECT_EQ(shownAlone(name), "The Second Song") << name;
    }
    EXPECT_EQ(shownAlone("2、晨光.mp3"), "晨光");
    EXPECT_EQ(shownAlone("02 - Artist - Title.mp3"), "Artist - Title");
}

TEST(DisplayNames, ANumberThatIsPartOfTheTitleStays) {
    for (const char* name : {"99 Luftballons", "7 Seconds", "1979", "1999 - Live", "10cc", "24-7", "7.62 mm",
                             "007", "01 - ", "5-Minute Song", "Track 12", "(2", "(1", "2 two", "0 nothing"}) {
        EXPECT_EQ(shownAlone(std::string(name) + ".mp3"), name);
    }
}

TEST(DisplayNames, ANumberThatIsTheTagsTrackIsATrackNumber) {
    EXPECT_EQ(shownAlone("7 Seconds.mp3", 7), "Seconds");
    EXPECT_EQ(shownAlone("7 Seconds.mp3", 3), "7 Seconds");
}

TEST(DisplayNames, AFolderOfNumberedNamesIsAnAlbum) {
    EXPECT_EQ(shown({"1 first.mp3", "2 second.mp3", "10 tenth.mp3"}), (Names{"first", "second", "tenth"}));
    EXPECT_EQ(shown({"1-Un.mp3", "2-Deux.mp3"}), (Names{"Un", "Deux"}));
    EXPECT_EQ(shown({"7 Seconds.mp3", "99 Luftballons.mp3"}), (Names{"7 Seconds", "99 Luftballons"}));
    EXPECT_EQ(shown({"1 first.mp3", "other.mp3"}), (Names{"1 first", "other"}));
    EXPECT_EQ(shown({"1 first.mp3", "1 other.mp3"}), (Names{"1 first", "1 other"}));
}

TEST(DisplayNames, VideosAndPhotosKeepTheirNumber) {
    EXPECT_EQ(shown({"02 - Holiday.mp4", "1 x.avi"}, MediaKind::Video), (Names{"02 - Holiday", "1 x"}));
    EXPECT_EQ(shown({"01 Beach.jpg"}, MediaKind::Photo), Names{"01 Beach"});
}

TEST(DisplayNames, EqualNamesKeepTheirEnding) {
    EXPECT_EQ(shown({"Song.mp3", "Song.flac", "Other.ogg"}), (Names{"Song.mp3", "Song.flac", "Other"}));
    EXPECT_EQ(shown({"01 Song.mp3", "01 Song.flac"}), (Names{"Song.mp3", "Song.flac"}));
    EXPECT_EQ(shown({"a.jpg", "a.png"}, MediaKind::Photo), (Names{"a.jpg", "a.png"}));
    EXPECT_EQ(displayNames({{"1.mp3", "Intro", 1}, {"2.ogg", "Intro", 2}}, MediaKind::Music),
              (Names{"Intro.mp3", "Intro.ogg"}));
}

TEST(DisplayNames, WhereTheEndingIsTheSameTheWholeFileNameIsShown) {
    EXPECT_EQ(shown({"01 Intro.mp3", "09 Intro.mp3", "02 Song.mp3"}),
              (Names{"01 Intro.mp3", "09 Intro.mp3", "Song"}));
    EXPECT_EQ(displayNames({{"a.mp3", "Intro", 0}, {"b.mp3", "Intro", 0}}, MediaKind::Music),
              (Names{"a.mp3", "b.mp3"}));
    EXPECT_EQ(displayNames({{"a.mp3", "", 0}, {"a.ogg", "", 0}, {"b.flac", "a.mp3", 0}}, MediaKind::Music),
              (Names{"a.mp3", "a.ogg", "a.mp3.flac"}));
}
