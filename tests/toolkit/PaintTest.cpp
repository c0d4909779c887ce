#include "SceneFixture.h"

using namespace zm::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr uint32_t opaque = 0xFF000000u;

class Paint : public testing::Test {
protected:
    Stage stage{resourceDir + "DISC.zmrc_device"};
};

/** The pixels of an area, row by row. */
std::vector<uint32_t> cut(const Stage& stage, const zm::Rect& box) {
    std::vector<uint32_t> pixels;
    for (int y = box.y; y < box.y + box.h; ++y) {
        for (int x = box.x; x < box.x + box.w; ++x) {
            pixels.push_back(stage.pixel(x, y));
        }
    }
    return pixels;
}

TEST_F(Paint, everyPageIsOpaqueButTheVideoPage) {
    for (const int window : {1, 6, 10, 20, 22, 24, 25, 27}) {
        stage.scene->showWindow(window, true);
        stage.paint();
        for (size_t i = 3; i < stage.pixels.size(); i += 4) {
            ASSERT_EQ(stage.pixels[i], 0xFF) << "page " << window << " pixel " << i / 4;
        }
    }
}

TEST_F(Paint, theVideoPageIsFullyTransparent) {
    stage.ui->SetItemText(17, 8, L"12:34");
    stage.ui->ShowItem(17, 17, true);
    stage.ui->SetItemText(17, 15, L"1");
    stage.scene->showWindow(17, true);
    stage.paint();
    EXPECT_THAT(stage.pixels, testing::Each(0));
}

TEST_F(Paint, withoutAPageEverythingIsTransparent) {
    stage.scene->invalidate();
    stage.paint();
    EXPECT_THAT(stage.pixels, testing::Each(0));
}

TEST_F(Paint, theSameContentsGiveTheSamePixels) {
    Stage other(resourceDir + "DISC.zmrc_device");
    for (Stage* one : {&stage, &other}) {
        one->ui->SetItemText(6, 2065, L"Title 标题 عنوان");
        one->scene->showWindow(6, true);
        one->paint();
    }
    EXPECT_EQ(stage.pixels, other.pixels);
}

TEST_F(Paint, piecewiseDrawingEqualsDrawingAtOnce) {
    stage.fill(*stage.list(24), 20);
    stage.scene->showWindow(24, true);
    stage.paint();
    stage.ui->SetItemText(24, 8, L"23:59");
    stage.ui->drawItem(24, 8);
    stage.list(24)->SetCurSel(2, 0);
    stage.list(24)->SetItemICon(2, 143, 4, 2, 1);
    stage.ui->SetItemState(24, 503, 3);
    stage.ui->drawItem(24, 503);
    stage.paint();
    const auto piecewise = stage.pixels;
    stage.scene->invalidate();
    stage.paint();
    EXPECT_EQ(stage.pixels, piecewise);
}

TEST_F(Paint, onlyDamagedPixelsAreTouched) {
    stage.scene->showWindow(6, true);
    stage.paint();
    std::fill(stage.pixels.begin(), stage.pixels.end(), 0x77);
    stage.ui->SetItemText(6, 2067, L"00:09");
    stage.ui->drawItem(6, 2067);
    stage.paint();
    const zm::Rect changed = stage.rect(6, 2067);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (!changed.contains(x, y)) {
                ASSERT_EQ(stage.pixel(x, y), 0x77777777u) << x << ", " << y;
            }
        }
    }
}

TEST_F(Paint, twoTimesAndABarCostASmallPartOfThePage) {
    stage.scene->showWindow(6, true);
    stage.paint();
    stage.ui->SetItemText(6, 2067, L"00:09");
    stage.ui->SetItemText(6, 2068, L"03:09");
    stage.ui->SetProgressItemPos(6, 2069, 40);
    for (const int id : {2067, 2068, 2069}) {
        stage.ui->drawItem(6, id);
    }
    const int drawn = area(stage.paint());
    EXPECT_GT(drawn, 0);
    EXPECT_LT(drawn, width * height / 6);
}

