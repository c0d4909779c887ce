// Every fault of a resource is reported with file, line and what was expected.

#include "SceneFixture.h"

#include "platform/linux/toolkit/Resource.h"

using zm::test::TemporaryFolder;

namespace {

/** A correct resource; each test case replaces one piece of it. */
const std::string good = R"({
    "languages": ["en", "de"],
    "themes": {"night": {"page": "#000000", "text": "#FFFFFF"}, "day": {"page": "#FFFFFF", "text": "#000000"}},
    "styles": {
        "plain": {"textSize": 24, "color": "text"},
        "button": {"base": "plain", "pressed": {"fill": "page"}}
    },
    "glyphs": {"play": "F40A"},
    "pictures": {"7": "play", "8": [{"glyph": "play", "percent": 50, "at": [0, 10]}, {"text": "A-B"}]},
    "texts": {"33": {"en": "Loading", "de": "Lädt"}},
    "parts": {
        "head": [
            {"id": 3, "kind": "button", "rect": [0, 0, 80, 60], "style": "button", "icon": 7}
        ]
    },
    "windows": [
        {
            "id": 1, "background": "page",
            "items": [
                {"use": "head"},
                // a comment
                {"id": 8, "kind": "text", "rect": [100, 0, 80, 60], "style": "plain", "text": 33}
            ]
        }
    ]
})";

struct Fault {
    const char* name;
    const char* piece; ///< of the correct resource
    const char* instead;
    const char* message; ///< behind the file name
};

