// What the application puts into items, and how it becomes visible.

#include "SceneFixture.h"

using namespace zm::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Items : public testing::Test {
protected:
    Stage stage{resourceDir + "DISC.zmrc_device"};
};

TEST_F(Items, aPlainTextStaysWhenTheLanguageChanges) {
    EXPECT_TRUE(stage.ui->SetItemText(6, 2065, L"Übung 一"));
    EXPECT_TRUE(stage.scene->setLanguage("de"));
    EXPECT_EQ(stage.item(6, 2065)["text"], "Übung 一");
    EXPECT_EQ(stage.item(6, 2065)["textId"], 0);
}

TEST_F(Items, aTextIdFollowsTheLanguage) {
    EXPECT_TRUE(stage.ui->SetItemText(1, 7004, 34));
    EXPECT_EQ(stage.item(1, 7004)["text"], "No disc inserted");
    EXPECT_EQ(stage.item(1, 7004)["textId"], 34);
    EXPECT_TRUE(stage.scene->setLanguage("de"));
    EXPECT_EQ(stage.item(1, 7004)["text"], "Keine Disc eingelegt");
    EXPECT_TRUE(stage.scene->setLanguage("ar"));
    EXPECT_EQ(stage.item(1, 7004)["text"], "لا يوجد قرص");
}

TEST_F(Items, anUnknownLanguageFallsBackToEnglish) {
    EXPECT_TRUE(stage.scene->setLanguage("zh"));
    EXPECT_FALSE(stage.scene->setLanguage("xx"));
    EXPECT_EQ(stage.item(1, 7004)["text"], "Loading …");
}

TEST_F(Items, aPlainTextResetsTheTextId) {
    stage.ui->SetItemText(1, 7004, 34);
    stage.ui->SetItemText(1, 7004, L"x");
    EXPECT_EQ(stage.item(1, 7004)["textId"], 0);
}

TEST_F(Items, invalidCharactersAreReplaced) {
    const wchar_t text[] = {L'a', static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0x7FFFFFFF), L'b', 0};
    EXPECT_TRUE(stage.ui->SetItemText(6, 2065, text));
    EXPECT_EQ(stage.item(6, 2065)["text"], "a\uFFFD\uFFFDb");
}

TEST_F(Items, anIconForAllStatesReplacesThoseOfSingleStates) {
    EXPECT_TRUE(stage.ui->SetItemIcon(6, 6504, 53, 2));
    EXPECT_TRUE(stage.ui->SetItemIcon(6, 6504, 53, 3));
    EXPECT_TRUE(stage.ui->SetItemIcon(6, 6504, 54, 1));
    EXPECT_EQ(stage.item(6, 6504)["icons"], (nlohmann::json{{"1", 54}, {"2", 53}, {"3", 53}}));
    EXPECT_TRUE(stage.ui->SetItemIcon(6, 6504, 85, 4));
    EXPECT_EQ(stage.item(6, 6504)["icons"], (nlohmann::json{{"4", 85}}));
}

TEST_F(Items, iconZeroIsListed) {
    EXPECT_TRUE(stage.ui->SetItemIcon(1, 7004, 0, 4));
    EXPECT_EQ(stage.item(1, 7004)["icons"], (nlohmann::json{{"4", 0}}));
}

TEST_F(Items, aPositionIsLimitedToTheRange) {
    EXPECT_TRUE(stage.ui->SetProgressItemPos(6, 2069, 250));
    EXPECT_EQ(stage.item(6, 2069)["progress"], 100);
    EXPECT_TRUE(stage.ui->SetProgressItemPos(6, 2069, -5));
    EXPECT_EQ(stage.item(6, 2069)["progress"], 0);
    EXPECT_TRUE(stage.ui->SetProgressItemValues(6, 2069, 20, 10));
    EXPECT_EQ(stage.item(6, 2069)["progress"], 10);
    EXPECT_FALSE(stage.ui->SetProgressItemValues(6, 2069, 1, 2));
}

