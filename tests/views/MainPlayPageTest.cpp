#include "tests/views/FolderView.h"

namespace zm::test {

using MainPlayPage = MainView;

namespace {

/** The three pictures of a mode button: normal, selected, pressed. */
std::vector<int> icons(const Item& item) {
    return {item.icon(2), item.icon(3), item.icon(1)};
}

} // namespace

TEST_F(MainPlayPage, RepeatModesHaveTheirPictures) {
    play(PLAY_TYPE_MUSIC);
    struct Case {
        int mode, icon, pressed;
    };
    for (const auto& [mode, icon, pressed] :
         {Case{1, 161, 162}, Case{2, 53, 54}, Case{4, 85, 86}, Case{8, 83, 84}}) {
        unit.disc.playState(mode, 0, 0);
        EXPECT_THAT(icons(unit.main.item(WND_AUDIO_PLAY, ITEM_REPEAT)), ElementsAre(icon, icon, pressed))
            << mode;
    }
    for (const int mode : {0, 3, 16}) {
        unit.disc.playState(mode, 0, 0);
        EXPECT_THAT(icons(unit.main.item(WND_AUDIO_PLAY, ITEM_REPEAT)), ElementsAre(83, 83, 84)) << mode;
    }
}

TEST_F(MainPlayPage, ShuffleModesHaveTheirPictures) {
    play(PLAY_TYPE_CD);
    struct Case {
        int mode, icon, pressed;
    };
    for (const auto& [mode, icon, pressed] : {Case{0, 94, 95}, Case{1, 165, 166}, Case{2, 87, 88}}) {
        unit.disc.playState(1, mode, 0);
        EXPECT_THAT(icons(unit.main.item(WND_AUDIO_PLAY, ITEM_SHUFFLE)), ElementsAre(icon, icon, pressed))
            << mode;
    }
    unit.disc.playState(1, 3, 0);
    EXPECT_THAT(icons(unit.main.item(WND_AUDIO_PLAY, ITEM_SHUFFLE)), ElementsAre(87, 87, 88));
}

TEST_F(MainPlayPage, ModesOfOtherTypesLeaveTheButtons) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.playState(1, 0, 0);
    unit.disc.mediaType(PLAY_TYPE_VIDEO);
    unit.disc.playState(8, 1, 0);
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_REPEAT).icon(2), 161);
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_SHUFFLE).icon(2), 94);
}

TEST_F(MainPlayPage, TimesChangeTheirFormAtAnHour) {
    play(PLAY_TYPE_MUSIC);
    struct Case {
        int elapsed, total;
        const char* elapsedText;
        const char* totalText;
        int percent;
    };
    for (const Case& row :
         {Case{0, 0, "00:00", "00:00", 0}, Case{3599, 3600, "59:59", "01:00:00", 99},
          Case{3600, 7322, "01:00:00", "02:02:02", 49}, Case{61, 200, "01:01", "03:20", 30},
          Case{5, 0, "00:05", "00:00", 0}, Case{5, -1, "00:05", "00:-1", 0},
          Case{300, 200, "05:00", "03:20", 100}, Case{359999, 360000, "99:59:59", "100:00:00", 99}}) {
        SCOPED_TRACE(row.elapsed);
        unit.disc.playTime(row.elapsed, row.total);
        EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_ELAPSED).text, row.elapsedText);
        EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TOTAL).text, row.totalText);
        EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_PROGRESS).progress, row.percent);
    }
}

TEST_F(MainPlayPage, TimesThatOverflowAPercentageFillTheBar) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.playTime(2147483647, 1);
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_PROGRESS).progress, 100);
    unit.disc.playTime(-2147483647, 1);
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_PROGRESS).progress, 0);
}

TEST_F(MainPlayPage, TimesOutsideThePlayPageAreIgnored) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.playTime(10, 100);
    openList();
    unit.disc.playTime(20, 100);
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_ELAPSED).text, "00:10");
    unit.key(K_Enter); // the row of what plays leads back
    ASSERT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_ELAPSED).text, "00:20") << "showing the page refreshes it";
}

TEST_F(MainPlayPage, FilesAreCountedInTheirFolder) {
    struct Case {
        int number, count;
        const char* text;
    };
    for (const int type : {PLAY_TYPE_MUSIC, PLAY_TYPE_VIDEO, PLAY_TYPE_PHOTO}) {
        play(PLAY_TYPE_MUSIC);
        unit.disc.mediaType(type); // reported while the play page is shown
        for (const auto& [number, count, text] :
             {Case{3, 12, "3/12"}, Case{150, 300, "150/300"}, Case{1, 0, "--/--"}, Case{2, -1, "--/--"},
              Case{0, 12, "--/12"}, Case{-1, 300, "--/300"}, Case{0, 0, "--/--"}}) {
            SCOPED_TRACE(text);
            unit.disc.track({.curMediaId = number, .curMediaIds = count, .mediaId = 77, .mediaIds = 88});
            EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TRACK).text, text);
        }
    }
}