const Fault faults[] = {
    {"UnknownSection", R"("glyphs": {"play": "F40A"},)", R"("glyfs": {},)",
     ":8: found the name \"glyfs\", expected one of include, languages, themes, styles, motion, glyphs, "
     "pictures, "
     "texts, parts, "
     "windows"},
    {"MissingSection", R"("languages": ["en", "de"],)", "",
     ":1: found no section \"languages\", expected it here or in an included file"},
    {"EnglishNotFirst", R"(["en", "de"])", R"(["de", "en"])",
     ":2: found languages without \"en\" in front, expected [\"en\", ...]"},
    {"ColourText", R"("page": "#000000")", R"("page": "black")",
     ":3: found \"black\", expected a colour \"#RRGGBB\" or \"#RRGGBBAA\""},
    {"ThemeWithoutColour", R"("day": {"page": "#FFFFFF", )", R"("day": {)",
     ":3: found no colour \"page\", expected every colour of the theme \"night\""},
    {"NoNightTheme", R"("night": {)", R"("dusk": {)",
     ":3: found themes without \"night\", expected an object of themes, \"night\" among them"},
    {"StyleMember", R"("textSize": 24,)", R"("textsize": 24,)",
     ":5: found the name \"textsize\", expected one of base, "},
    {"StyleSize", R"("textSize": 24,)", R"("textSize": 2.5,)",
     ":5: found 2.5, expected a size, a whole number from 8 to 200"},
    {"StyleSizeTooSmall", R"("textSize": 24,)", R"("textSize": 7,)",
     ":5: found 7, expected a size, a whole number from 8 to 200"},
    {"StyleSizeTooLarge", R"("textSize": 24,)", R"("textSize": 201,)",
     ":5: found 201, expected a size, a whole number from 8 to 200"},
    {"LookMember", R"("pressed": {"fill": "page"})", R"("pressed": {"fil": "page"})",
     ":6: found the name \"fil\", expected one of color, iconColor, fill, "},
    {"MotionMember", R"("glyphs": {"play": "F40A"},)",
     R"("glyphs": {"play": "F40A"}, "motion": {"pages": 100},)",
     ":8: found the name \"pages\", expected one of page, popup, overlay, press"},
    {"MotionTime", R"("glyphs": {"play": "F40A"},)", R"("glyphs": {"play": "F40A"}, "motion": {"page": 0},)",
     ":8: found 0, expected a time in milliseconds, a whole number from 1 to 10000"},
    {"StyleColour", R"("color": "text"})", R"("color": "blue"})",
     ":5: found \"blue\", expected the name of a colour of the themes, or \"none\""},
    {"StyleColourMisspelt", R"("color": "text"})", R"("color": "txt"})",
     ":5: found \"txt\", expected the name of a colour of the themes, or \"none\" (did you mean \"text\"?)"},
    {"StyleRawColour", R"("color": "text"})", R"("color": "#FF0000"})",
     ":5: found \"#FF0000\", expected the name of a colour; what colour it is stands in the themes only"},
    {"WindowRawColour", R"("background": "page")", R"("background": "#FF0000")",
     ":18: found \"#FF0000\", expected the name of a colour; what colour it is stands in the themes only"},
    {"WindowTheme", R"("background": "page")", R"("theme": "dusk")",
     ":18: found \"dusk\", expected the name of a theme from the section \"themes\""},
    {"WhenTextWithoutParent", R"("text": 33})", R"("text": 33, "whenText": [33]})",
     ":22: found \"whenText\" without \"in\", expected the item whose text is meant"},
    {"WhenTextUnknown", R"("text": 33})", R"("in": 3, "whenText": [34]})",
     ":22: found 34, expected the id of a text from the section \"texts\""},
    {"WhileEmptyOfNoList", R"("text": 33})", R"("in": 3, "whileEmpty": true})",
     ":22: found \"whileEmpty\" for what is not \"in\" a list, expected the list whose rows are meant"},
    {"ValueAlone", R"("icon": 7})", R"("icon": 7, "value": ["a", "b", "c"]})",
     ":13: found \"value\" alone, expected \"value\" together with \"pictureOfValue\""},
    {"PictureOfValueUnknown", R"("icon": 7})", R"("value": ["a", "b", "c"], "pictureOfValue": {"1": 9}})",
     ":13: found 9, expected the id of a picture from the section \"pictures\""},
    {"ElapsedAlone", R"("text": 33})", R"("elapsed": 8})",
     ":22: found \"elapsed\" alone or not for a text, expected a text with \"total\" and \"elapsed\""},
    {"TotalOfNothing", R"("text": 33})", R"("total": 9, "elapsed": 8})",
     ":22: found 9, expected the id of a text of this window"},
    {"StyleBase", R"("base": "plain")", R"("base": "planes")",
     ":6: found \"planes\", expected the name of a style that stands above"},
    {"GlyphName", R"("7": "play")", R"("7": "plya")",
     ":9: found \"plya\", expected the name of a glyph from the section \"glyphs\" (did you mean \"play\"?)"},
    {"GlyphCode", R"("F40A")", R"("40A")", ":8: found \"40A\", expected a code point such as \"F40A\""},
    {"PictureId", R"("7": "play")", R"("seven": "play")",
     ":9: found the name \"seven\", expected a picture id, a number from 0 to 99999 in quotes"},
    {"PictureLayer", R"({"text": "A-B"})", R"({"percent": 40})",
     ":9: found a layer with both or none of \"glyph\" and \"text\", expected one of them"},
    {"TextWithoutEnglish", R"("en": "Loading", )", "", ":10: found no \"en\", expected it in this object"},
    {"TextLanguage", R"("de": "Lädt")", R"("fr": "Charge")",
     ":10: found the name \"fr\", expected one of en, de"},
    {"ItemKind", R"("kind": "text")", R"("kind": "txt")",
     ":22: found \"txt\", expected one of text, icon, button, progress, animation, list, panel"},
    {"ItemWithoutStyle", R"(, "style": "plain")", "", ":22: found no \"style\", expected it in this object"},
    {"ItemStyle", R"("style": "plain", "text")", R"("style": "fancy", "text")",
     ":22: found \"fancy\", expected the name of a style that stands above"},
    {"ItemRect", R"([100, 0, 80, 60])", R"([100, 0, 80])",
     ":22: found a list of 3, expected a rectangle [x, y, width, height]"},
    {"ItemRectOutside", R"([100, 0, 80, 60])", R"([740, 0, 80, 60])",
     ":22: found the rectangle [740, 0, 80, 60], expected one inside 800 x 480 pixels"},
    {"ItemRectEmpty", R"([100, 0, 80, 60])", R"([100, 0, 80, 0])",
     ":22: found an empty rectangle, expected width and height above 0"},
    {"ItemText", R"("text": 33})", R"("text": 34})",
     ":22: found 34, expected the id of a text from the section \"texts\""},
    {"ItemPicture", R"("icon": 7})", R"("icon": 9})",
     ":13: found 9, expected the id of a picture from the section \"pictures\""},
    {"ItemTwice", R"("id": 8, "kind")", R"("id": 3, "kind")",
     ":22: found item 3 a second time, expected it once in window 1"},
    {"ItemParent", R"("id": 8, "kind")", R"("id": 8, "in": 9, "kind")",
     ":22: found 9, expected the id of an item that stands above in this window"},
    {"ItemMember", R"("text": 33})", R"("text": 33, "tooltip": "x"})",
     ":22: found the name \"tooltip\", expected one of id, "},
    {"ItemBound", R"("text": 33})", R"("bound": ["a/b", "c"]})",
     ":22: found a list of 2, expected an object's name, an attribute and a member"},
    {"ItemBoundToNothing", R"("text": 33})", R"("bound": ["a/b", "", "c"]})",
     ":22: found \"\", expected an object's name, an attribute and a member"},
    {"BoundPanel", R"("kind": "text", "rect": [100, 0, 80, 60], "style": "plain", "text": 33})",
     R"("kind": "panel", "rect": [100, 0, 80, 60], "style": "plain", "bound": ["a/b", "c", "d"]})",
     ":22: found \"bound\" for a panel, expected it for a text, icon or button only"},
    {"TintOfNothing", R"("background": "page")", R"("tint": ["a/b", "c", "d"])",
     ":18: found \"tint\" without \"background\", expected a background that takes it on"},
    {"PartName", R"({"use": "head"})", R"({"use": "heads"})",
     ":20: found \"heads\", expected the name of a part from the section \"parts\" (did you mean \"head\"?)"},
    {"PartMember", R"({"use": "head"})", R"({"use": "head", "offset": 3})",
     ":20: found the name \"offset\", expected one of use, at, in, without, only"},
    {"PartUsesItself", R"({"id": 3, "kind": "button", "rect": [0, 0, 80, 60], "style": "button", "icon": 7})",
     R"({"use": "head"})", ":13: found \"head\", expected parts that do not use themselves"},
    {"ChangeOfNothing", R"({"use": "head"})", R"({"change": 4, "visible": false})",
     ":20: found 4, expected the id of an item that stands above in this list"},
    {"WindowBackground", R"("background": "page")", R"("background": "paper")",
     ":18: found \"paper\", expected the name of a colour of the themes, or \"none\""},
    {"WindowWithoutId", R"("id": 1, )", "", ":17: found no \"id\", expected it in this object"},
    {"NameTwice", R"("id": 1, )", R"("id": 1, "id": 2, )",
     ":18: found the name \"id\" twice in one object, expected it once"},
    {"LanguageTwice", R"(["en", "de"])", R"(["en", "de", "en"])",
     ":2: found \"en\", expected a language code such as \"de\", each one once"},
    {"LanguageEmpty", R"(["en", "de"])", R"(["en", ""])",
     ":2: found \"\", expected a language code such as \"de\", each one once"},
    {"ThemeWithOtherColour", R"("day": {)", R"("day": {"texts": "#123456", )",
     ":3: found the colour \"texts\", expected the names of the theme \"night\" only (did you mean "
     "\"text\"?)"},
    {"ColourNamedNone", R"("page": "#000000")", R"("none": "#000000")",
     ":3: found a colour \"none\", expected another name: that one stands for no colour"},
    {"ThemeIsNoObject", R"({"page": "#FFFFFF", "text": "#000000"})", R"("white")",
     ":3: found \"white\", expected an object of colours"},
    {"GlyphsAreNoObject", R"("glyphs": {"play": "F40A"})", R"("glyphs": ["play"])",
     ":8: found a list of 1, expected an object of glyphs"},
    {"PictureWithoutLayers", R"("7": "play")", R"("7": [])",
     ":9: found a picture without layers, expected at least one"},
    {"PartThatNobodyUses", R"("parts": {)",
     R"("parts": {"foot": [{"id": 5, "kind": "buton", "rect": [0, 0, 9, 9], "style": "plain"}],)",
     ":11: found \"buton\", expected one of text, icon, button, "},
    {"PartWithoutTheItemLeftOut", R"({"use": "head"})", R"({"use": "head", "without": [4]})",
     ":20: found 4, expected the id of an item of the part \"head\""},
    {"PartWithoutTheItemChosen", R"({"use": "head"})", R"({"use": "head", "only": [3, 4]})",
     ":20: found 4, expected the id of an item of the part \"head\""},
    {"PartMovedOutOfTheScreen", R"({"use": "head"})", R"({"use": "head", "at": [730, 0]})",
     ":13: found the rectangle [730, 0, 80, 60], expected one inside 800 x 480 pixels"},
    {"TextOfAList", R"("kind": "text")", R"("kind": "list")",
     ":22: found \"text\" for a list, expected it for a text, icon or button only"},
    {"PictureOfAPanel", R"("kind": "button")", R"("kind": "panel")",
     ":13: found \"icon\" for a panel, expected it for a text, icon or button only"},
    {"MemberMisspelt", R"("text": 33})", R"("txt": 33})",
     ":22: found the name \"txt\", expected one of id, "},
    {"WindowTwice", R"("windows": [)", R"("windows": [{"id": 1, "items": []},)",
     ":18: found window 1 a second time, expected it once"},
    {"MissingInclude", R"("languages": ["en", "de"],)",
     R"("languages": ["en", "de"], "include": ["none.zmrc"],)", ":2: found a file that cannot be read: "},
};

