// A resource that is read again in the place of the old one.

#include "SceneFixture.h"

namespace {

using zm::test::Stage;
using zm::test::TemporaryFolder;

class Reload : public testing::Test {
protected:
    Reload() : stage(write({})) {
        stage.scene->showWindow(1, true);
        stage.paint();
    }

    struct Piece {
        const char* from;
        const char* to;
    };
    /** Writes the resource with pieces replaced. */
    std::string write(const std::vector<Piece>& pieces) {
        std::string text = R"({
            "languages": ["en", "de"],
            "themes": {"night": {"page": "#000000", "text": "#FFFFFF"}, "day": {"page": "#FFFFFF", "text": "#000000"}},
            "styles": {"box": {"fill": "text"}, "plain": {"textSize": 24, "color": "text"},
                       "list": {"rows": 5, "textSize": 24, "color": "text"}},
            "glyphs": {"play": "F40A"},
            "pictures": {"7": "play", "8": "play", "140": "play"},
            "texts": {"33": {"en": "Loading", "de": "Laden"}, "34": {"en": "No disc", "de": "Keine Disc"}},
            "windows": [
                {"id": 1, "background": "page", "items": [
                    {"id": 3, "kind": "button", "rect": [0, 0, 80, 60], "style": "box", "icon": 7},
                    {"id": 4, "kind": "text", "rect": [100, 0, 80, 60], "style": "plain", "text": 33, "in": 3},
                    {"id": 5, "kind": "progress", "rect": [0, 100, 200, 20], "style": "box"},
                    {"id": 2000, "kind": "list", "rect": [0, 130, 400, 300], "style": "list"}
                ]},
                {"id": 2, "items": []}
            ]
        })";
        for (const Piece& piece : pieces) {
            const size_t at = text.find(piece.from);
            EXPECT_NE(at, std::string::npos) << piece.from;
            text.replace(at, std::string(piece.from).size(), piece.to);
        }
        return folder.write("pages.zmrc", text);
    }
    void reload(const std::vector<Piece>& pieces) {
        write(pieces);
        const auto status = stage.scene->reload();
        EXPECT_TRUE(status) << status.error();
    }
    void expectRefused(const std::vector<Piece>& pieces, const std::string& why) {
        const std::string file = write(pieces);
        const auto before = stage.scene->describe();
        const auto status = stage.scene->reload();
        ASSERT_FALSE(status);
        EXPECT_EQ(status.error(), file + why);
        EXPECT_EQ(stage.scene->describe(), before);
        EXPECT_TRUE(stage.paint().empty());
    }

    TemporaryFolder folder;
    Stage stage;
};

constexpr uint32_t white = 0xFFFFFFFF;
constexpr uint32_t black = 0xFF000000;

} // namespace