TEST_F(MainPlayPage, TracksOfACdAreCountedUpToNinetyNine) {
    play(PLAY_TYPE_CD);
    struct Case {
        int number, count;
        const char* text;
    };
    for (const auto& [number, count, text] :
         {Case{3, 12, "3/12"}, Case{99, 99, "99/99"}, Case{0, 12, "--/12"}, Case{100, 12, "--/--"},
          Case{1, 100, "--/--"}, Case{0, 100, "--/--"}, Case{1, 0, "--/--"}, Case{-1, 12, "--/--"}}) {
        SCOPED_TRACE(text);
        unit.disc.track({.curMediaId = 7, .curMediaIds = 8, .mediaId = number, .mediaIds = count});
        EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TRACK).text, text);
    }
}

TEST_F(MainPlayPage, PlayStateRebuildsTheNumberOfAMusicFileOnly) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.track({.curMediaId = 5, .curMediaIds = 9});
    ASSERT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TRACK).text, "5/9");
    unit.disc.mediaType(PLAY_TYPE_CD);
    unit.disc.track({.curMediaId = 5, .curMediaIds = 9, .mediaId = 2, .mediaIds = 3});
    unit.disc.playState(1, 0, 0);
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TRACK).text, "2/3");
    unit.disc.mediaType(PLAY_TYPE_MUSIC);
    unit.disc.playState(2, 0, 0);
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TRACK).text, "5/9");
}

TEST_F(MainPlayPage, TrackInfoIsLoggedWithTheListSource) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.track({.mediaId = 4, .mediaIds = 9});
    EXPECT_EQ(unit.log("[DiscView::OnUserMsgTrackInfo]----m_nCurListFrom=6,track:4/9").size(), 1u);
    EXPECT_FALSE(unit.log("[DiscView::OnUserMsgTrackInfo]----end------").empty());
}

TEST_F(MainPlayPage, MusicFileIsCalledByItsNameInTheCatalogue) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.track({.curMediaId = 4, .curMediaIds = 12, .parentFolder = 1});
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TITLE).text, "song 4");
    // The name is kept for the now-playing publication, also an empty one.
    unit.disc.id3("", "", "");
    EXPECT_THAT(unit.attribute(NOW_PLAYING, "zmdisc"), HasSubstr("song 4"));
    unit.disc.track({.curMediaId = 99, .curMediaIds = 12, .parentFolder = 1});
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TITLE).text, "unknown title");
    unit.disc.id3("", "", "");
    EXPECT_THAT(unit.attribute(NOW_PLAYING, "zmdisc"), HasSubstr(R"("info0":"")"));
}

TEST_F(MainPlayPage, FileWithAnEmptyNameHasAnUnknownTitle) {
    catalogue.file(50, 1, Catalogue::Music, "");
    play(PLAY_TYPE_MUSIC);
    unit.disc.track({.curMediaId = 50, .curMediaIds = 50, .parentFolder = 1});
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TITLE).text, "unknown title");
}

TEST_F(MainPlayPage, NamesOfAnyScriptAndLengthAreShown) {
    std::string name;
    for (int i = 0; i < 100; ++i) {
        name += "字"; // 300 bytes, cut to 86 characters by the name's buffer
    }
    catalogue.file(51, 1, Catalogue::Music, name);
    catalogue.file(52, 1, Catalogue::Music, "a\xFFz");
    play(PLAY_TYPE_MUSIC);
    unit.disc.track({.curMediaId = 51, .curMediaIds = 52, .parentFolder = 1});
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TITLE).text, name.substr(0, 86 * 3));
    unit.disc.track({.curMediaId = 52, .curMediaIds = 52, .parentFolder = 1});
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TITLE).text, "a\xEF\xBF\xBDz");
}

/** The title of what plays over the lists. */
class ListTitle : public FolderView {
protected:
    std::string titleOn(int page) { return unit.main.item(page, ITEM_TO_PLAYING).text; }
    /** On that page the next report changes the title of `changes` (0: of none) and of no other. */
    void expectTitle(int page, int changes) {
        ASSERT_EQ(unit.main.window(), page);
        const std::string before[] = {titleOn(WND_MEDIA_LIST), titleOn(WND_FOLDER_LIST)};
        m_file = m_file == 7 ? 8 : 7; // neither of them plays when the page is opened
        const std::string now = "file " + std::to_string(m_file);
        unit.disc.track({.curMediaId = m_file, .curMediaIds = 8, .parentFolder = 5});
        EXPECT_EQ(titleOn(WND_MEDIA_LIST), changes == WND_MEDIA_LIST ? now : before[0]);
        EXPECT_EQ(titleOn(WND_FOLDER_LIST), changes == WND_FOLDER_LIST ? now : before[1]);
    }

private:
    int m_file = 0;
};

