#include "SceneFixture.h"

#include <map>

using namespace zm::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class List : public testing::Test {
protected:
    List() {
        stage.scene->showWindow(24, true);
        list = stage.list(24);
        view = stage.rect(24, 2000);
        rowHeight = view.h / 5;
    }
    int rowY(int row) const { return view.y + row * rowHeight + rowHeight / 2; }
    void drag(int fromRow, int pixels, int stepMs) {
        const int y = rowY(fromRow);
        stage.scene->press(view.x + 50, y);
        int64_t now = 0;
        for (int moved = 0; moved != pixels; moved += pixels > 0 ? 1 : -1) {
            stage.scene->move(view.x + 50, y + moved, now);
            now += stepMs;
        }
        stage.scene->move(view.x + 50, y + pixels, now);
        stage.scene->release(view.x + 50, y + pixels, now + 200);
    }

    /** A finger runs 160 pixels up in a tenth of a second and leaves the fifth row; only its leaving is
     * recorded. */
    void fling() {
        const int y = rowY(4);
        stage.scene->press(view.x + 50, y);
        for (int i = 1; i <= 10; ++i) {
            stage.scene->move(view.x + 50, y - i * 16, i * 10);
        }
        stage.recorder.take();
        stage.scene->release(view.x + 50, y - 160, 101);
    }
    /** The picture is that of a list put to its top row. */
    void expectRestOnAWholeRow() {
        stage.paint();
        const auto resting = stage.pixels;
        list->SetTopIndex(list->GetTopIndex(), 1, 0, 0, 0);
        stage.scene->invalidate();
        stage.paint();
        EXPECT_EQ(stage.pixels, resting);
    }

    Stage stage{resourceDir + "DISC.zmrc_device"};
    CUI_BtList* list = nullptr;
    zm::Rect view;
    int rowHeight = 0;
};

TEST_F(List, startsEmptyWithoutSelection) {
    int index = 77;
    int a = 1;
    int b = 1;
    EXPECT_EQ(list->GetItemCount(), 0);
    EXPECT_FALSE(list->GetCurSel(&index, &a, &b));
    EXPECT_EQ(index, 77);
    EXPECT_EQ(a, 0);
    EXPECT_EQ(b, 0);
    EXPECT_EQ(stage.item(24, 2000)["current"], -1);
    EXPECT_EQ(stage.item(24, 2000)["top"], 0);
    EXPECT_EQ(stage.item(24, 2000)["rows"], nlohmann::json::array());
}

TEST_F(List, rowsAreDescribedWithTextsAndIconsBySlot) {
    EXPECT_TRUE(list->InsertItem(0, -1));
    EXPECT_TRUE(list->SetItemICon(0, 140, 4, 0, 1));
    EXPECT_TRUE(list->SetItemString(0, L"1  Käse", 1));
    EXPECT_TRUE(list->InsertItem(1, -1));
    EXPECT_TRUE(list->SetItemICon(0, 143, 4, 2, 1));
    EXPECT_TRUE(list->SetItemICon(1, 0, 4, 2, 1));
    const auto rows = stage.item(24, 2000)["rows"];
    EXPECT_EQ(rows[0], (nlohmann::json{{"text", "1  Käse"}, {"icons", {{"0", 140}, {"2", 143}}}}));
    EXPECT_EQ(rows[1], (nlohmann::json{{"text", ""}, {"icons", {{"2", 0}}}}));
}

TEST_F(List, aRowsTextMayBeSetAsOftenAsOneLikes) {
    for (int row = 0; row < 3; ++row) {
        list->InsertItem(row, -1);
    }
    list->SetItemString(0, L"", 1);
    list->SetItemString(2, L"stays", 1);
    for (int turn = 0; turn < 10000; ++turn) {
        list->SetItemString(1, (L"Käse " + std::to_wstring(turn)).c_str(), 0);
    }
    const auto rows = stage.item(24, 2000)["rows"];
    EXPECT_EQ(rows[0]["text"], "");
    EXPECT_EQ(rows[1]["text"], "Käse 9999");
    EXPECT_EQ(rows[2]["text"], "stays");
}

