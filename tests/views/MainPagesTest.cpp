#include "tests/views/ListView.h"

#include <nlohmann/json.hpp>

namespace zm::test {

/** What comes from outside while each page is shown. */
class MainPages : public ListView {
protected:
    struct Page {
        const char* name;
        void (*open)(MainPages& test);
        int page;
        int state;
        bool plays = true;
    };
    static const std::vector<Page>& pages();

    /** Opens each page in turn and runs `check` on it, which must leave page and state as they are. */
    void onEachPage(const std::function<void(const Page&)>& check) {
        for (const Page& page : pages()) {
            SCOPED_TRACE(page.name);
            unit.device(DEV_STATUS_PARKING, 1);
            page.open(*this);
            ASSERT_EQ(unit.main.window(), page.page);
            ASSERT_EQ(state(), page.state);
            unit.advance(LIST_WAIT); // what that has asked for
            forget();
            check(page);
            EXPECT_EQ(unit.main.window(), page.page);
            EXPECT_EQ(state(), page.state);
        }
    }
    void openFolder() {
        listMusic();
        press(ITEM_FOLDER_MENU);
        tick();
        clickRow(0);
        tick();
    }
};

const std::vector<MainPages::Page>& MainPages::pages() {
    using Test = MainPages&;
    static const std::vector<Page> PAGES = {
        {"music", [](Test t) { t.play(PLAY_TYPE_MUSIC); }, WND_AUDIO_PLAY, VIEW_STATE_AUDIO_PLAY},
        {"CD", [](Test t) { t.play(PLAY_TYPE_CD); }, WND_AUDIO_PLAY, VIEW_STATE_AUDIO_PLAY},
        {"DVD", [](Test t) { t.play(PLAY_TYPE_DVD); }, WND_VIDEO, VIEW_STATE_VIDEO_PLAY},
        {"VCD", [](Test t) { t.play(PLAY_TYPE_VCD); }, WND_VIDEO, VIEW_STATE_VIDEO_PLAY},
        {"video file", [](Test t) { t.play(PLAY_TYPE_VIDEO); }, WND_VIDEO, VIEW_STATE_VIDEO_PLAY},
        {"photo", [](Test t) { t.play(PLAY_TYPE_PHOTO); }, WND_VIDEO, VIEW_STATE_PHOTO_PLAY},
        {"parking",
         [](Test t) {
             t.play(PLAY_TYPE_DVD);
             t.unit.device(DEV_STATUS_PARKING, 0);
         },
         WND_PARKING, VIEW_STATE_VIDEO_PLAY},
        {"number pad",
         [](Test t) {
             t.play(PLAY_TYPE_MUSIC);
             t.unit.key(K_GOTO);
         },
         WND_GOTO, VIEW_STATE_GOTO},
        {"file list", [](Test t) { t.listMusic(); }, WND_MEDIA_LIST, VIEW_STATE_MUSIC_LIST},
        {"folder", [](Test t) { t.openFolder(); }, WND_FOLDER_LIST, VIEW_STATE_MUSIC_LIST},
        {"track list",
         [](Test t) {
             t.play(PLAY_TYPE_CD);
             t.openList();
         },
         WND_CD_LIST, VIEW_STATE_MUSIC_LIST},
        {"no disc",
         [](Test t) {
             t.unit.disc.state(DISC_STATE_LOADING);
             t.unit.disc.presence(0);
         },
         WND_DISC_LOADING, VIEW_STATE_NO_DISC, false},
        {"disc error", [](Test t) { t.unit.disc.state(DISC_STATE_ERROR); }, WND_DISC_ERROR,
         VIEW_STATE_DISC_ERROR, false},
        {"ejecting", [](Test t) { t.unit.disc.state(DISC_STATE_EJECTING); }, WND_DISC_LOADING,
         VIEW_STATE_EXIT, false},
        {"region error",
         [](Test t) {
             t.unit.disc.state(DISC_STATE_ERROR);
             t.unit.disc.error(ERROR_STATUS_REGION);
         },
         WND_DISC_LOADING, VIEW_STATE_REGION_ERROR, false},
    };
    return PAGES;
}

TEST_F(MainPages, PauseAndResumeStopAndGoOnPlaying) {
    const std::vector<std::string> toggle = {PlayPause()};
    onEachPage([&](const Page& page) {
        passTimeOfDay(LONG_AGO);
        unit.app("pause");
        EXPECT_EQ(unit.commands(), page.plays ? toggle : std::vector<std::string>{});
        EXPECT_EQ(captures().back(), "off");
        EXPECT_FALSE(unit.osd.visible());
        if (page.plays) {
            unit.disc.state(DISC_STATE_PAUSED);
        }
        unit.clearCommands();
        unit.app("resume");
        EXPECT_EQ(unit.commands(), page.plays ? toggle : std::vector<std::string>{});
        if (page.plays) {
            unit.disc.state(DISC_STATE_PLAYING);
        }
    });
}

TEST_F(MainPages, HideOnlyAndResumeChangeNothing) {
    onEachPage([&](const Page&) {
        unit.app("hideonly");
        EXPECT_THAT(unit.commands(), IsEmpty());
        unit.app("resume");
        EXPECT_THAT(unit.commands(), IsEmpty());
    });
}

TEST_F(MainPages, ALanguageChangeTranslatesAndKeepsThePage) {
    onEachPage([&](const Page&) {
        const auto lines = unit.log().size();
        unit.language("zh");
        unit.language("en");
        EXPECT_EQ(unit.log().size(), lines);
        EXPECT_THAT(unit.commands(), IsEmpty());
    });
}

TEST_F(MainPages, TextsOfTheResourceAreTranslatedAndNamesAreNot) {
    listMusic();
    unit.language("en");
    const std::string english = unit.main.item(WND_DISC_LOADING, ITEM_MESSAGE).text;
    const std::string name = list().rows.front().text;
    unit.language("zh");
    EXPECT_NE(unit.main.item(WND_DISC_LOADING, ITEM_MESSAGE).text, english);
    EXPECT_EQ(list().rows.front().text, name);
}

TEST_F(MainPages, RepeatedReportsChangeNothing) {
    onEachPage([&](const Page& page) {
        Json before;
        for (int i = 0; i < 3; ++i) { // the first brings the page up to date
            before = unit.main.describe();
            unit.disc.presence(page.state == VIEW_STATE_NO_DISC ? 0 : 1);
            viewMessage(DISC_VMSG_TRACKINFO);
            viewMessage(DISC_VMSG_PLAYTIME);
            viewMessage(DISC_VMSG_PLAYSTATE);
            viewMessage(DISC_VMSG_ID3);
            viewMessage(DISC_VMSG_MIXEDTYPE);
        }
        EXPECT_EQ(unit.main.describe(), before);
        EXPECT_THAT(unit.commands(), IsEmpty());
    });
}

} // namespace zm::test