TEST_F(ListTitle, FollowsThePlayingFileForSomeSourcesOnly) {
    for (const FolderKind& kind : FOLDER_KINDS) {
        SCOPED_TRACE(kind.type);
        const bool films = kind.type == PLAY_TYPE_VIDEO;
        playIn(kind, 5);
        press(kind.tab);
        tick();
        expectTitle(WND_MEDIA_LIST, films ? 0 : WND_MEDIA_LIST);
        press(ITEM_FOLDER_MENU);
        tick();
        expectTitle(WND_MEDIA_LIST, films ? 0 : WND_MEDIA_LIST);
        clickRow(4);
        tick();
        expectTitle(WND_FOLDER_LIST, films ? 0 : WND_FOLDER_LIST);
    }
}

TEST_F(ListTitle, FollowsThePlayingFileOverASearchResult) {
    playIn(FOLDER_KINDS[0], 5);
    unit.appData("--song=file");
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    ASSERT_EQ(reported().source, LIST_FROM_SEARCH);
    expectTitle(WND_MEDIA_LIST, WND_MEDIA_LIST);
}

TEST_F(ListTitle, StaysOverTheTracksOfACd) {
    playIn(FOLDER_KINDS[0], 5);
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    tick();
    play(PLAY_TYPE_CD);
    openList();
    unit.disc.mediaType(PLAY_TYPE_MUSIC); // whose title would follow in a list of files
    expectTitle(WND_CD_LIST, 0);
}

TEST_F(MainPlayPage, ListTitleIsThatOfThePlayingType) {
    struct Case {
        int type;
        const char* title;
    };
    play(PLAY_TYPE_MUSIC);
    openList();
    for (const auto& [type, title] : {Case{PLAY_TYPE_MUSIC, "song 3"}, Case{PLAY_TYPE_VIDEO, "film 3"},
                                      Case{PLAY_TYPE_PHOTO, "photo 3"}}) {
        unit.disc.mediaType(type);
        unit.disc.track({.curMediaId = 3, .curMediaIds = 12, .mediaId = type, .parentFolder = 1});
        EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, ITEM_TO_PLAYING).text, title);
    }
}

TEST_F(MainPlayPage, ListTitleDoesNotBecomeThePlayingName) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.track({.curMediaId = 1, .curMediaIds = 12, .parentFolder = 1});
    openList();
    unit.disc.track({.curMediaId = 2, .curMediaIds = 12, .parentFolder = 1});
    unit.disc.id3("", "", "");
    EXPECT_THAT(unit.attribute(NOW_PLAYING, "zmdisc"), HasSubstr("song 1"));
}

TEST_F(MainPlayPage, TagsOfACdAreShownOnAllItsPages) {
    play(PLAY_TYPE_CD);
    unit.disc.id3("Title", "Artist", "Album");
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TITLE).text, "Title");
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_ARTIST).text, "Artist");
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_ALBUM).text, "Album");
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        EXPECT_EQ(unit.main.item(page, ITEM_TO_PLAYING).text, "Title");
    }
    for (const char* line :
         {"[DiscView::OnUserMsgID3] title=Title,artist=Artist,album=Album", "[DiscView::OnUserMsgID3]artist",
          "[DiscView::OnUserMsgID3]artist SetItemText end", "[DiscView::OnUserMsgID3]album",
          "[DiscView::OnUserMsgID3]album SetItemText end", "[DiscView::OnUserMsgID3] end"}) {
        EXPECT_FALSE(unit.log(line).empty()) << line;
    }
}

TEST_F(MainPlayPage, TagsAreLoggedInTheirOrder) {
    play(PLAY_TYPE_MUSIC);
    const std::string function = "_PLATEN_[OnUserMsgID3]-[DiscView::OnUserMsgID3]";
    const std::vector<std::string> lines = {
        function + " title=T,artist=,album=B", function + " artist empty", function + "album",
        function + "album SetItemText end",    function + " end",
    };
    const auto begin = unit.log().size();
    unit.disc.id3("T", "", "B");
    std::vector<std::string> found;
    for (const std::string& line : unit.log("OnUserMsgID3")) {
        found.push_back(line.substr(line.find("_PLATEN_")));
    }
    EXPECT_EQ(found, lines);
    EXPECT_THAT(logged(begin, {"artist SetItemText end"}), IsEmpty());
}

TEST_F(MainPlayPage, MissingTagsAreUnknown) {
    play(PLAY_TYPE_CD);
    unit.disc.id3("Title", "Artist", "Album");
    unit.disc.id3("", "", "");
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TITLE).text, "unknown title");
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_ARTIST).text, "unknown artist");
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_ALBUM).text, "unknown album");
    EXPECT_EQ(unit.main.item(WND_CD_LIST, ITEM_TO_PLAYING).text, "unknown title");
    EXPECT_EQ(unit.log("[DiscView::OnUserMsgID3] artist empty").size(), 1u);
    EXPECT_EQ(unit.log("[DiscView::OnUserMsgID3] album empty").size(), 1u);
}

TEST_F(MainPlayPage, TitleTagOfAFileIsNotShown) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.track({.curMediaId = 1, .curMediaIds = 12, .parentFolder = 1});
    unit.disc.id3("Title", "Artist", "Album");
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TITLE).text, "song 1");
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_ARTIST).text, "Artist");
}

} // namespace zm::test