class ResourceFaults : public testing::TestWithParam<Fault> {};

TEST_P(ResourceFaults, isReportedWithFileLineAndRemedy) {
    const TemporaryFolder folder;
    std::string text = good;
    const size_t at = text.find(GetParam().piece);
    ASSERT_NE(at, std::string::npos);
    text.replace(at, std::string(GetParam().piece).size(), GetParam().instead);
    const std::string file = folder.write("broken.zmrc", text);
    const auto result = zm::loadResource(file, 800, 480);
    ASSERT_FALSE(result);
    EXPECT_THAT(result.error(), testing::StartsWith(file + GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(All, ResourceFaults, testing::ValuesIn(faults),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Resource, theCorrectOneLoads) {
    const TemporaryFolder folder;
    const auto result = zm::loadResource(folder.write("good.zmrc", good), 800, 480);
    ASSERT_TRUE(result) << result.error();
    EXPECT_EQ(result->windows.size(), 1u);
    EXPECT_EQ(result->text(33, 1), "Lädt");
}

TEST(Resource, aFileThatDoesNotExistIsNamed) {
    const auto result = zm::loadResource("/nowhere/DISC.zmrc_device", 800, 480);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), "/nowhere/DISC.zmrc_device: cannot be read, expected a resource file");
}

TEST(Resource, faultsInIncludedFilesNameThatFile) {
    const TemporaryFolder folder;
    const std::string inner = folder.write("inner.zmrc", "{\n\n  \"styles\": 5\n}");
    const std::string outer =
        folder.write("outer.zmrc", "{\"include\": [\"inner.zmrc\"], \"languages\": [\"en\"],"
                                   "\"themes\": {\"night\": {}}, \"windows\": []}");
    const auto result = zm::loadResource(outer, 800, 480);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), inner + ":3: found 5, expected an object of styles");
}