TEST_F(Paint, bluetoothIsAPictureChosenByItsText) {
    stage.scene->showWindow(6, true);
    stage.paint();
    const zm::Rect box = stage.rect(6, 15);
    const auto blank = cut(stage, box);
    std::vector<std::vector<uint32_t>> looks;
    for (const wchar_t* text : {L"0", L"1", L"2"}) {
        stage.ui->SetItemText(6, 15, text);
        stage.ui->drawItem(6, 15);
        stage.paint();
        looks.push_back(cut(stage, box));
        EXPECT_NE(looks.back(), blank);
    }
    EXPECT_NE(looks[0], looks[1]);
    EXPECT_NE(looks[1], looks[2]);
    EXPECT_NE(looks[0], looks[2]);
    stage.ui->SetItemText(6, 15, L"3");
    stage.ui->drawItem(6, 15);
    stage.paint();
    EXPECT_EQ(cut(stage, box), blank);
    EXPECT_EQ(stage.item(6, 15)["text"], "3");
}

TEST_F(Paint, longTextsStayInsideTheirItem) {
    stage.scene->showWindow(6, true);
    stage.paint();
    const auto before = stage.pixels;
    const zm::Rect box = stage.rect(6, 2065);
    stage.ui->SetItemText(6, 2065, std::wstring(260, L'W').c_str());
    stage.ui->drawItem(6, 2065);
    stage.paint();
    const auto after = stage.pixels;
    stage.pixels = before;
    int outside = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            uint32_t now = 0;
            std::memcpy(&now, &after[static_cast<size_t>((y * width + x) * 4)], 4);
            outside += !box.contains(x, y) && now != stage.pixel(x, y) ? 1 : 0;
        }
    }
    EXPECT_EQ(outside, 0);
    EXPECT_NE(after, before);
}

TEST_F(Paint, textsWithControlCharactersAndVeryLongOnesAreDrawn) {
    stage.scene->showWindow(6, true);
    stage.ui->SetItemText(6, 2065, L"a\nb\tc\x01");
    stage.ui->SetItemText(6, 2061, std::wstring(100000, L'语').c_str());
    stage.scene->wndMng().drawAllItem();
    EXPECT_THAT(stage.paint(), testing::Not(IsEmpty()));
    EXPECT_EQ(stage.item(6, 2065)["text"], "a\nb\tc\x01");
}

TEST_F(Paint, statesDifferInMoreThanColour) {
    // Seen without colour (only brightness steps against the button's own face), the four states still
    // differ.
    stage.scene->showWindow(20, true);
    const zm::Rect box = stage.rect(20, 511);
    const auto shape = [&] {
        stage.scene->invalidate();
        stage.paint();
        const auto pixels = cut(stage, box);
        const uint32_t face = pixels[static_cast<size_t>(box.w * 8 + box.w / 2)];
        std::vector<bool> form;
        for (const uint32_t pixel : pixels) {
            form.push_back(pixel == face);
        }
        return form;
    };
    const auto normal = shape();
    stage.ui->SetItemState(20, 511, 3);
    const auto selected = shape();
    stage.ui->SetItemState(20, 511, 2);
    stage.ui->EnableItem(20, 511, false);
    const auto disabled = shape();
    stage.ui->EnableItem(20, 511, true);
    stage.pressItem(20, 511);
    const auto pressed = shape();
    EXPECT_NE(normal, selected);
    EXPECT_NE(normal, disabled);
    EXPECT_NE(normal, pressed);
    EXPECT_NE(selected, pressed);
}