TEST_F(List, callsOnRowsThatDoNotExistDoNothing) {
    stage.fill(*list, 3);
    EXPECT_FALSE(list->InsertItem(5, -1));
    EXPECT_FALSE(list->InsertItem(-1, -1));
    EXPECT_FALSE(list->SetItemString(3, L"x", 1));
    EXPECT_FALSE(list->SetItemString(0, nullptr, 1));
    EXPECT_FALSE(list->SetItemICon(-1, 140, 4, 0, 1));
    EXPECT_FALSE(list->SetItemICon(0, 140, 4, 9, 1));
    EXPECT_FALSE(list->SetCurSel(3, 0));
    EXPECT_FALSE(list->SetTopIndex(3, 1, 0, 0, 0));
    EXPECT_EQ(list->GetItemCount(), 3);
}

TEST_F(List, aRowInsertedAboveMovesTheSelection) {
    stage.fill(*list, 3);
    list->SetCurSel(1, 0);
    list->InsertItem(0, -1);
    int index = -1;
    EXPECT_TRUE(list->GetCurSel(&index, nullptr, nullptr));
    EXPECT_EQ(index, 2);
}

TEST_F(List, deletingAllRowsForgetsSelectionAndTop) {
    stage.fill(*list, 20);
    list->SetCurSel(10, 0);
    list->SetTopIndex(8, 1, 0, 0, 0);
    EXPECT_TRUE(list->DeleteAllItems());
    EXPECT_EQ(list->GetItemCount(), 0);
    EXPECT_EQ(list->GetTopIndex(), 0);
    EXPECT_FALSE(list->GetCurSel(nullptr, nullptr, nullptr));
}

TEST_F(List, anyRowMayBeTheTopAndANegativeOneBecomesTheFirst) {
    stage.fill(*list, 12);
    EXPECT_TRUE(list->SetTopIndex(11, 1, 0, 0, 0));
    EXPECT_EQ(list->GetTopIndex(), 11);
    EXPECT_TRUE(list->SetTopIndex(-3, 1, 0, 0, 0));
    EXPECT_EQ(list->GetTopIndex(), 0);
}

TEST_F(List, fiveRowsAreInView) {
    stage.fill(*list, 12);
    for (const int window : {24, 25, 27}) {
        EXPECT_GE(stage.rect(window, 2000).h / 5, 60) << window;
    }
    list->SetTopIndex(3, 1, 0, 0, 0);
    stage.scene->press(view.x + 5, view.y + 1);
    int index = -1;
    list->GetCurSel(&index, nullptr, nullptr);
    EXPECT_EQ(index, 3);
    stage.scene->release(0, 0, 0);
    stage.scene->press(view.x + 5, view.y + view.h - 1);
    list->GetCurSel(&index, nullptr, nullptr);
    EXPECT_EQ(index, 7);
}

TEST_F(List, aTouchedRowIsSelectedBeforeItIsReported) {
    struct Asker : zm::SceneListener {
        void itemClicked(int, int control, int state) override {
            int index = -1;
            list->GetCurSel(&index, nullptr, nullptr);
            seen.push_back({control, state, index});
        }
        void listScrolled(int, int, _tagList_Info&) override {}
        CUI_BtList* list = nullptr;
        std::vector<std::array<int, 3>> seen;
    } asker;
    auto scene = zm::Scene::load(resourceDir + "DISC.zmrc_device", fontDir, width, height, asker);
    ASSERT_TRUE(scene) << scene.error();
    (*scene)->wndMng().GetUIAnalysisObj()->GetItemData(24, 2000, asker.list);
    stage.fill(*asker.list, 10);
    (*scene)->showWindow(24, true);
    (*scene)->press(view.x + 50, rowY(2));
    (*scene)->release(view.x + 50, rowY(2), 10);
    EXPECT_THAT(asker.seen, ElementsAre(std::array{2000, 0, 2}, std::array{2000, 1, 2}));
}

TEST_F(List, aTouchBelowTheLastRowHitsNoItem) {
    stage.fill(*list, 2);
    list->SetCurSel(0, 0);
    stage.scene->press(view.x + 50, rowY(3));
    stage.scene->release(view.x + 50, rowY(3), 0);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("24/0:0", "24/0:1"));
    EXPECT_EQ(stage.item(24, 2000)["current"], 0);
}