TEST(Resource, aFileIncludedTwiceIsAFault) {
    const TemporaryFolder folder;
    folder.write("inner.zmrc", "{}");
    const std::string outer =
        folder.write("outer.zmrc", "{\n\"include\": [\"inner.zmrc\",\n\"inner.zmrc\"]}");
    const auto result = zm::loadResource(outer, 800, 480);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), outer + ":3: found \"" + folder.path() +
                                  "/inner.zmrc\" a second time, expected each file to be included once");
}

TEST(Resource, partsThatGrowWithoutEndAreRefused) {
    const TemporaryFolder folder;
    std::string parts = "\"p8\": []";
    for (int level = 7; level >= 0; --level) {
        std::string uses;
        for (int i = 0; i < 20; ++i) {
            uses += std::string(i ? "," : "") + "{\"use\": \"p" + std::to_string(level + 1) + "\"}";
        }
        parts += ",\"p" + std::to_string(level) + "\": [" + uses + "]";
    }
    std::string text = good;
    text.replace(text.find("\"head\": ["), 1, parts + ", \"");
    text.replace(text.find("{\"use\": \"head\"}"), 15, "{\"use\": \"p0\"}");
    const auto result = zm::loadResource(folder.write("wide.zmrc", text), 800, 480);
    ASSERT_FALSE(result);
    EXPECT_THAT(result.error(), testing::HasSubstr("expected parts that do not use themselves"));
}

