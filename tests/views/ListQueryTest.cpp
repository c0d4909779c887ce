#include "tests/views/ListView.h"

namespace zm::test {

using ListQuery = ListView;

TEST_F(ListQuery, AllMusic) {
    listMusic();
    EXPECT_FALSE(
        unit.log(
                "[OnQueryAudioList]--m_szListSql:SELECT fid,folderid,ftype,filename from files WHERE ftype = "
                "1 AND filename <> '' ORDER BY folderid, fid;")
            .empty());
    EXPECT_FALSE(unit.log("[DiscQDB::QueryPlayListCmd]--nFromType:6").empty());
    EXPECT_EQ(list().rows.size(), 12u);
    EXPECT_EQ(list().rows.front().text, "1  song 1");
    EXPECT_EQ(list().rows.back().text, "12  song 12");
    EXPECT_EQ(list().rows.front().icon(ROW_SLOT_KIND), 140);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
}

TEST_F(ListQuery, AllVideos) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.mixedType(MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO);
    press(ITEM_TAB_VIDEO);
    tick();
    EXPECT_FALSE(unit.log("[OnQueryVideoList]--m_szListSql:SELECT fid,folderid,ftype,filename from files "
                          "WHERE ftype == "
                          "2 AND filename <> '' ORDER BY folderid, fid;")
                     .empty());
    EXPECT_FALSE(unit.log("[DiscQDB::QueryPlayListCmd]--nFromType:8").empty());
    EXPECT_EQ(list().rows.front().text, "1  film 1");
    EXPECT_EQ(list().rows.front().icon(ROW_SLOT_KIND), 139);
}

TEST_F(ListQuery, AllPhotos) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.mixedType(MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO);
    press(ITEM_TAB_PHOTO);
    tick();
    EXPECT_FALSE(
        unit.log(
                "[OnQueryPictureList]--m_szListSql:SELECT fid,folderid,ftype,filename from files WHERE ftype "
                "== 3 AND filename <> '' ORDER BY folderid, fid;")
            .empty());
    EXPECT_FALSE(unit.log("[DiscQDB::QueryPlayListCmd]--nFromType:7").empty());
    EXPECT_EQ(list().rows.front().text, "1  photo 1");
    EXPECT_EQ(list().rows.front().icon(ROW_SLOT_KIND), 137);
}

TEST_F(ListQuery, TracksOfACd) {
    play(PLAY_TYPE_CD);
    openList();
    EXPECT_FALSE(unit.log("[OnQueryCurAudioList]--m_szListSql:SELECT fid,folderid,ftype,filename from files "
                          "WHERE ftype "
                          "== 1 AND filename <> '' ORDER BY fid;")
                     .empty());
    EXPECT_EQ(unit.main.window(), WND_CD_LIST);
    EXPECT_EQ(list(WND_CD_LIST).rows.size(), 12u);
    EXPECT_EQ(list(WND_CD_LIST).rows.front().icon(ROW_SLOT_KIND), 140);
}

TEST_F(ListQuery, WithoutACdTheTrackListStaysEmpty) {
    play(PLAY_TYPE_CD);
    unit.disc.mediaType(PLAY_TYPE_DVD); // the list to return to is still that of the CD
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    tick();
    EXPECT_FALSE(unit.log("[OnQueryCurAudioList]--m_szListSql:SELECT fid,folderid,ftype,filename from files "
                          "WHERE ftype "
                          "== 0 AND filename <> '' ORDER BY fid;")
                     .empty());
    EXPECT_THAT(list(WND_CD_LIST).rows, IsEmpty());
    EXPECT_EQ(reported().source, LIST_FROM_ALL_AUDIO);
}

TEST_F(ListQuery, FilesAreOrderedByFolderThenNumberAndNeedAName) {
    catalogue.sql("DELETE FROM files");
    catalogue.file(2, 2, Catalogue::Music, "d");
    catalogue.file(1, 2, Catalogue::Music, "c");
    catalogue.file(2, 1, Catalogue::Music, "b");
    catalogue.file(1, 1, Catalogue::Music, "a");
    catalogue.file(3, 1, Catalogue::Music, "");
    listMusic();
    EXPECT_THAT(list().rowTexts(), ElementsAre("1  a", "2  b", "3  c", "4  d"));
}

TEST_F(ListQuery, AnEmptyListKeepsItsWaitingText) {
    catalogue.sql("DELETE FROM files");
    play(PLAY_TYPE_VIDEO);
    unit.disc.mixedType(MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO);
    press(ITEM_TAB_MUSIC);
    tick();
    EXPECT_THAT(list().rows, IsEmpty());
    EXPECT_TRUE(tip().visible);
    EXPECT_EQ(tip().textId, 33);
    EXPECT_FALSE(unit.log("[DiscView::FileQueryWait] nCount=0").empty());
}