TEST_F(Items, callsOnMissingOrOtherItemsDoNothing) {
    const auto before = stage.scene->describe();
    CUI_BtList* list = reinterpret_cast<CUI_BtList*>(this);
    EXPECT_FALSE(stage.ui->SetItemText(6, 4711, L"x"));
    EXPECT_FALSE(stage.ui->SetItemText(99, 2065, L"x"));
    EXPECT_FALSE(stage.ui->SetItemText(6, 2065, static_cast<const wchar_t*>(nullptr)));
    EXPECT_FALSE(stage.ui->SetItemText(6, 2069, L"x"));
    EXPECT_FALSE(stage.ui->SetItemText(6, 2065, 4711));
    EXPECT_FALSE(stage.ui->SetItemIcon(6, 2069, 53, 4));
    EXPECT_FALSE(stage.ui->SetItemIcon(6, 6504, 53, 5));
    EXPECT_FALSE(stage.ui->SetItemIcon(6, 6504, 4711, 4));
    EXPECT_FALSE(stage.ui->SetItemState(6, 6504, 1));
    EXPECT_FALSE(stage.ui->SetProgressItemPos(6, 2065, 1));
    EXPECT_FALSE(stage.ui->ShowItem(6, 4711, true));
    EXPECT_FALSE(stage.ui->EnableItem(6, 4711, true));
    EXPECT_FALSE(stage.ui->drawItem(6, 4711));
    EXPECT_FALSE(stage.ui->TriggerAnimation(99, 2, 2));
    EXPECT_FALSE(stage.ui->GetItemData(6, 2065, list));
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(stage.scene->describe(), before);
}

TEST_F(Items, aStateIsListedOnceItWasSet) {
    EXPECT_EQ(stage.item(24, 503)["state"], 0);
    EXPECT_TRUE(stage.ui->SetItemState(24, 503, 3));
    EXPECT_EQ(stage.item(24, 503)["state"], 3);
}

TEST_F(Items, visibleIsTheItemsOwnWhateverItsParents) {
    EXPECT_EQ(stage.item(6, 101)["visible"], false);
    EXPECT_EQ(stage.item(6, 103)["visible"], true);
}

TEST_F(Items, drawingAChangedItemDamagesThatItemAlone) {
    stage.scene->showWindow(6, true);
    stage.paint();
    stage.ui->SetItemText(6, 2067, L"01:23");
    EXPECT_THAT(stage.paint(), IsEmpty());
    stage.ui->drawItem(6, 2067);
    EXPECT_THAT(stage.paint(), ElementsAre(stage.rect(6, 2067)));
    EXPECT_THAT(stage.paint(), IsEmpty());
}

TEST_F(Items, drawingAnUnchangedItemDamagesNothing) {
    stage.scene->showWindow(6, true);
    stage.paint();
    stage.ui->SetItemText(6, 2075, L"--/--");
    stage.ui->drawItem(6, 2075);
    EXPECT_THAT(stage.paint(), IsEmpty());
}

TEST_F(Items, drawAllMakesEveryChangeVisibleAndNoMore) {
    stage.scene->showWindow(6, true);
    stage.paint();
    stage.ui->SetItemText(6, 2067, L"01:23");
    stage.ui->SetItemText(6, 2068, L"04:56");
    stage.scene->wndMng().drawAllItem();
    EXPECT_THAT(stage.paint(), testing::UnorderedElementsAre(
                                   stage.rect(6, 2067), stage.rect(6, 2068).united(stage.rect(6, 20111))));
}

TEST_F(Items, drawingAnItemDrawsWhatBelongsToIt) {
    stage.scene->showWindow(24, true);
    stage.paint();
    stage.ui->ShowItem(24, 500, false);
    stage.ui->ShowItem(24, 501, true);
    stage.ui->drawItem(24, 5002);
    zm::Rect whole;
    for (const zm::Rect& one : stage.paint()) {
        whole = whole.united(one);
    }
    for (const int id : {500, 501, 503, 504, 505}) {
        EXPECT_EQ(whole.intersected(stage.rect(24, id)), stage.rect(24, id)) << id;
    }
    EXPECT_LT(whole.w, 200);
}

TEST_F(Items, changesOfAHiddenPageAreSeenWhenItIsShown) {
    stage.scene->showWindow(6, true);
    stage.paint();
    const auto before = stage.pixels;
    stage.ui->SetItemText(22, 7034, L"changed");
    stage.ui->drawItem(22, 7034);
    EXPECT_THAT(stage.paint(), IsEmpty());
    stage.scene->showWindow(22, true);
    EXPECT_THAT(stage.paint(), ElementsAre(zm::Rect{0, 0, width, height}));
    EXPECT_NE(stage.pixels, before);
}

TEST_F(Items, onlyOneUnstackedPageIsShownAtATime) {
    EXPECT_TRUE(stage.scene->showWindow(1, true));
    EXPECT_TRUE(stage.scene->showWindow(6, true));
    EXPECT_THAT(stage.scene->shownWindows(), ElementsAre(6));
    EXPECT_TRUE(stage.scene->showWindow(1, false));
    EXPECT_THAT(stage.scene->shownWindows(), ElementsAre(6));
    EXPECT_TRUE(stage.scene->showWindow(6, false));
    EXPECT_THAT(stage.scene->shownWindows(), IsEmpty());
    EXPECT_FALSE(stage.scene->showWindow(99, true));
}

