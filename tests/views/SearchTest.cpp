#include "tests/support/Load.h"
#include "tests/views/ListView.h"

namespace zm::test {

using SearchKeyboard = ListView;

TEST_F(SearchKeyboard, ANumberPlaysTheTrack) {
    for (const int type : {PLAY_TYPE_CD, PLAY_TYPE_MUSIC}) {
        play(type);
        unit.appData("--kb_val=7 --kb_ret=1");
        EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(7, 0))) << type;
        EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    }
    EXPECT_FALSE(
        unit.log("_PLATEN_[OnAppsMsgAppData]-[OnAppsMessage]--APPSMSG_APPDATA--input:--kb_val=7 --kb_ret=1")
            .empty());
    EXPECT_FALSE(
        unit.log("_PLATEN_[OnAppsMsgAppData]-[OnAppsMessage]--APPSMSG_APPDATA--m_szSearch:7").empty());
}

TEST_F(SearchKeyboard, ANumberPlaysTheRowOfAllVideosOrPhotos) {
    const struct {
        int type;
        int tab;
        std::string command;
        int state;
        const char* log;
    } rows[] = {{PLAY_TYPE_VIDEO, ITEM_TAB_VIDEO, PlayTrack(Folder{1}, File{7}, KIND_VIDEO),
                 VIEW_STATE_VIDEO_PLAY, "nPlayType=2,nUiFrom=8,nLine=6"},
                {PLAY_TYPE_PHOTO, ITEM_TAB_PHOTO, PlayTrack(7, 1), VIEW_STATE_PHOTO_PLAY,
                 "nPlayType=3,nUiFrom=7,nLine=6"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.type);
        play(row.type);
        press(row.tab);
        tick();
        forget();
        unit.appData("--kb_val=7 --kb_ret=1");
        EXPECT_THAT(unit.commands(), ElementsAre(row.command));
        EXPECT_EQ(state(), row.state);
        EXPECT_EQ(unit.main.window(), WND_VIDEO);
        EXPECT_FALSE(unit.log(row.log).empty());
    }
}

TEST_F(SearchKeyboard, NumbersOutsideTheDiscDoNothing) {
    play(PLAY_TYPE_MUSIC); // twelve files
    for (const char* value : {"0", "-3", "13", "abc", "4294967297", "99999999999999999999", "''"}) {
        unit.appData(std::string("--kb_val=") + value + " --kb_ret=1");
        EXPECT_THAT(unit.commands(), IsEmpty()) << value;
    }
    unit.appData("--kb_val=12 --kb_ret=1");
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(12, 0)));
}

TEST_F(SearchKeyboard, OtherTypesDoNothing) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_VCD}) {
        play(type);
        unit.appData("--kb_val=7 --kb_ret=1");
        EXPECT_THAT(unit.commands(), IsEmpty()) << type;
    }
}

TEST_F(SearchKeyboard, WithoutConfirmationTheValueIsIgnored) {
    play(PLAY_TYPE_MUSIC);
    unit.appData("--kb_val=7");
    unit.appData("--kb_ret=1");
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(SearchKeyboard, TheKeyboardGoesBeforeTheVoice) {
    play(PLAY_TYPE_MUSIC);
    unit.appData("--kb_val=99 --kb_ret=1 --song=song");
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_THAT(unit.log("[DiscView::OnHandleVoicePlay]"), IsEmpty());
}

TEST_F(SearchKeyboard, AVeryLongValueIsCut) {
    play(PLAY_TYPE_MUSIC);
    unit.appData("--kb_val=" + std::string(4000, '0') + "7 --kb_ret=1");
    EXPECT_THAT(unit.commands(), IsEmpty());
    unit.appData("--kb_val=" + std::string(200, '0') + "7 --kb_ret=1");
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(7, 0)));
}

class SearchVoice : public ListView {
protected:
    SearchVoice() {
        catalogue.file(30, 4, Catalogue::Music, "My Way");
        catalogue.file(31, 4, Catalogue::Music, "Highway");
        catalogue.file(32, 4, Catalogue::Video, "Way of video");
    }
};