TEST_F(List, aDragScrollsReportsStartAndEndAndNeverClicks) {
    stage.fill(*list, 30);
    list->SetCurSel(4, 0);
    drag(3, -2 * rowHeight, 5);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("24/2000:0", "24 scroll kind 3 item 2000 state 3",
                                                   "24 scroll kind 3 item 2000 state 5"));
    EXPECT_EQ(list->GetTopIndex(), 2);
    EXPECT_EQ(stage.item(24, 2000)["current"], 4) << "a drag leaves the selection as it was";
}

TEST_F(List, aDragBeginsAfterTwelvePixels) {
    stage.fill(*list, 30);
    drag(2, -11, 5);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("24/2000:0", "24/2000:1"));
    drag(2, -12, 5);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("24/2000:0", "24 scroll kind 3 item 2000 state 3",
                                                   "24 scroll kind 3 item 2000 state 5"));
}

TEST_F(List, aDragIsNeverHeld) {
    stage.fill(*list, 30);
    stage.scene->press(view.x + 50, rowY(2));
    stage.scene->move(view.x + 50, rowY(2) - 40, 10);
    stage.recorder.take();
    stage.scene->hold();
    EXPECT_THAT(stage.recorder.take(), IsEmpty());
}

TEST_F(List, draggingStopsAtTheEnds) {
    stage.fill(*list, 8);
    drag(4, -4 * rowHeight, 5);
    EXPECT_EQ(list->GetTopIndex(), 3) << "the last row stands at the bottom";
    drag(0, 4 * rowHeight, 5);
    drag(0, 4 * rowHeight, 5);
    EXPECT_EQ(list->GetTopIndex(), 0);
}

TEST_F(List, aListPutBeyondItsEndIsDraggedBackOnly) {
    stage.fill(*list, 8);
    list->SetTopIndex(7, 1, 0, 0, 0);
    drag(3, -rowHeight, 5);
    EXPECT_EQ(list->GetTopIndex(), 7);
    drag(1, 2 * rowHeight, 5);
    EXPECT_EQ(list->GetTopIndex(), 5);
}

TEST_F(List, aDragThatEndsBetweenRowsRestsOnTheNearest) {
    stage.fill(*list, 30);
    drag(4, -(rowHeight * 3 / 2 + 4), 5);
    EXPECT_EQ(list->GetTopIndex(), 2);
    expectRestOnAWholeRow();
}

TEST_F(List, aFlungListRunsOnAndEndsOnAWholeRow) {
    stage.fill(*list, 200);
    fling();
    EXPECT_THAT(stage.recorder.take(), IsEmpty()) << "the end is reported when the list rests";
    const int leftAt = list->GetTopIndex();
    int64_t now = 101;
    while (stage.scene->nextTick() >= 0 && now < 20000) {
        now += 16;
        stage.scene->tick(now);
    }
    EXPECT_GT(list->GetTopIndex(), leftAt + 2);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("24 scroll kind 3 item 2000 state 5"));
    EXPECT_EQ(stage.scene->nextTick(), -1);
    expectRestOnAWholeRow();
}

TEST_F(List, aTouchStopsAFastList) {
    stage.fill(*list, 200);
    fling();
    stage.scene->tick(120);
    stage.recorder.take();
    stage.scene->press(view.x + 50, rowY(4));
    stage.scene->release(view.x + 50, rowY(4), 130);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("24 scroll kind 3 item 2000 state 5"));
    EXPECT_EQ(stage.item(24, 2000)["current"], -1);
    EXPECT_EQ(stage.scene->nextTick(), -1);
}

TEST_F(List, settingTheTopRowEndsAFling) {
    stage.fill(*list, 200);
    fling();
    list->SetTopIndex(50, 1, 0, 0, 0);
    stage.scene->tick(130);
    EXPECT_EQ(list->GetTopIndex(), 50);
    EXPECT_EQ(stage.scene->nextTick(), -1);
}

TEST_F(List, aRowInViewIsDrawnAloneAndOneOutOfViewNotAtAll) {
    stage.fill(*list, 100);
    stage.paint();
    list->SetItemString(50, L"far away", 1);
    EXPECT_THAT(stage.paint(), IsEmpty());
    list->SetItemString(2, L"near", 1);
    const auto areas = stage.paint();
    EXPECT_THAT(areas, ElementsAre(zm::Rect{view.x, view.y + 2 * rowHeight, view.w, rowHeight}));
}

