// What stands out on a page, what belongs together, and how much of a film is hidden. Each rule is also shown to find
// what breaks it.

#include "LayoutRules.h"
#include "SceneFixture.h"

#include <sstream>

using namespace zm::test;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/** The share of the screen's light that a page of the overlay takes away. */
double covered(const std::string& file, int window) {
    Stage stage(file);
    stage.scene->showWindow(window, true);
    stage.paint();
    double sum = 0;
    for (size_t alpha = 3; alpha < stage.pixels.size(); alpha += 4) {
        sum += stage.pixels[alpha];
    }
    return sum / 255 / (width * height);
}

class Layout : public DiscResource {};

TEST_F(Layout, playIsThePrimaryAction) {
    EXPECT_THAT(primaryActions(resource), IsEmpty());
    EXPECT_THAT(primaryActions(readResource("OVERLAY")), IsEmpty());
}

TEST_F(Layout, aKeyAsLargeAsPlayIsFound) {
    item(6, 6521).rect.w = 120;
    EXPECT_THAT(primaryActions(resource), Contains("window 6 item 6522: not larger than 6521"));
}

TEST_F(Layout, aPrimaryActionWithoutAFaceIsFound) {
    styleOf(6, 6522).looks[0].fill = zm::noColor;
    EXPECT_THAT(primaryActions(resource), Contains("window 6 item 6522: not filled"));
}

TEST_F(Layout, aSecondFilledKeyIsFound) {
    styleOf(6, 6504).looks[0].fill = 0;
    EXPECT_THAT(primaryActions(resource), Contains("window 6 item 6504: filled beside the primary action"));
}

TEST_F(Layout, groupsStandApart) {
    EXPECT_THAT(groupDistances(resource), IsEmpty());
    item(6, 6503).rect.x += 1;
    EXPECT_THAT(groupDistances(resource), Contains("window 6 item 6521: too near to the group of 6503"));
}

TEST_F(Layout, rowsAreSixtyPixelsHighEverywhere) {
    EXPECT_THAT(rowHeights(resource), IsEmpty());
    styleOf(25, 2000).rowGap = 1;
    EXPECT_THAT(rowHeights(resource), Contains("window 25 item 2000: rows of 59"));
}

TEST_F(Layout, messagesStandAtOneHeight) {
    EXPECT_THAT(messageHeights(resource), IsEmpty());
    item(22, 7034).rect.y += 1;
    EXPECT_THAT(messageHeights(resource), Contains("window 22 item 7034: a message at another height"));
}

TEST_F(Layout, everyTextIsOnAPage) {
    EXPECT_THAT(unusedTexts({resource, readResource("OVERLAY"), readResource("OTHERS")}), IsEmpty());
    resource.texts[20999] = {"Nobody reads this", "", "", ""};
    EXPECT_THAT(unusedTexts({resource}), Contains("text 20999 is on no page"));
}

TEST_F(Layout, fadesTakeAsLongAsTheyMay) {
    for (const char* name : {"DISC", "OVERLAY"}) {
        EXPECT_THAT(motionTimes(readResource(name)), IsEmpty());
    }
    resource.motion = {.page = 260, .popup = 250, .overlay = 150, .press = 140};
    EXPECT_THAT(motionTimes(resource), testing::ElementsAre("motion page: 260 ms", "motion press: 140 ms"));
}

/** What of 35 % the bars of a film or photo exceed. */
Findings hiddenFilm(const std::string& folder) {
    Findings findings;
    for (const int window : {1, 2, 4, 11}) {
        const double share = covered(folder + "OVERLAY.zmrc_device", window);
        testing::Test::RecordProperty("window" + std::to_string(window), std::to_string(share));
        if (share > 0.35) {
            findings.push_back("window " + std::to_string(window) + ": too much of the film is hidden");
        }
    }
    return findings;
}

TEST_F(Layout, noMoreThanAThirdOfAFilmIsHidden) {
    EXPECT_THAT(hiddenFilm(resourceDir), IsEmpty());
}

TEST_F(Layout, aVeilThatHidesTooMuchOfAFilmIsFound) {
    const TemporaryFolder changed;
    const std::string pages = changed.path() + "/pages/";
    std::filesystem::copy(resourceDir, pages, std::filesystem::copy_options::recursive);
    const std::string theme = pages + "shared/themes/picture.zmrc";
    std::stringstream content;
    content << std::ifstream(theme).rdbuf();
    std::string text = content.str();
    const std::string veil = "\"veil\": \"#05080CA0\"";
    ASSERT_NE(text.find(veil), std::string::npos);
    std::ofstream(theme) << text.replace(text.find(veil), veil.size(), "\"veil\": \"#05080C\"");
    EXPECT_THAT(hiddenFilm(pages), Contains("window 1: too much of the film is hidden"));
}

} // namespace