TEST_F(SearchVoice, TheFirstMatchPlaysUnpacked) {
    play(PLAY_TYPE_MUSIC);
    unit.appData("--song=way");
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(30, 4)));
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    EXPECT_FALSE(unit.log("[OnQuerySongName]--m_szListSql:SELECT fid,folderid,ftype,filename from files "
                          "WHERE ftype == 1 "
                          "AND filename LIKE '%%way%%' ORDER BY folderid, fid;")
                     .empty());
    EXPECT_FALSE(unit.log("[OnHandleVoicePlay]fileID=30,folderID=4").empty());
    EXPECT_FALSE(unit.log("[DiscView::OnHandleQueryResult]  i=0").empty());
    const Reported view = reported();
    EXPECT_EQ(view.source, LIST_FROM_SEARCH);
    EXPECT_EQ(view.browsed, PLAY_TYPE_MUSIC);
    EXPECT_EQ(returnTarget(), PLAY_LIST_SEARCH);
}

TEST_F(SearchVoice, AMatchThatPlaysOnlyOpensThePlayPage) {
    play(PLAY_TYPE_MUSIC);
    openList();
    unit.disc.track({.curMediaId = 30, .parentFolder = 4});
    forget();
    unit.appData("--song=\"my way\"");
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(SearchVoice, TheSingerIsLookedUpWithoutASong) {
    play(PLAY_TYPE_MUSIC);
    unit.appData("--singer=high");
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(31, 4)));
    forget();
    unit.appData("--song= --singer=high");
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(31, 4)));
    forget();
    unit.appData("--song=my --singer=high");
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(30, 4)));
}

TEST_F(SearchVoice, WithoutAMatchNothingChanges) {
    play(PLAY_TYPE_MUSIC);
    openList();
    unit.appData("--song=nowhere");
    EXPECT_FALSE(unit.log("not found this song.").empty());
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(reported().source, LIST_FROM_ALL_AUDIO);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
}

TEST_F(SearchVoice, NoRequestIsLostUnderLoad) {
    constexpr int Requests = 500;
    play(PLAY_TYPE_MUSIC);
    const Load load(4);
    int carriedOut = 0;
    for (int i = 0; i < Requests; ++i) {
        forget();
        unit.appData(i % 2 ? "--song=highway" : "--song=\"my way\"");
        carriedOut +=
            unit.commands() == std::vector<std::string>{i % 2 ? PlayTrack(31, 4) : PlayTrack(30, 4)};
    }
    EXPECT_EQ(carriedOut, Requests);
}

TEST_F(SearchVoice, AQuoteInTheNameIsNoMatchAndDestroysNothing) {
    play(PLAY_TYPE_MUSIC);
    unit.appData("--song=\"x'; DELETE FROM files; --\"");
    EXPECT_FALSE(unit.log("not found this song.").empty());
    EXPECT_THAT(unit.commands(), IsEmpty());
    unit.appData("--song=highway");
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(31, 4)));
}

TEST_F(SearchVoice, WildcardsAreNotEscaped) {
    play(PLAY_TYPE_MUSIC);
    unit.appData("--song=h_gh%y");
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(31, 4)));
}

TEST_F(SearchVoice, ANameLongerThanTheBuffersIsLookedUpWhole) {
    const std::string name(400, 'z');
    catalogue.file(40, 4, Catalogue::Music, name);
    play(PLAY_TYPE_MUSIC);
    unit.appData("--song=" + name);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(40, 4)));
}

TEST_F(SearchVoice, AnEmptyRequestResumesMusic) {
    play(PLAY_TYPE_MUSIC);
    unit.appData("--song=");
    EXPECT_THAT(unit.commands(), ElementsAre(Play()));
}

