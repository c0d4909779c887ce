// A driver can read and hit what the resource files lay out: sizes, distances, contrast, whole words. Each
// rule is also shown to find what breaks it.

#include "LegibilityRules.h"
#include "SceneFixture.h"

using namespace zm::test;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

struct File {
    const char* name;
};

class Legibility : public testing::TestWithParam<File> {
protected:
    zm::Resource resource = readResource(GetParam().name);
};

TEST_P(Legibility, touchTargetsAreLargeEnough) {
    EXPECT_THAT(touchTargets(resource), IsEmpty());
}

TEST_P(Legibility, controlsStandEightPixelsApart) {
    EXPECT_THAT(distances(resource), IsEmpty());
}

TEST_P(Legibility, textsAreLargeEnough) {
    EXPECT_THAT(textSizes(resource), IsEmpty());
}

TEST_P(Legibility, coloursContrastInBothThemesAndAllStates) {
    EXPECT_THAT(contrasts(resource), IsEmpty());
}

TEST_P(Legibility, noTextIsCutInAnyLanguage) {
    auto fonts = zm::FontBook::open(fontDir);
    ASSERT_TRUE(fonts) << fonts.error();
    EXPECT_THAT(cutTexts(resource, **fonts), IsEmpty());
}

TEST_P(Legibility, tallLettersOfAnyScriptStayInTheirPlace) {
    auto fonts = zm::FontBook::open(fontDir);
    ASSERT_TRUE(fonts) << fonts.error();
    EXPECT_THAT(highTexts(resource, **fonts), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Files, Legibility, testing::Values(File{"DISC"}, File{"OVERLAY"}, File{"OTHERS"}),
                         [](const auto& test) { return std::string(test.param.name); });

/** A file with one thing spoilt, and the rule that has to find it. */
class SpoiltFile : public DiscResource {
protected:
    zm::Color& color(const std::string& theme, const std::string& name) {
        const auto at = std::find(resource.palette.begin(), resource.palette.end(), name);
        return resource.themes.at(theme)[static_cast<size_t>(at - resource.palette.begin())];
    }
    Findings cut() {
        auto fonts = zm::FontBook::open(fontDir);
        return cutTexts(resource, **fonts);
    }
};

TEST_F(SpoiltFile, aKeyOfTheHeadThatIsTooLow) {
    item(24, 3).rect.h = 59;
    EXPECT_THAT(touchTargets(resource), Contains(HasSubstr("window 24 item 3:")));
}

TEST_F(SpoiltFile, aKeyBelow76PixelsWhereThereIsRoom) {
    item(6, 6521).rect.w = 75;
    EXPECT_THAT(touchTargets(resource), Contains(HasSubstr("window 6 item 6521:")));
}

TEST_F(SpoiltFile, rowsThatAreTooLow) {
    styleOf(25, 2000).rows = 6;
    EXPECT_THAT(touchTargets(resource), Contains(HasSubstr("window 25 item 2000:")));
}

TEST_F(SpoiltFile, keysThatStandTooClose) {
    item(6, 6521).rect.x += 5;
    EXPECT_THAT(distances(resource), Contains(HasSubstr("window 6 item 6521: too near to 6522")));
}

TEST_F(SpoiltFile, aListThatReachesTheKeysBelow) {
    styleOf(24, 2000).rowGap = 7;
    EXPECT_THAT(distances(resource), Contains(HasSubstr("window 24 item 2000: too near to 2071")));
}

TEST_F(SpoiltFile, tilesOfThePopupThatStandTooClose) {
    item(6, 103).rect.w += 1;
    EXPECT_THAT(distances(resource), Contains(HasSubstr("window 6 item 103: too near to 105")));
}

TEST_F(SpoiltFile, anItemBesideTheScreen) {
    item(6, 6525).rect.x = 713;
    EXPECT_THAT(distances(resource), Contains("window 6 item 6525: not on the screen"));
}

TEST_F(SpoiltFile, textsThatAreTooSmall) {
    styleOf(6, 2063).textSize = 23;
    styleOf(6, 2065).textSize = 31;
    styleOf(6, 11).textSize = 19;
    const Findings found = textSizes(resource);
    EXPECT_THAT(found, Contains(HasSubstr("window 6 item 2063: text of 23")));
    EXPECT_THAT(found, Contains(HasSubstr("window 6 item 2065: text of 31")));
    EXPECT_THAT(found, Contains(HasSubstr("window 6 item 11: text of 19")));
}

TEST_F(SpoiltFile, aTextThatIsTooPaleInOneTheme) {
    color("day", "quiet") = color("day", "outline");
    const Findings found = contrasts(resource);
    EXPECT_THAT(found, Contains(HasSubstr("window 6 item 2063: day normal text contrasts")));
    EXPECT_THAT(found, testing::Each(testing::Not(HasSubstr("night"))));
}

TEST_F(SpoiltFile, aDisabledKeyThatCannotBeRead) {
    color("night", "dim") = color("night", "outline");
    EXPECT_THAT(contrasts(resource),
                Contains(HasSubstr("window 20 item 511: night disabled text contrasts")));
}

TEST_F(SpoiltFile, aBorderThatIsNotSeen) {
    color("night", "outline") = color("night", "pressed");
    const Findings found = contrasts(resource);
    EXPECT_THAT(found, Contains(HasSubstr("window 24 item 2071: night normal border contrasts")));
    EXPECT_THAT(found, Contains(HasSubstr("window 6 item 2069: night normal rest contrasts")));
}

TEST_F(SpoiltFile, anAccentThatIsNotSeen) {
    color("day", "accent") = color("day", "chosen");
    EXPECT_THAT(contrasts(resource), Contains(HasSubstr("window 6 item 6522: day normal picture contrasts")));
}

TEST_F(SpoiltFile, aModeThatIsOnButNotSeen) {
    resource.pictures.at(165).layers.front().color = static_cast<int>(
        std::find(resource.palette.begin(), resource.palette.end(), "page") - resource.palette.begin());
    EXPECT_THAT(contrasts(resource), Contains(HasSubstr("window 6 item 6503: night layer contrasts 1.0")));
}

TEST_F(SpoiltFile, aTextOnTheBarePicture) {
    resource = readResource("OVERLAY");
    styleOf(1, 20201).looks[0].fill = zm::noColor; // the veil of the bars
    EXPECT_THAT(contrasts(resource), Contains("window 1 item 2067: picture normal text without a ground"));
}

TEST_F(SpoiltFile, aVeilThatIsTooThin) {
    resource = readResource("OVERLAY");
    color("picture", "veil").alpha = 0.5;
    EXPECT_THAT(contrasts(resource),
                Contains(HasSubstr("window 2 item 2067: picture normal text contrasts")));
}

TEST_F(SpoiltFile, aTextWhereTheVeilFades) {
    resource = readResource("OVERLAY");
    item(2, 2067).rect.y -= 5;
    EXPECT_THAT(contrasts(resource), Contains("window 2 item 2067: picture normal text without a ground"));
}

TEST_F(SpoiltFile, aTimeUnderTheFingerThatCannotBeRead) {
    color("night", "onAccent") = color("night", "text");
    EXPECT_THAT(contrasts(resource),
                Contains(HasSubstr("window 6 item 2069: night normal time under the finger contrasts")));
}

TEST_F(SpoiltFile, aWordThatIsTooLongInOneLanguage) {
    resource.texts.at(20014)[1] = "Verzeichnisse";
    EXPECT_THAT(cut(), Contains(HasSubstr("window 24 item 506: Verzeichnisse")));
}

TEST_F(SpoiltFile, anExplanationThatNeedsAThirdLine) {
    resource.texts.at(20021)[0] += " Until then nothing is seen here, and that goes on for quite a while.";
    EXPECT_THAT(cut(), Contains(HasSubstr("window 10 item 20122: ")));
}

TEST_F(SpoiltFile, aTimeThatDoesNotFit) {
    item(6, 2067).rect.w = 90;
    EXPECT_THAT(cut(), Contains(HasSubstr("window 6 item 2067: 88:88:88")));
}

TEST_F(SpoiltFile, aTextThatIsHigherThanItsPlace) {
    item(6, 2075).rect.h = 12;
    EXPECT_THAT(cut(), Contains(HasSubstr("window 6 item 2075: 65535/65535 leaves its place by")));
}

TEST_F(SpoiltFile, namesThatAreHigherThanTheirPlace) {
    auto fonts = zm::FontBook::open(fontDir);
    ASSERT_TRUE(fonts) << fonts.error();
    item(6, 2061).rect.h = 30;
    styleOf(24, 2000).rows = 9;
    const Findings found = highTexts(resource, **fonts);
    EXPECT_THAT(found, Contains(HasSubstr("window 6 item 2061: ")));
    EXPECT_THAT(found, Contains(HasSubstr("window 24 item 2000: ")));
}

TEST_F(SpoiltFile, aLetterWithoutAFont) {
    resource.texts.at(20014)[0] = "\U00012345";
    EXPECT_THAT(cut(), Contains(HasSubstr("has letters without a font")));
}

} // namespace