TEST_F(Paint, themesAndLanguagesRedrawThePage) {
    stage.scene->showWindow(22, true);
    stage.paint();
    const auto night = stage.pixels;
    EXPECT_FALSE(stage.scene->setTheme("dusk"));
    EXPECT_TRUE(stage.scene->setTheme("day"));
    EXPECT_THAT(stage.paint(), ElementsAre(zm::Rect{0, 0, width, height}));
    EXPECT_NE(stage.pixels, night);
    EXPECT_EQ(stage.pixel(400, 460) & opaque, opaque);
    EXPECT_TRUE(stage.scene->setTheme("night"));
    stage.paint();
    EXPECT_EQ(stage.pixels, night);
    EXPECT_TRUE(stage.scene->setLanguage("ar"));
    stage.paint();
    EXPECT_NE(stage.pixels, night);
}

TEST_F(Paint, theStatePlateIsDrawnOnlyBehindAText) {
    Stage overlay(resourceDir + "OVERLAY.zmrc_device");
    overlay.scene->showWindow(1, true);
    overlay.paint();
    const zm::Rect box = overlay.rect(1, 2155);
    EXPECT_THAT(cut(overlay, box), testing::Each(0u));
    overlay.ui->SetItemText(1, 2155, L"x2");
    overlay.ui->drawItem(1, 2155);
    overlay.paint();
    EXPECT_NE(overlay.pixel(box.x + 20, box.y + box.h / 2), 0u);
    EXPECT_EQ(overlay.pixel(box.x + box.w - 2, box.y + box.h / 2), 0u) << "the plate is as wide as its text";
    overlay.ui->SetItemText(1, 2155, L" ");
    overlay.ui->drawItem(1, 2155);
    overlay.paint();
    EXPECT_THAT(cut(overlay, box), testing::Each(0u));
}

TEST_F(Paint, premultipliedPixelsNeverExceedTheirAlpha) {
    Stage overlay(resourceDir + "OVERLAY.zmrc_device");
    overlay.scene->showWindow(1, true);
    overlay.paint();
    for (size_t i = 0; i < overlay.pixels.size(); i += 4) {
        ASSERT_LE(std::max({overlay.pixels[i], overlay.pixels[i + 1], overlay.pixels[i + 2]}),
                  overlay.pixels[i + 3]);
    }
}

TEST_F(Paint, aModeThatIsOnHasTheAccentsColour) {
    stage.scene->showWindow(6, true);
    const zm::Rect box = stage.rect(6, 6504);
    const auto showsAccent = [&](int picture) {
        stage.ui->SetItemIcon(6, 6504, picture, 2);
        stage.ui->drawItem(6, 6504);
        stage.paint();
        const auto pixels = cut(stage, box);
        return std::count(pixels.begin(), pixels.end(), 0xFF5AB8FFu) > 0;
    };
    EXPECT_FALSE(showsAccent(161)) << "repeat is off";
    EXPECT_TRUE(showsAccent(53)) << "repeat all";
    EXPECT_TRUE(showsAccent(83)) << "repeat one";
    EXPECT_TRUE(showsAccent(85)) << "repeat the folder";
}

TEST_F(Paint, thePartDoneOfAProgressBarIsThickerThanTheRest) {
    stage.ui->SetProgressItemPos(6, 2069, 50);
    stage.scene->showWindow(6, true);
    stage.paint();
    const zm::Rect box = stage.rect(6, 2069);
    const auto thickness = [&](int x) {
        int pixels = 0;
        for (int y = box.y + box.h - 56; y < 334; ++y) { // the times stand below
            pixels += stage.pixel(x, y) != stage.pixel(x, box.y + box.h - 56) ? 1 : 0;
        }
        return pixels;
    };
    EXPECT_EQ(thickness(box.x + box.w / 4), 12);
    EXPECT_EQ(thickness(box.x + box.w * 3 / 4), 6);
}