TEST_F(List, theSameIconAgainDrawsNothing) {
    stage.fill(*list, 100);
    for (int i = 0; i < 100; ++i) {
        list->SetItemICon(i, 0, 4, 2, 1);
    }
    stage.paint();
    for (int i = 0; i < 100; ++i) {
        list->SetItemICon(i, 0, 4, 2, 1);
    }
    EXPECT_THAT(stage.paint(), IsEmpty());
}

TEST_F(List, manyRowsAreNoBurden) {
    stage.fill(*list, 65535);
    EXPECT_EQ(list->GetItemCount(), 65535);
    EXPECT_TRUE(list->SetTopIndex(65530, 1, 0, 0, 0));
    stage.scene->press(view.x + 50, rowY(4));
    int index = 0;
    list->GetCurSel(&index, nullptr, nullptr);
    EXPECT_EQ(index, 65534);
}

TEST_F(List, rowNumbersStandInFrontOfNamesOfEitherDirection) {
    list->InsertItem(0, -1);
    list->SetItemString(0, L"8  مرحبا بالعالم.mp3", 1);
    list->InsertItem(1, -1);
    list->SetItemString(1, L"8", 1);
    list->InsertItem(2, -1);
    list->SetItemString(2, L"8  Song.mp3", 1);
    list->InsertItem(3, -1);
    // The number is drawn at the same place whether a name of either direction follows or none: behind the
    // picture on the side where the language begins to read.
    const auto number = [&](int row, int from) {
        std::vector<uint32_t> pixels;
        for (int y = 4; y < rowHeight - 14; ++y) {
            for (int x = from; x < from + 18; ++x) {
                pixels.push_back(stage.pixel(view.x + x, view.y + row * rowHeight + y));
            }
        }
        return pixels;
    };
    for (const auto& [language, from] : std::map<std::string, int>{{"en", 64}, {"ar", view.w - 64 - 18}}) {
        stage.scene->setLanguage(language);
        view = stage.rect(24, 2000);
        stage.paint();
        EXPECT_EQ(number(0, from), number(1, from)) << language;
        EXPECT_EQ(number(0, from), number(2, from)) << language;
        EXPECT_NE(number(0, from), number(3, from)) << "the compared area shows the number";
    }
}

TEST_F(List, aDragHasNoSpeedOfTheOneBefore) {
    stage.fill(*list, 100);
    const int x = view.x + 50;
    stage.scene->press(x, rowY(4));
    for (int i = 1; i <= 10; ++i) {
        stage.scene->move(x, rowY(4) - i * 16, i * 10);
    }
    stage.scene->release(x, rowY(4) - 160, 1000); // it has rested
    const int top = list->GetTopIndex();
    stage.recorder.take();
    stage.scene->press(x, rowY(2));
    stage.scene->move(x, rowY(2) - 20, 2000);
    stage.scene->release(x, rowY(2) - 20, 2001);
    EXPECT_THAT(stage.recorder.take(), testing::Contains("24 scroll kind 3 item 2000 state 5"));
    EXPECT_EQ(stage.scene->nextTick(), -1);
    EXPECT_EQ(list->GetTopIndex(), top);
    expectRestOnAWholeRow();
}

TEST_F(List, whatIsSetWithoutDrawingIsDrawnWithTheList) {
    stage.fill(*list, 20);
    stage.ui->drawItem(24, 2000);
    stage.paint();
    EXPECT_TRUE(list->SetItemICon(1, 143, 4, 2, 0));
    EXPECT_THAT(stage.paint(), IsEmpty());
    stage.ui->drawItem(24, 2000);
    EXPECT_THAT(stage.paint(), ElementsAre(view));
    EXPECT_TRUE(list->SetItemICon(1, 143, 4, 2, 0));
    stage.ui->drawItem(24, 2000);
    EXPECT_THAT(stage.paint(), IsEmpty()) << "it has that picture already";
    EXPECT_TRUE(list->SetTopIndex(7, 0, 0, 0, 0));
    EXPECT_THAT(stage.paint(), IsEmpty());
    stage.ui->drawItem(24, 2000);
    EXPECT_THAT(stage.paint(), ElementsAre(view));
    EXPECT_EQ(stage.scene->staleness(stage.pixels.data(), width * 4), "");
}

} // namespace