TEST_F(Items, aPageThatReturnsNamesTheOneItReplaced) {
    EXPECT_EQ(stage.scene->replacedBy(20), 0); // not shown
    stage.scene->showWindow(24, true);
    stage.scene->showWindow(20, true);
    stage.scene->showWindow(20, true);
    EXPECT_EQ(stage.scene->replacedBy(20), 24);
    stage.scene->showWindow(6, true);
    EXPECT_EQ(stage.scene->replacedBy(6), 0); // an ordinary page
    EXPECT_EQ(stage.scene->replacedBy(20), 0);
    stage.scene->showWindow(6, false);
    stage.scene->showWindow(20, true);
    EXPECT_EQ(stage.scene->replacedBy(20), 0); // nothing was shown before it
    EXPECT_EQ(stage.scene->replacedBy(99), 0);
}

TEST_F(Items, showingAShownPageDrawsNothing) {
    stage.scene->showWindow(24, true);
    stage.paint();
    stage.ui->SetItemText(24, 8, L"12:01");
    stage.scene->showWindow(24, true);
    EXPECT_THAT(stage.paint(), IsEmpty());
}

TEST_F(Items, drawingAPageDrawsItsChangesOnly) {
    stage.scene->showWindow(24, true);
    stage.paint();
    stage.ui->SetItemText(24, 8, L"12:01");
    stage.scene->drawWindow(24);
    EXPECT_THAT(stage.paint(), ElementsAre(stage.rect(24, 8)));
}

TEST_F(Items, drawingADisabledItemDrawsWhatBelongsToIt) {
    stage.ui->ShowItem(24, 101, true);
    stage.scene->showWindow(24, true);
    stage.paint();
    stage.ui->EnableItem(24, 101, false);
    stage.ui->drawItem(24, 101);
    zm::Rect whole;
    for (const zm::Rect& one : stage.paint()) {
        whole = whole.united(one);
    }
    for (const int id : {103, 105, 119}) {
        EXPECT_EQ(whole.intersected(stage.rect(24, id)), stage.rect(24, id)) << id;
    }
}

TEST_F(Items, anEmptiedListDrawsItself) {
    stage.fill(*stage.list(24), 3);
    stage.scene->showWindow(24, true);
    stage.paint();
    stage.list(24)->DeleteAllItems();
    EXPECT_THAT(stage.paint(), ElementsAre(stage.rect(24, 2000)));
}

TEST_F(Items, descriptionOfOneWindowHoldsThatWindow) {
    const auto one = stage.scene->describe(6);
    EXPECT_EQ(one.size(), 1u);
    EXPECT_EQ(one["6"]["items"]["2069"]["kind"], "progress");
    EXPECT_EQ(one["6"]["items"]["101"]["kind"], "panel");
    EXPECT_EQ(one["6"]["items"]["6503"]["kind"], "button");
    EXPECT_TRUE(stage.scene->describe(98).empty());
    EXPECT_EQ(stage.scene->describe().size(), 9u);
}

TEST_F(Items, theNumberPadOfTheOverlayLiesAboveItsBar) {
    Stage overlay(resourceDir + "OVERLAY.zmrc_device");
    overlay.scene->showWindow(1, true);
    overlay.scene->showWindow(20, true);
    EXPECT_THAT(overlay.scene->shownWindows(), ElementsAre(1, 20));
    overlay.scene->showWindow(1, true); // nothing new: the pad stays
    EXPECT_THAT(overlay.scene->shownWindows(), ElementsAre(1, 20));
    overlay.scene->showWindow(20, false);
    EXPECT_THAT(overlay.scene->shownWindows(), ElementsAre(1));
}

TEST_F(Items, aBarThatComesUpBeginsWithoutTheNumberPad) {
    Stage overlay(resourceDir + "OVERLAY.zmrc_device");
    overlay.scene->showWindow(20, true);
    EXPECT_THAT(overlay.scene->droppedBy(4), ElementsAre(20));
    overlay.scene->showWindow(4, true);
    EXPECT_THAT(overlay.scene->shownWindows(), ElementsAre(4));
    EXPECT_THAT(overlay.scene->droppedBy(4), IsEmpty());
    EXPECT_THAT(overlay.scene->droppedBy(20), IsEmpty());
    EXPECT_THAT(overlay.scene->droppedBy(2), IsEmpty()); // a page is replaced, not dropped
}

} // namespace