TEST(Resource, partsAreMovedChangedAndChosenFrom) {
    const TemporaryFolder folder;
    std::string text = good;
    text.replace(text.find("{\"use\": \"head\"}"), 15,
                 R"({"use": "head", "at": [10, 20], "in": 9},)"
                 R"({"change": 3, "kind": "icon", "visible": false}, {"use": "head", "without": [3]})");
    text.replace(text.find("\"items\": ["), 10,
                 R"("items": [{"id": 9, "kind": "panel", "rect": [0, 0, 99, 99], "style": "plain"},)");
    const auto result = zm::loadResource(folder.write("parts.zmrc", text), 800, 480);
    ASSERT_TRUE(result) << result.error();
    const zm::ItemSpec& item = result->windows[0].items[1];
    EXPECT_EQ(item.rect, (zm::Rect{10, 20, 80, 60}));
    EXPECT_EQ(item.kind, zm::ItemKind::Icon);
    EXPECT_EQ(item.parent, 9);
    EXPECT_FALSE(item.visible);
    EXPECT_EQ(result->windows[0].items.size(), 3u);
}

TEST(Resource, theFirstItemOfAPartMayHaveTheSmallestNumber) {
    const TemporaryFolder folder;
    std::string text = good;
    text.replace(text.find(R"({"id": 3,)"), 9, R"({"id": 1,)");
    text.replace(text.find("{\"use\": \"head\"}"), 15, R"({"use": "head", "without": [1]})");
    const auto result = zm::loadResource(folder.write("first.zmrc", text), 800, 480);
    ASSERT_TRUE(result) << result.error();
    EXPECT_EQ(result->windows[0].items.size(), 1u);
}

TEST(Resource, timesOfItsOwnTakeThePlaceOfTheUsualOnes) {
    const TemporaryFolder folder;
    std::string text = good;
    text.replace(text.find("\"glyphs\""), 0, R"("motion": {"page": 150, "press": 90}, )");
    const auto result = zm::loadResource(folder.write("motion.zmrc", text), 800, 480);
    ASSERT_TRUE(result) << result.error();
    EXPECT_EQ(result->motion.page, 150);
    EXPECT_EQ(result->motion.press, 90);
    EXPECT_EQ(result->motion.popup, zm::MotionTimes().popup);
}

TEST(Scene, withoutFontsSaysSo) {
    const TemporaryFolder folder;
    zm::test::Recorder recorder;
    const auto scene =
        zm::Scene::load(zm::test::resourceDir + "DISC.zmrc_device", folder.path(), 800, 480, recorder);
    ASSERT_FALSE(scene);
    EXPECT_EQ(scene.error(), folder.path() + ": holds no fonts, expected at least NotoSans-Regular.ttf");
}

} // namespace
