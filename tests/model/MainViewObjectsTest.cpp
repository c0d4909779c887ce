#include "DiscQDB.h"
#include "DiscViewItems.h"
#include "ListSources.h"
#include "ZMModel/CDiscData.h"
#include "launcher/SourceRequest.h"
#include "lists/ListControls.h"
#include "lists/ListState.h"
#include "lists/MediaTypes.h"
#include "lists/PlayingRow.h"
#include "pages/Notices.h"
#include "pages/PageState.h"
#include "pages/ParkingGate.h"
#include "parts/ControlLink.h"
#include "parts/Widgets.h"
#include "video/OverlayWindow.h"
#include "video/VideoWindow.h"
#include "zmcar/ViewUI.h"

#include <gtest/gtest.h>

namespace zm::test {

/** Objects of the main view, each built with what it needs only: no resource, no head unit, no controller. */
class MainViewObjects : public testing::Test {
protected:
    Oro::ZMCAR::ViewUI view;
    CDiscData data;
    ControlLink control;
    Widgets widgets;
    PageState state;
    OverlayWindow overlay{view, control};
    VideoWindow video{view, control, "zmdisc"};
    Notices notices{view, widgets, control, state, overlay, video};
    ParkingGate films{view, data, widgets, state, overlay, video};
};

TEST_F(MainViewObjects, TheParkingGateKeepsFilmsBackWhileTheCarMoves) {
    films.OnParkingChanged(false);
    films.GotoVideoPage(PLAY_TYPE_PHOTO);
    EXPECT_EQ(state.m_uiCurState, VIEW_STATE_PHOTO_PLAY);
    EXPECT_FALSE(video.IsVisible());
    films.OnParkingChanged(true);
    EXPECT_TRUE(video.IsVisible());
    films.OnParkingChanged(false);
    EXPECT_FALSE(video.IsVisible());
}

TEST_F(MainViewObjects, TheParkingGateLeavesOtherPagesAlone) {
    state.m_uiCurState = VIEW_STATE_MUSIC_LIST;
    films.OnParkingChanged(false);
    films.OnParkingChanged(true);
    EXPECT_FALSE(video.IsVisible());
    EXPECT_EQ(state.m_uiCurState, VIEW_STATE_MUSIC_LIST);
}

TEST_F(MainViewObjects, TheOverlayGoesBeforeTheParkingPageComes) {
    films.GotoVideoPage(PLAY_TYPE_VIDEO);
    overlay.SetVisibleOsd(true);
    ASSERT_TRUE(overlay.IsShown());
    films.OnParkingChanged(false);
    EXPECT_FALSE(overlay.IsShown());
}

TEST_F(MainViewObjects, TheSourceIsAskedForWithTheFirstDiscAndAgainAfterItWasGivenBack) {
    DiscQDB catalogue(data);
    SourceRequest request(data, catalogue, control, state, notices);
    request.OnUserMsgDeviceState();
    EXPECT_FALSE(request.IsRequested());
    EXPECT_EQ(state.m_uiCurState, VIEW_STATE_NO_DISC);
    data.SetDeviceStatus({.bExisting = true});
    request.OnUserMsgDeviceState();
    EXPECT_TRUE(request.IsRequested());
    request.Release();
    EXPECT_FALSE(request.IsRequested());
    request.RequestForDisc("test");
    EXPECT_TRUE(request.IsRequested());
}

TEST_F(MainViewObjects, WithoutListControlsNoRowIsMarkedAndTheWishToSelectItIsUsedUp) {
    DiscQDB catalogue(data);
    ListState lists;
    const ListControls controls;
    PlayingRow playingRow(data, catalogue, widgets, lists, controls);
    for (const bool select : {false, true}) {
        lists.m_bSelPlayingRow = true;
        EXPECT_FALSE(playingRow.OnFunc_FolderListJump_Index(LIST_FROM_AUDIO_FOLDERS, select));
        EXPECT_EQ(lists.m_bSelPlayingRow, !select);
    }
}

TEST_F(MainViewObjects, EachKindOfFilesNamesListsOfItsOwn) {
    for (const MediaType& type : MediaTypes()) {
        EXPECT_EQ(FindListSource(type.allFrom)->page, WND_MEDIA_LIST) << type.type;
        EXPECT_EQ(FindListSource(type.allFrom)->rowType, type.fileType) << type.type;
        EXPECT_EQ(FindListSource(type.foldersFrom)->rowType, FTYPE_FOLDER) << type.type;
        EXPECT_EQ(FindListSource(type.inFolderFrom)->page, WND_FOLDER_LIST) << type.type;
        EXPECT_EQ(FindListSource(type.inFolderFrom)->rowType, type.fileType) << type.type;
        for (const int from : {type.allFrom, type.foldersFrom, type.inFolderFrom}) {
            EXPECT_EQ(FindListSource(from)->menuItem, type.allControl) << type.type;
        }
    }
    EXPECT_EQ(FindListSource(LIST_FROM_AUDIO_FOLDERS - 1), nullptr);
    EXPECT_EQ(FindListSource(LIST_FROM_SEARCH + 1), nullptr);
}

} // namespace zm::test
