#include "SceneFixture.h"

#include <cstring>

using namespace zm::test;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/** What is seen is what was drawn; the check tells everything that was set and not drawn. */
class Staleness : public testing::Test {
protected:
    Staleness() {
        stage.scene->showWindow(6, true);
        stage.paint();
    }
    std::string staleness() {
        stage.paint();
        return stage.scene->staleness(stage.pixels.data(), width * 4);
    }
    /** The pixels after drawing everything. */
    std::vector<uint8_t> drawnAnew() {
        stage.scene->invalidate();
        stage.paint();
        return stage.pixels;
    }

    Stage stage{resourceDir + "DISC.zmrc_device"};
};

TEST_F(Staleness, aDrawnPageIsNotStale) {
    EXPECT_THAT(staleness(), IsEmpty());
}

TEST_F(Staleness, itNamesWhatWasSetAndNotDrawn) {
    stage.ui->SetItemText(6, 2065, L"A title");
    stage.ui->SetItemText(6, 2061, L"An artist");
    stage.ui->drawItem(6, 2061);
    EXPECT_THAT(staleness(), testing::EndsWith(", item 2065 of page 6 was set and not drawn"));
    stage.ui->drawItem(6, 2065);
    EXPECT_THAT(staleness(), IsEmpty());
}

TEST_F(Staleness, eachKindOfChangeIsSeenOnlyOnceDrawn) {
    const std::vector<std::pair<int, std::function<void()>>> changes = {
        {2065, [&] { stage.ui->SetItemText(6, 2065, L"A title"); }},
        {5, [&] { stage.ui->SetItemText(6, 5, 33); }},
        {6504, [&] { stage.ui->SetItemIcon(6, 6504, 53, 2); }},
        {6504, [&] { stage.ui->SetItemState(6, 6504, 3); }},
        {6521, [&] { stage.ui->EnableItem(6, 6521, false); }},
        {17, [&] { stage.ui->ShowItem(6, 17, stage.item(6, 17)["visible"] == false); }},
        {2069, [&] { stage.ui->SetProgressItemPos(6, 2069, 50); }},
        {2069, [&] { stage.ui->SetProgressItemPos(6, 2069, 51); }},
        {2069, [&] { stage.ui->SetProgressItemValues(6, 2069, 400, 0); }},
        {101, [&] { stage.ui->ShowItem(6, 101, true); }},
    };
    for (const auto& [id, change] : changes) {
        const auto before = stage.pixels;
        change();
        EXPECT_THAT(staleness(), HasSubstr("item " + std::to_string(id) + " of page 6")) << id;
        EXPECT_EQ(stage.pixels, before) << id;
        stage.ui->drawItem(6, id);
        EXPECT_THAT(staleness(), IsEmpty()) << id;
        EXPECT_NE(stage.scene->nextTick() >= 0, stage.pixels != before) << id << ": seen, or on its way";
        for (int64_t now = 0; stage.scene->nextTick() >= 0; now += 33) {
            stage.scene->tick(now);
            EXPECT_THAT(staleness(), IsEmpty()) << id;
        }
        EXPECT_NE(stage.pixels, before) << id;
    }
}

TEST_F(Staleness, drawingWhatLiesOverAnItemDoesNotDrawThatItem) {
    const auto before = stage.pixels;
    stage.ui->SetItemText(6, 2065, L"A title");
    stage.ui->ShowItem(6, 101, true);
    stage.ui->drawItem(6, 101);
    stage.ui->ShowItem(6, 101, false);
    stage.ui->drawItem(6, 101);
    stage.ui->ShowItem(6, 6522, false);
    stage.ui->ShowItem(6, 6523, true);
    stage.ui->drawItem(6, 6522); // stand in the same place
    stage.paint();
    EXPECT_THAT(staleness(), HasSubstr("item 2065"));
    EXPECT_THAT(staleness(), HasSubstr("item 6523"));
}

TEST_F(Staleness, pixelsThatWereNeverPaintedAreFound) {
    std::fill(stage.pixels.begin() + (100 * width + 10) * 4, stage.pixels.begin() + (100 * width + 20) * 4,
              0x11);
    EXPECT_EQ(staleness(), "differs at 10,100 10x1 by up to 238");
}

TEST_F(Staleness, anotherLanguageChangesWhatIsDrawnAndLeavesWhatIsSetUndrawn) {
    const auto english = stage.pixels;
    stage.ui->SetItemText(6, 2065, 33);
    stage.scene->setLanguage("de");
    stage.scene->setLanguage("en");
    stage.paint();
    EXPECT_EQ(stage.pixels, english);
    EXPECT_THAT(staleness(), HasSubstr("item 2065"));
    stage.ui->drawItem(6, 2065);
    EXPECT_THAT(staleness(), IsEmpty());
}

TEST_F(Staleness, whatWasSetOnAHiddenPageIsDrawnWithIt) {
    stage.ui->SetItemText(22, 7034, L"changed");
    stage.ui->SetProgressItemPos(6, 2069, 50);
    stage.scene->showWindow(22, true);
    EXPECT_THAT(staleness(), IsEmpty());
    stage.scene->showWindow(6, true);
    EXPECT_THAT(staleness(), IsEmpty());
    const auto shown = stage.pixels;
    EXPECT_EQ(drawnAnew(), shown);
}

TEST_F(Staleness, whatDiffersAtTheEdgesIsNamedExactly) {
    for (const int y : {100, 101, height - 1}) {
        std::fill_n(stage.pixels.begin() + y * width * 4, 4, 0x11);
    }
    EXPECT_EQ(staleness(), "differs at 0,100 1x" + std::to_string(height - 100) + " by up to 238");
}

} // namespace