TEST_F(SearchVoice, WhileAVideoPlaysItWaitsForMusic) {
    play(PLAY_TYPE_VIDEO);
    unit.disc.mixedType(MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO);
    forget();
    unit.appData("--song=way");
    EXPECT_EQ(state(), VIEW_STATE_MUSIC_LIST);
    EXPECT_THAT(unit.commands(), ElementsAre(GotoSubList(2, 1)));
    unit.disc.state(DISC_STATE_PLAYING); // still the video
    EXPECT_THAT(unit.commands(), ElementsAre(GotoSubList(2, 1)));
    unit.disc.mediaType(PLAY_TYPE_MUSIC);
    forget();
    unit.disc.state(DISC_STATE_PLAYING);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(30, 4)));
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    forget();
    unit.disc.state(DISC_STATE_PLAYING);
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(SearchVoice, AnEmptyRequestWhileAVideoPlaysOnlyChangesToMusic) {
    play(PLAY_TYPE_VIDEO);
    unit.disc.mixedType(MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO);
    forget();
    unit.appData("--singer=");
    EXPECT_THAT(unit.commands(), ElementsAre(GotoSubList(2, 1)));
    unit.disc.mediaType(PLAY_TYPE_MUSIC);
    forget();
    unit.disc.state(DISC_STATE_PLAYING);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_THAT(unit.log("[DiscView::OnHandleVoicePlay]"), IsEmpty());
}

TEST_F(SearchVoice, OnADiscWithoutMusicAMatchOnlyChangesTheBrowsedType) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.mixedType(MIXED_VIDEO);
    press(ITEM_TAB_VIDEO);
    tick();
    ASSERT_EQ(reported().browsed, PLAY_TYPE_VIDEO);
    forget();
    unit.appData("--song=way");
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_THAT(unit.log("[OnHandleVoicePlay]fileID"), IsEmpty());
    EXPECT_EQ(reported().browsed, PLAY_TYPE_MUSIC);
}

TEST_F(SearchVoice, TheWaitForTheWorkerEndsAfterFiftyOnePolls) {
    play(PLAY_TYPE_MUSIC);
    unit.holdCatalogue(0);
    unit.appData("--song=way");
    EXPECT_FALSE(unit.log("[DiscView::OnHandleQueryResult]  i=51").empty());
    EXPECT_FALSE(unit.log("not found this song.").empty());
    unit.releaseCatalogue();
}

TEST_F(SearchVoice, RowsThatAreThereWhenTheWaitEndsDecide) {
    play(PLAY_TYPE_MUSIC);
    unit.holdCatalogue(1);
    unit.appData("--song=way");
    EXPECT_FALSE(unit.log("[DiscView::OnHandleQueryResult]  i=51").empty());
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(30, 4)));
    unit.releaseCatalogue();
}

TEST_F(SearchVoice, OtherDataDoesNothing) {
    play(PLAY_TYPE_MUSIC);
    unit.appData("--other=1 words");
    EXPECT_FALSE(unit.log("[OnAppsMessage]--APPSMSG_APPDATA--input:--other=1 words").empty());
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST(SearchStart, ASongOnTheCommandLineWaitsForMusic) {
    Catalogue catalogue;
    catalogue.file(30, 4, Catalogue::Music, "My Way");
    Unit unit({.catalogue = catalogue.path(), .song = "way"});
    EXPECT_FALSE(unit.log("[DiscView::SetVoicePlayPar]song=way").empty());
    unit.disc.insert(PLAY_TYPE_MUSIC);
    EXPECT_THAT(unit.commands(), testing::Contains(PlayTrack(30, 4)));
    unit.clearCommands();
    unit.disc.state(DISC_STATE_PLAYING);
    EXPECT_THAT(unit.commands(), IsEmpty()) << "only once";
}

TEST_F(SearchVoice, AnEmptySongAtStartIsNoRequest) {
    unit.onViewThread([&] { unit.view().SetVoicePlayPar(""); });
    play(PLAY_TYPE_MUSIC);
    EXPECT_THAT(unit.log("[DiscView::OnHandleVoicePlay]"), IsEmpty());
    unit.onViewThread([&] { unit.view().SetVoicePlayPar("way"); });
    unit.disc.state(DISC_STATE_PLAYING);
    EXPECT_EQ(unit.log("[DiscView::OnHandleVoicePlay]").size(), 1u);
}

} // namespace zm::test