TEST_F(Paint, aMessageStandsAtTheSameHeightWithAndWithoutPicture) {
    stage.scene->showWindow(1, true);
    stage.ui->ShowItem(1, 7003, false);
    const auto textRows = [&] {
        stage.scene->invalidate();
        stage.paint();
        std::vector<int> rows;
        for (int y = 220; y < height; ++y) {
            const auto row = cut(stage, {0, y, width, 1});
            if (std::count(row.begin(), row.end(), row.front()) != width) {
                rows.push_back(y);
            }
        }
        return rows;
    };
    const auto without = textRows();
    EXPECT_THAT(without, testing::Not(IsEmpty()));
    stage.ui->SetItemIcon(1, 7004, 125, 4);
    EXPECT_EQ(textRows(), without);
}

TEST_F(Paint, aLongNameIsCutWhereItsReadingEnds) {
    stage.scene->showWindow(6, true);
    const zm::Rect box = stage.rect(6, 2065);
    const auto inkAt = [&](const wchar_t* text, int x) {
        stage.ui->SetItemText(6, 2065, text);
        stage.ui->drawItem(6, 2065);
        stage.paint();
        // Dots of an ellipsis are low; a column of pixels through letters reaches higher.
        const auto upper = cut(stage, {x, box.y, 14, box.h / 2});
        return std::count(upper.begin(), upper.end(), upper.front()) != static_cast<long>(upper.size());
    };
    const std::wstring latin(200, L'H');
    EXPECT_TRUE(inkAt(latin.c_str(), box.x));
    std::wstring arabic;
    for (int i = 0; i < 60; ++i) {
        arabic += L"لك";
    }
    EXPECT_FALSE(inkAt(arabic.c_str(), box.x)) << "the ellipsis stands at the left end of an Arabic name";
    EXPECT_TRUE(inkAt(arabic.c_str(), box.x + box.w - 40));
}

TEST(PaintWithoutColours, whatHasNoColourDrawsNothing) {
    const TemporaryFolder folder;
    Stage stage(folder.write("plain.zmrc", R"({
        "languages": ["en"],
        "themes": {"night": {"page": "#102030"}},
        "styles": {"bare": {"textSize": 24}},
        "glyphs": {"play": "F40A"},
        "pictures": {"7": "play"},
        "texts": {},
        "windows": [{"id": 1, "background": "page", "items": [
            {"id": 2, "kind": "animation", "rect": [100, 100, 80, 80], "style": "bare"},
            {"id": 3, "kind": "icon", "rect": [200, 100, 80, 80], "style": "bare", "icon": 7}
        ]}]
    })"));
    stage.scene->showWindow(1, true);
    stage.paint();
    const uint32_t page = stage.pixel(0, 0);
    for (int y = 100; y < 180; ++y) {
        for (int x = 100; x < 280; ++x) {
            ASSERT_EQ(stage.pixel(x, y), page) << x << ", " << y;
        }
    }
}

TEST_F(Paint, eightPlacesFarApartAreDrawnOnTheirOwnAndMoreAtOnce) {
    const TemporaryFolder folder;
    std::string items;
    for (int i = 0; i < 9; ++i) {
        items += std::string(i ? ", " : "") + R"({"id": )" + std::to_string(i + 1) +
                 R"(, "kind": "text", "style": "plain", "rect": [)" + std::to_string(i * 80) + ", " +
                 std::to_string(i * 50) + ", 40, 30]}";
    }
    Stage spread(
        folder.write("spread.zmrc", R"({"languages": ["en"], "themes": {"night": {"page": "#000000"}},
        "styles": {"plain": {"textSize": 20}}, "windows": [{"id": 1, "items": [)" +
                                        items + "]}]}"));
    spread.scene->showWindow(1, true);
    spread.paint();
    for (const int count : {8, 9}) {
        for (int id = 1; id <= count; ++id) {
            spread.ui->SetItemText(1, id, count == 8 ? L"a" : L"b");
            spread.ui->drawItem(1, id);
        }
        EXPECT_EQ(spread.paint().size(), count == 8 ? 8u : 1u);
    }
}

} // namespace
