#include "platform/linux/toolkit/ListControl.h"
#include "tests/views/FolderView.h"

namespace zm::test {

/** Names and requests that were made to do harm. */
class SearchHostile : public ListView {
protected:
    int filesInCatalogue() {
        openList();
        return static_cast<int>(list().rows.size());
    }
    /** A request ends in order and leaves catalogue and player alone. */
    void expectHarmless(const std::string& request) {
        SCOPED_TRACE(request.substr(0, 60));
        unit.appData(request);
        EXPECT_THAT(unit.commands(), IsEmpty());
        EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    }
};

TEST_F(SearchHostile, RequestsChangeNothing) {
    play(PLAY_TYPE_MUSIC);
    const std::string requests[] = {
        "--song=\"'\"",
        "--song=\"'; DROP TABLE files; --\"",
        "--song=\"' OR '1'='1\"",
        "--song=\"x' UNION SELECT 99,99,1,'x\"",
        "--song=\"%s%s%n%d%999999d\"",
        "--song=\"x' OR length(randomblob(900000000)) --\"",
        "--song=\"x' OR (SELECT count(*) FROM files a, files b, files c, files d, files e, files f, files g, "
        "files "
        "h, files i) --\"",
        "--song=" + std::string(10000, 'q'),
        "--song=\xFF\xFE\xC3",
        "--song=\xE2\x80\xAE\xE2\x80\x8F",
        "--singer=\"\\\"",
        "--kb_val=\"7; DROP TABLE files\" --kb_ret=",
        "--kb_val=%n --kb_ret=%n",
        "--kb_val=" + std::string(10000, '9') + " --kb_ret=1",
    };
    for (const std::string& request : requests) {
        unit.clearCommands();
        if (request.find("7;") != std::string::npos) {
            unit.appData(request); // begins with a number, and only that counts
            EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(7, 0)));
        } else {
            expectHarmless(request);
        }
    }
    EXPECT_EQ(filesInCatalogue(), 12);
}

TEST_F(SearchHostile, AQuoteBringsNoRowsIntoTheSearchResult) {
    play(PLAY_TYPE_MUSIC);
    unit.appData("--song=\"song 7\"");
    ASSERT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    unit.appData("--song=\"x' UNION SELECT 99,99,1,'x\"");
    EXPECT_FALSE(unit.log("not found this song.").empty());
    EXPECT_EQ(returnTarget(), PLAY_LIST_SEARCH);
    EXPECT_THAT(list().rows, IsEmpty());
}

TEST_F(SearchHostile, NamesAreShownAsTheyAre) {
    const std::string names[] = {"%s%n%d", "a'b\"c", "100%_", "\xE2\x80\xAEltr", "\xD8\xA7\xD8\xBA\xD9\x86"};
    catalogue.sql("DELETE FROM files");
    int fid = 0;
    for (const std::string& name : names) {
        catalogue.file(++fid, 1, Catalogue::Music, name);
    }
    play(PLAY_TYPE_MUSIC);
    openList();
    for (size_t i = 0; i < std::size(names); ++i) {
        EXPECT_EQ(list().rows.at(i).text, std::to_string(i + 1) + "  " + names[i]);
    }
}

TEST_F(SearchHostile, FolderNamesAreShownAsTheyAre) {
    const std::string longName = std::string(258, 'a') + "\xC3\xA4\xC3\xA4"; // the cut falls into a character
    catalogue.folder(7, 1, Catalogue::Music, "%s' -- \xFF", 0, 1);
    catalogue.folder(8, 1, Catalogue::Music, longName, 0, 1);
    listMusic();
    press(ITEM_FOLDER_MENU);
    tick();
    clickRow(1);
    EXPECT_EQ(unit.main.item(WND_FOLDER_LIST, ITEM_FOLDER_TITLE).text, "%s' -- \xEF\xBF\xBD");
    press(ITEM_FOLDER_MENU);
    tick();
    clickRow(2);
    EXPECT_EQ(unit.main.item(WND_FOLDER_LIST, ITEM_FOLDER_TITLE).text, std::string(258, 'a'));
}

TEST_F(SearchHostile, NumbersAtTheEndsOfTheirRangeArePackedAsTheyAre) {
    catalogue.sql("DELETE FROM files");
    catalogue.file(2147483647, 2147483647, Catalogue::Music, "largest");
    catalogue.file(-2147483647, -5, Catalogue::Music, "smallest");
    play(PLAY_TYPE_MUSIC);
    openList();
    clickRow(0); // the smaller folder comes first
    clickRow(1);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(2147155969, 1), PlayTrack(2147418111, 1)));
}

TEST_F(SearchHostile, AListOf65535RowsIsShownWhole) {
    catalogue.sql("DELETE FROM files");
    catalogue.files(65535, Catalogue::Music, "song");
    play(PLAY_TYPE_MUSIC);
    unit.disc.track({.curMediaId = 65535, .curMediaIds = 65535, .mediaIds = 65535, .parentFolder = 1});
    openList();
    // Looked at in place: as text for another program the list would be larger than anything that is sent.
    onList(WND_MEDIA_LIST, [](CUI_BtList& control) {
        ASSERT_EQ(control.GetItemCount(), 65535);
        const auto& last = control.impl().rows.back();
        EXPECT_EQ(control.impl().text(last), "65535  song 65535");
        EXPECT_EQ(last.icons[ROW_SLOT_PLAYING], ICON_ROW_PLAYING);
        EXPECT_EQ(control.impl().current, 65534);
    });
}

} // namespace zm::test
