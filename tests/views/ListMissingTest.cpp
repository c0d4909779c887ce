#include "BuildPaths.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/views/FolderView.h"

#include <filesystem>
#include <fstream>

namespace zm::test {

namespace {

/** The application's resources, but without the list controls of their pages and what belongs to those. */
class ResourcesWithoutLists {
public:
    ResourcesWithoutLists() {
        namespace fs = std::filesystem;
        fs::copy(ZM_SHARE_DIR "/rccs", m_folder.path(), fs::copy_options::recursive);
        const std::string file = m_folder.path() + "/DISC.zmrc_device";
        std::ifstream whole(file);
        std::string rest;
        bool inList = false; // its description may go over several lines
        for (std::string line; std::getline(whole, line);) {
            inList = inList || line.find(R"("kind": "list")") != std::string::npos ||
                     line.find(R"("in": 2000)") != std::string::npos;
            rest += inList ? "" : line + "\n";
            inList = inList && line.find('}') == std::string::npos;
        }
        std::ofstream(file) << rest;
    }
    std::string path() const { return m_folder.path() + "/"; }

private:
    TemporaryFolder m_folder;
};

} // namespace

class ListMissing : public testing::Test {
protected:
    ListMissing() {
        for (const auto type : {Catalogue::Music, Catalogue::Video, Catalogue::Picture}) {
            catalogue.files(12, type, "file");
            catalogue.folder(1, 0, type, "root", 0, 12);
        }
    }
    void play(int type) {
        unit.disc.videoMode(VIDEO_MODE_ON);
        unit.disc.insert(type, MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO);
        unit.clearCommands();
    }
    void press(int control, int page) { unit.click(page, control, BT_STATE_RELEASED); }
    void tick() { unit.advance(LIST_WAIT); }
    void openList() {
        press(ITEM_TO_LIST, WND_AUDIO_PLAY);
        tick();
        unit.clearCommands();
    }

    ResourcesWithoutLists resources;
    Catalogue catalogue;
    Unit unit{{.catalogue = catalogue.path(), .resources = resources.path()}};
};

TEST_F(ListMissing, TabsFoldersAndReturnStillChangeThePage) {
    play(PLAY_TYPE_MUSIC);
    ASSERT_FALSE(unit.main.hasItem(WND_MEDIA_LIST, ITEM_LIST));
    openList();
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    for (const FolderKind& kind : FOLDER_KINDS) {
        SCOPED_TRACE(kind.type);
        press(kind.tab, WND_MEDIA_LIST);
        tick();
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
        EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, kind.tab).state, ITEM_STATE_SELECTED);
        press(ITEM_FOLDER_MENU, WND_MEDIA_LIST);
        tick();
        EXPECT_FALSE(
            unit.log("[DiscView::InsertUIListData]----UIListFrom=" + std::to_string(kind.folders)).empty());
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    }
}

TEST_F(ListMissing, RowsAndKeysDoNothing) {
    play(PLAY_TYPE_MUSIC);
    openList();
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        press(ITEM_LIST, page);
        for (const int key : {K_Up, K_Down, K_ENCODER_INC, K_ENCODER_DEC, K_Enter}) {
            unit.key(key);
        }
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    }
    EXPECT_FALSE(unit.log("[DiscView::OnClickFolderListWnd] m_pFolderAudioList null").empty());
    play(PLAY_TYPE_CD);
    openList();
    ASSERT_EQ(unit.main.window(), WND_CD_LIST);
    press(ITEM_LIST, WND_CD_LIST);
    for (const int key : {K_Up, K_Down, K_ENCODER_INC, K_ENCODER_DEC, K_Enter}) {
        unit.key(key);
    }
    unit.disc.track({.curMediaId = 5, .mediaId = 5, .parentFolder = 1});
    EXPECT_EQ(unit.main.window(), WND_CD_LIST);
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(ListMissing, ThePlayPageComesBackWithoutARememberedRow) {
    play(PLAY_TYPE_MUSIC);
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        openList();
        unit.onViewThread([&] { unit.view().ShowWnd(page, true, 0); });
        press(ITEM_TAB_MUSIC, WND_MEDIA_LIST); // starts the eight seconds
        unit.advance(8s);
        EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY) << page;
    }
}

TEST_F(ListMissing, OnlyTheTrackListsButtonLeadsBackToThePlayPage) {
    play(PLAY_TYPE_MUSIC);
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        unit.onViewThread([&] { unit.view().ShowWnd(page, true, 0); });
        press(ITEM_TYPE_ICON, page);
        EXPECT_EQ(unit.main.window(), page == WND_CD_LIST ? WND_AUDIO_PLAY : page);
    }
}

TEST_F(ListMissing, TheNumberPadOpensAllTheSame) {
    play(PLAY_TYPE_MUSIC);
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST}) {
        unit.onViewThread([&] { unit.view().ShowWnd(page, true, 0); });
        press(ITEM_GOTO, page);
        EXPECT_EQ(unit.main.window(), WND_GOTO) << page;
    }
}

} // namespace zm::test