TEST_F(ListQuery, RowsTakeTheWaitingTextAway) {
    play(PLAY_TYPE_VIDEO);
    unit.disc.mixedType(MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO);
    press(ITEM_TAB_MUSIC);
    EXPECT_TRUE(tip().visible);
    EXPECT_EQ(tip().textId, 33);
    tick();
    EXPECT_FALSE(tip().visible);
    EXPECT_FALSE(tip(WND_FOLDER_LIST).visible);
}

TEST_F(ListQuery, AFinishedQueryEndsTheWait) {
    listMusic();
    EXPECT_TRUE(loggedAgain("[DiscView::FileQueryWait] m_nCurListFrom=6"));
    unit.advance(200ms);
    EXPECT_FALSE(loggedAgain("[DiscView::FileQueryWait] m_nCurListFrom=6"));
    EXPECT_THAT(unit.log("not finish"), IsEmpty());
    EXPECT_EQ(unit.log("[DiscView::InsertUIListData]----UIListFrom=6").size(), 1u);
    EXPECT_FALSE(
        unit.log("[DiscView::InsertUIListData]----nCount=12, nStartIndex=0,nInsertCount=12").empty());
    EXPECT_FALSE(unit.log("[DiscView::InsertUIListData]----end").empty());
}

TEST_F(ListQuery, ALongListIsShownInStagesForSixTicks) {
    play(PLAY_TYPE_MUSIC);
    unit.holdCatalogue(5);
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    for (int tickNumber = 1; tickNumber <= 6; ++tickNumber) {
        EXPECT_THAT(unit.log("[DiscView::FileQueryWait] KillTimer"), IsEmpty());
        tick();
        EXPECT_EQ(list().rows.size(), 5u) << tickNumber;
        EXPECT_FALSE(
            unit.log("[DiscView::FileQueryWait] not finish: m_nQueWaitTime=" + std::to_string(tickNumber))
                .empty());
    }
    EXPECT_FALSE(unit.log("[DiscView::FileQueryWait] KillTimer").empty());
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    unit.releaseCatalogue();
    unit.advance(1s);
    EXPECT_EQ(list().rows.size(), 5u); // the rest waits for another insertion
    unit.disc.updateDb(1);
    tick();
    EXPECT_EQ(list().rows.size(), 12u);
    EXPECT_FALSE(unit.log("[DiscView::InsertUIListData]----nCount=12, nStartIndex=5,nInsertCount=7").empty());
}

TEST_F(ListQuery, RowsThatArriveWithinTheSixTicksAreAppended) {
    play(PLAY_TYPE_MUSIC);
    unit.holdCatalogue(5);
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    tick();
    ASSERT_EQ(list().rows.size(), 5u);
    unit.releaseCatalogue();
    tick();
    EXPECT_EQ(list().rows.size(), 12u);
    unit.advance(100ms);
    EXPECT_EQ(unit.log("not finish").size(), 1u);
}

TEST_F(ListQuery, WithoutAQueryATickDoesNothing) {
    play(PLAY_TYPE_MUSIC);
    expire(2);
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    EXPECT_THAT(unit.log("FileQueryWait"), IsEmpty());
}

TEST_F(ListQuery, AfterAFinishedQueryALateTickDoesNothing) {
    listMusic();
    press(ITEM_TYPE_ICON);
    ASSERT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    expire(2); // was on its way when the timer was killed
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(ListQuery, ASearchWhileAListIsFetchedIsShownInItsPlace) {
    play(PLAY_TYPE_MUSIC);
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    unit.appData("--song=\"song 12\"");
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    tick();
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    EXPECT_THAT(list().rowTexts(), ElementsAre("1  song 12"));
}

TEST_F(ListQuery, AnAwaitedListComesOverThePageOfWhatHappensMeanwhile) {
    play(PLAY_TYPE_MUSIC);
    unit.holdCatalogue(5);
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    tick();
    unit.disc.state(DISC_STATE_LOADING);
    unit.disc.state(DISC_STATE_PLAYING);
    ASSERT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    tick();
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    unit.releaseCatalogue();
    tick();
    press(ITEM_TYPE_ICON); // from then on nothing is awaited
    unit.advance(1s);
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(ListQuery, AnEjectedDiscsListIsNoLongerAwaited) {
    play(PLAY_TYPE_MUSIC);
    unit.holdCatalogue(5);
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    unit.disc.state(DISC_STATE_EJECTING);
    unit.advance(1s);
    EXPECT_EQ(unit.main.window(), WND_DISC_LOADING);
    unit.releaseCatalogue();
}

TEST_F(ListQuery, LongAndInvalidNamesAreCutAndReplaced) {
    catalogue.sql("DELETE FROM files");
    catalogue.file(1, 1, Catalogue::Music, std::string(300, 'x'));
    catalogue.file(2, 1, Catalogue::Music,
                   "a\xFF"
                   "b");
    listMusic();
    EXPECT_EQ(list().rows.at(0).text, "1  " + std::string(249, 'x')); // the catalogue keeps 249 bytes
    EXPECT_EQ(list().rows.at(1).text, "2  a\xEF\xBF\xBD"
                                      "b");
}

} // namespace zm::test
