// Every page and overlay window, rendered by the real views and composed as the driver sees it, against the
// reference pictures. docs/pictures.md says how to look at changes and how to renew them.

#include "BuildPaths.h"
#include "platform/linux/toolkit/Resource.h"
#include "tests/pictures/Folders.h"
#include "tests/pictures/Picture.h"
#include "tests/pictures/Table.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>

namespace zm::test {

namespace {

std::vector<PictureRow> allRows() {
    std::vector<PictureRow> all(pageRows().begin(), pageRows().end());
    all.insert(all.end(), overlayRows().begin(), overlayRows().end());
    return all;
}

struct Variant {
    std::string language;
    std::string theme;
    ScreenSize screen = {};
    std::string fileName(const PictureRow& row) const {
        const std::string size = screen == ScreenSize() ? "" : screen.text() + ".";
        return std::string(row.name) + "." + size + theme + "." + language + ".png";
    }
};

/** In an order in which each differs from the one before by one switch. */
std::vector<Variant> variants(const PictureRow& row) {
    std::vector<Variant> all = {{"en", "day"}, {"en", "night"}, {"ar", "day"}, {"ar", "night"}};
    if (row.also) {
        all.push_back({row.also, "night"});
    }
    if (row.contrast) {
        all.push_back({"en", "contrast"});
    }
    return all;
}

/** On screens larger than the usual one: enough to see that pages are laid out for it. */
struct LargerRow {
    ScreenSize screen;
    std::string name;
    std::vector<Variant> variants() const { return {{"en", "night", screen}, {"ar", "day", screen}}; }
    PictureRow row() const {
        const auto all = allRows();
        return *std::ranges::find(all, name, &PictureRow::name);
    }
};

void PrintTo(const LargerRow& larger, std::ostream* stream) {
    *stream << larger.name << " on " << larger.screen.text();
}

std::vector<LargerRow> largerRows() {
    std::vector<LargerRow> all;
    for (const ScreenSize screen : {ScreenSize{1024, 600}, ScreenSize{1280, 720}}) {
        for (const char* name : {"music-cover", "list", "dvd"}) {
            all.push_back({screen, name});
        }
    }
    return all;
}

bool renewing() {
    const char* wanted = std::getenv("ZM_RENEW_PICTURES");
    return wanted && std::string(wanted) == "1";
}

/** Compares with the reference, or takes the picture as the new one if that is asked for. */
void check(const std::string& name, const std::optional<Image>& reference, const Image& picture) {
    const Difference difference = reference ? compare(*reference, picture) : Difference{};
    const std::string present = changes + name;
    const std::string shown = differences + name;
    std::filesystem::remove(present);
    std::filesystem::remove(shown);
    if (reference && difference.none()) {
        return;
    }
    std::filesystem::create_directories(changes);
    std::filesystem::create_directories(differences);
    ASSERT_TRUE(writePng(present, picture));
    if (reference && difference.sameSize) {
        ASSERT_TRUE(writePng(shown, differencePicture(*reference, picture)));
    }
    if (renewing()) {
        std::filesystem::create_directories(references);
        ASSERT_TRUE(writePng(references + name, picture));
        return;
    }
    ADD_FAILURE() << name << ": " << (reference ? difference.text() : "there is no reference picture")
                  << "\nthe picture as it is now: " << present;
}

class Pictures : public testing::TestWithParam<PictureRow> {};
class LargerPictures : public testing::TestWithParam<LargerRow> {};

void compareAll(const PictureRow& row, ScreenSize screen, const std::vector<Variant>& wanted) {
    Stage stage(screen);
    row.steps(stage);
    ASSERT_EQ(stage.unit.main.window(), row.window);
    ASSERT_EQ(stage.unit.osd.visible(), row.overlay != 0);
    if (row.overlay) {
        ASSERT_EQ(stage.unit.osd.window(), row.overlay);
    }
    for (const Variant& variant : wanted) {
        stage.unit.act({"theme", variant.theme});
        stage.unit.language(variant.language);
        const std::string name = variant.fileName(row);
        check(name, readPng(references + name), stage.unit.picture());
    }
}

} // namespace

TEST_P(Pictures, AreAsTheirReferences) {
    compareAll(GetParam(), {}, variants(GetParam()));
}

TEST_P(LargerPictures, AreAsTheirReferences) {
    compareAll(GetParam().row(), GetParam().screen, GetParam().variants());
}

INSTANTIATE_TEST_SUITE_P(, LargerPictures, testing::ValuesIn(largerRows()), [](const auto& test) {
    std::string name = test.param.name + "_" + test.param.screen.text();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

INSTANTIATE_TEST_SUITE_P(, Pictures, testing::ValuesIn(allRows()), [](const auto& test) {
    std::string name = test.param.name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST(PictureCheck, FailsWithoutAReference) {
    if (renewing()) {
        GTEST_SKIP() << "it would become one";
    }
    EXPECT_NONFATAL_FAILURE(check("nothing.png", std::nullopt, Image(4, 4)),
                            "nothing.png: there is no reference picture");
    EXPECT_TRUE(std::filesystem::remove(changes + "nothing.png"));
}

TEST(PictureCheck, FailsForOnePixelAndWritesPictureAndDifference) {
    if (renewing()) {
        GTEST_SKIP() << "it would be taken as the reference";
    }
    const std::string name = "one-pixel.png";
    Image picture(20, 20);
    picture.at(4, 7)[1] = 0x80;
    EXPECT_NONFATAL_FAILURE(
        check(name, Image(20, 20), picture),
        "one-pixel.png: 1 pixels differ, the first at 4,7: expected #000000, found #008000");
    for (const std::string& folder : {changes, differences}) {
        EXPECT_TRUE(readPng(folder + name)) << folder;
        std::filesystem::remove(folder + name);
    }
}

TEST(PictureTable, HasEveryWindowOfBothResources) {
    const auto windowsOf = [](const std::string& file) {
        std::set<int> ids;
        const auto resource = loadResource(ZM_SOURCE_DIR "/resources/" + file, 800, 480);
        EXPECT_TRUE(resource) << resource.error();
        for (const WindowSpec& window : resource->windows) {
            ids.insert(window.id);
        }
        return ids;
    };
    std::set<int> pages;
    std::set<int> overlays;
    for (const PictureRow& row : allRows()) {
        pages.insert(row.window);
        overlays.insert(row.overlay);
    }
    overlays.erase(0);
    EXPECT_EQ(pages, windowsOf("DISC.zmrc_device"));
    EXPECT_EQ(overlays, windowsOf("OVERLAY.zmrc_device"));
}

TEST(PictureTable, HasARowForEachReference) {
    std::set<std::string> expected;
    for (const PictureRow& row : allRows()) {
        for (const Variant& variant : variants(row)) {
            EXPECT_TRUE(expected.insert(variant.fileName(row)).second) << row.name << " stands there twice";
        }
    }
    for (const LargerRow& larger : largerRows()) {
        for (const Variant& variant : larger.variants()) {
            EXPECT_TRUE(expected.insert(variant.fileName(larger.row())).second);
        }
    }
    std::set<std::string> present;
    for (const auto& entry : std::filesystem::directory_iterator(references)) {
        present.insert(entry.path().filename());
    }
    if (!renewing()) {
        EXPECT_EQ(present, expected);
        return;
    }
    for (const std::string& name : present) {
        if (!expected.contains(name)) {
            std::filesystem::remove(references + name);
        }
    }
}

} // namespace zm::test