TEST_F(Reload, ShowsNewPlacesAndColoursAtOnce) {
    EXPECT_EQ(stage.pixel(10, 50), white);
    reload({{"[0, 0, 80, 60]", "[300, 0, 80, 60]"},
            {R"("night": {"page": "#000000")", R"("night": {"page": "#102030")"}});
    EXPECT_EQ(zm::test::area(stage.paint()), 800 * 480);
    EXPECT_EQ(stage.pixel(10, 50), 0xFF102030);
    EXPECT_EQ(stage.pixel(310, 50), white);
}

TEST_F(Reload, KeepsWhatTheApplicationHasSet) {
    stage.ui->SetItemText(1, 4, L"Song");
    stage.ui->SetItemIcon(1, 3, 8, 4);
    stage.ui->SetItemState(1, 3, 3);
    stage.ui->EnableItem(1, 3, false);
    stage.ui->ShowItem(1, 5, false);
    stage.ui->SetProgressItemPos(1, 5, 40);
    reload({{R"("icon": 7)", R"("icon": 140)"}, {R"("text": 33)", R"("text": 34)"}});
    EXPECT_EQ(stage.item(1, 4).at("text"), "Song");
    EXPECT_EQ(stage.item(1, 4).at("textId"), 0);
    EXPECT_EQ(stage.item(1, 3).at("icons").at("4"), 8);
    EXPECT_EQ(stage.item(1, 3).at("state"), 3);
    EXPECT_EQ(stage.item(1, 3).at("enabled"), false);
    EXPECT_EQ(stage.item(1, 5).at("visible"), false);
    EXPECT_EQ(stage.item(1, 5).at("progress"), 40);
    EXPECT_EQ(stage.scene->shownWindows(), std::vector<int>{1});
}

TEST_F(Reload, FollowsTheResourceWhereTheApplicationHasSetNothing) {
    reload({{R"("icon": 7)", R"("icon": 140, "state": "selected", "enabled": false)"},
            {R"("text": 33, "in": 3)", R"("text": 34, "visible": false)"}});
    EXPECT_EQ(stage.item(1, 3).at("icons").at("4"), 140);
    EXPECT_EQ(stage.item(1, 3).at("state"), 3);
    EXPECT_EQ(stage.item(1, 3).at("enabled"), false);
    EXPECT_EQ(stage.item(1, 4).at("text"), "No disc");
    EXPECT_EQ(stage.item(1, 4).at("visible"), false);
}

TEST_F(Reload, GivesTextsOfTheApplicationTheirNewWordingInThePresentLanguage) {
    stage.scene->setLanguage("de");
    stage.ui->SetItemText(1, 4, 34);
    reload({{"Keine Disc", "Keine CD"}, {R"(["en", "de"])", R"(["en", "ar", "de"])"}});
    EXPECT_EQ(stage.item(1, 4).at("text"), "Keine CD");
    EXPECT_EQ(stage.item(1, 4).at("textId"), 34);
}

TEST_F(Reload, FollowsATextOfItsOwnToo) {
    reload({{R"("text": 33)", R"("text": "Hello")"}});
    EXPECT_EQ(stage.item(1, 4).at("text"), "Hello");
    reload({{R"("text": 33)", R"("text": "Good day")"}});
    EXPECT_EQ(stage.item(1, 4).at("text"), "Good day");
    reload({});
    EXPECT_EQ(stage.item(1, 4).at("text"), "Loading");
}

TEST_F(Reload, StaysInItsTheme) {
    stage.scene->setTheme("day");
    reload({{R"("day": {"page": "#FFFFFF")", R"("day": {"page": "#EEEEEE")"}});
    stage.paint();
    EXPECT_EQ(stage.pixel(700, 50), 0xFFEEEEEE);
}

TEST_F(Reload, ReturnsToTheNightWhenItsThemeIsGone) {
    stage.scene->setTheme("day");
    reload({{R"("day": )", R"("dusk": )"}});
    stage.paint();
    EXPECT_EQ(stage.pixel(700, 50), black);
}

TEST_F(Reload, ItemsComeAndGo) {
    reload({{R"({"id": 5, "kind": "progress", "rect": [0, 100, 200, 20], "style": "box"})",
             R"({"id": 6, "kind": "button", "rect": [0, 100, 200, 20], "style": "box"})"}});
    EXPECT_FALSE(stage.scene->describe().at("1").at("items").contains("5"));
    EXPECT_FALSE(stage.ui->SetProgressItemPos(1, 5, 10));
    stage.click(1, 6);
    EXPECT_THAT(stage.recorder.take(), testing::ElementsAre("1/6:0", "1/6:1"));
}

TEST_F(Reload, AnItemOfAnotherKindIsANewOne) {
    stage.ui->SetItemText(1, 4, L"Song");
    reload({{R"({"id": 4, "kind": "text")", R"({"id": 4, "kind": "button")"}});
    EXPECT_EQ(stage.item(1, 4).at("text"), "Loading");
}

TEST_F(Reload, ParentsAreThoseOfTheNewResource) {
    stage.ui->ShowItem(1, 3, false);
    reload({{R"(, "in": 3)", ""}, {R"("style": "plain", "text")", R"("style": "box", "text")"}});
    stage.paint();
    EXPECT_EQ(stage.pixel(101, 1), white) << "no longer hidden with its parent";
}

TEST_F(Reload, AListIsTheSameObjectWithItsRowsAndPlace) {
    CUI_BtList* list = stage.list(1);
    stage.fill(*list, 50);
    list->SetCurSel(21, 0);
    list->SetTopIndex(20, 1, 0, 0, 0);
    stage.paint();
    reload({{R"("rows": 5)", R"("rows": 3)"}, {"[0, 130, 400, 300]", "[0, 130, 400, 330]"}});
    EXPECT_EQ(stage.list(1), list);
    EXPECT_EQ(list->GetItemCount(), 50);
    EXPECT_EQ(list->GetTopIndex(), 20);
    EXPECT_EQ(stage.item(1, 2000).at("current"), 21);
    EXPECT_EQ(stage.item(1, 2000).at("rows").at(49).at("text"), "50  Song");
    stage.paint();
}

TEST_F(Reload, MovementsEndWhereTheyLead) {
    CUI_BtList* list = stage.list(1);
    stage.fill(*list, 50);
    stage.paint();
    stage.scene->press(100, 400);
    stage.scene->move(100, 300, 10);
    stage.scene->move(100, 200, 20);
    stage.scene->release(100, 200, 30);
    ASSERT_GE(stage.scene->nextTick(), 0);
    stage.recorder.take();
    reload({});
    EXPECT_EQ(stage.scene->nextTick(), -1);
    EXPECT_GT(list->GetTopIndex(), 3);
    EXPECT_THAT(stage.recorder.take(), testing::ElementsAre("1 scroll kind 3 item 2000 state 5"));
}

TEST_F(Reload, ATouchUnderWayEndsSilently) {
    stage.pressItem(1, 3);
    stage.recorder.take();
    reload(
        {{R"({"id": 3, "kind": "button")", R"({"id": 9, "kind": "button")"}, {R"("in": 3)", R"("in": 9)"}});
    stage.scene->move(20, 200, 10);
    stage.scene->hold();
    stage.scene->release(10, 10, 20);
    EXPECT_TRUE(stage.recorder.take().empty());
}

TEST_F(Reload, AKeyThatWasPressedAndHasGoneIsNotTouchedAgain) {
    stage.pressItem(1, 3);
    reload(
        {{R"({"id": 3, "kind": "button")", R"({"id": 9, "kind": "button")"}, {R"("in": 3)", R"("in": 9)"}});
    stage.recorder.take();
    stage.click(1, 9); // the address sanitizer sees whether the old one is asked anything
    EXPECT_THAT(stage.recorder.take(), testing::ElementsAre("1/9:0", "1/9:1"));
}

TEST_F(Reload, ADragUnderWayEnds) {
    stage.fill(*stage.list(1), 50);
    stage.scene->press(100, 400);
    stage.scene->move(100, 300, 10);
    stage.recorder.take();
    reload({});
    EXPECT_THAT(stage.recorder.take(), testing::ElementsAre("1 scroll kind 3 item 2000 state 5"));
    stage.scene->move(100, 200, 20);
    stage.scene->release(100, 200, 30);
    EXPECT_TRUE(stage.recorder.take().empty());
}

TEST_F(Reload, AFaultyResourceChangesNothing) {
    expectRefused(
        {{R"("style": "plain", "text")", R"("style": "plian", "text")"}},
        ":12: found \"plian\", expected the name of a style that stands above (did you mean \"plain\"?)");
}

TEST_F(Reload, PagesNeitherComeNorGo) {
    expectRefused({{R"("id": 2, "items")", R"("id": 7, "items")"}},
                  ": found no window 2, expected each one of the start; for other pages start anew");
    expectRefused({{R"({"id": 2, "items": []})", R"({"id": 2, "items": []}, {"id": 7, "items": []})"}},
                  ": found new windows, expected those of the start only; for other pages start anew");
}

TEST_F(Reload, ListsStay) {
    const char* why =
        ": found no list 2000 in window 1, expected each one of the start; for other pages start anew";
    expectRefused({{R"("id": 2000, "kind")", R"("id": 2001, "kind")"}}, why);
    expectRefused({{R"("kind": "list")", R"("kind": "panel")"}}, why);
}

TEST_F(Reload, NamesTheFilesThatItReads) {
    folder.write("more.zmrc", R"({"texts": {"35": {"en": "More"}}})");
    const std::string file = write({{R"("languages")", R"("include": ["more.zmrc"], "languages")"}});
    EXPECT_EQ(stage.scene->files(), std::vector{file});
    EXPECT_TRUE(stage.scene->reload());
    EXPECT_EQ(stage.scene->files(), (std::vector{file, folder.path() + "/more.zmrc"}));
}

TEST(ReloadOfTheViews, ChangesNothingWithoutAChange) {
    for (const char* name : {"DISC.zmrc_device", "OVERLAY.zmrc_device"}) {
        Stage stage(zm::test::resourceDir + name);
        const auto before = stage.scene->describe();
        ASSERT_TRUE(stage.scene->reload());
        EXPECT_EQ(stage.scene->describe(), before);
    }
}
