// The pages of other applications have the disc player's status bar: pixel by pixel what its own pages show.
#include "services/bench/screen/PlainPages.h"
#include "BuildPaths.h"
#include "platform/linux/toolkit/Scene.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zm::test {

namespace {

using bench::screen::CarStatus;

const std::string fontFolder = ZM_BINARY_DIR "/share/fonts/";
const std::string pageFolder = ZM_SOURCE_DIR "/resources/";
constexpr int messagePage = 1;

/** What the disc player puts into its bar for that status. */
struct Shown {
    const char* name;
    CarStatus status;
    const wchar_t* clock;
    const char* half;
    const wchar_t* bluetooth;
    const wchar_t* temperature;
};

const Shown table[] = {
    {"Afternoon", {.hour = 14, .minute = 5, .temperature = 215}, L"14:05", "", L"0", L"21.5"},
    {"AfternoonInHalves", {.hour = 14, .minute = 35, .twelveHours = true}, L"02:35", "PM", L"0", L"--.-"},
    {"Midnight", {.hour = 0, .twelveHours = true, .temperature = -401}, L"12:00", "AM", L"0", L"--.-"},
    {"Noon", {.hour = 12, .twelveHours = true, .temperature = -400}, L"12:00", "PM", L"0", L"-40.0"},
    {"AnHourThatIsNone", {.hour = 24, .twelveHours = true, .temperature = 871}, L"24:00", "", L"0", L"--.-"},
    {"MutedWithATelephone",
     {.hour = 9, .bluetooth = 2, .muted = true, .temperature = 5},
     L"09:00",
     "",
     L"2",
     L" 0.5"},
};

class NoListener : public SceneListener {
    void itemClicked(int, int, int) override {}
    void listScrolled(int, int, _tagList_Info&) override {}
};

class StatusOfPlainPages : public testing::TestWithParam<Shown> {
protected:
    /** The player's own page with that in its bar. */
    Image playersPage(const Shown& shown, const std::string& theme, const std::string& language) {
        auto scene =
            Scene::load(pageFolder + "DISC.zmrc_device", fontFolder, screen.width, screen.height, listener);
        if (!scene) {
            ADD_FAILURE() << scene.error();
            return {};
        }
        (*scene)->setTheme(theme);
        (*scene)->setLanguage(language);
        (*scene)->showWindow(messagePage, true);
        CUIAnalysis& items = *(*scene)->wndMng().GetUIAnalysisObj();
        items.SetItemText(messagePage, 8, shown.clock);
        items.ShowItem(messagePage, 11, std::string(shown.half) == "AM");
        items.ShowItem(messagePage, 12, std::string(shown.half) == "PM");
        items.SetItemText(messagePage, 15, shown.bluetooth);
        items.ShowItem(messagePage, 17, shown.status.muted);
        items.SetItemText(messagePage, 20, shown.temperature);
        (*scene)->invalidate();
        Image page(screen.width, screen.height);
        (*scene)->paint(page.pixels.data(), page.stride);
        return page;
    }
    /** The pixels of the status bar. */
    static std::vector<uint8_t> bar(const Image& page, int left) {
        std::vector<uint8_t> pixels;
        for (int y = 0; y < 68; ++y) {
            const uint8_t* row = page.pixels.data() + y * page.stride;
            pixels.insert(pixels.end(), row + left * 4, row + (left + 340) * 4);
        }
        return pixels;
    }

    const ScreenSize screen{};
    NoListener listener;
};

TEST_P(StatusOfPlainPages, IsThatOfThePlayersPages) {
    bench::screen::PlainPages pages(pageFolder + "OTHERS.zmrc_device", fontFolder, screen);
    pages.setStatus(GetParam().status);
    for (const auto& [theme, language, left] :
         {std::tuple("night", "en", 460), std::tuple("day", "ar", 0), std::tuple("contrast", "zh", 460)}) {
        pages.setTheme(theme);
        pages.setLanguage(language);
        const auto expected = bar(playersPage(GetParam(), theme, language), left);
        EXPECT_EQ(bar(pages.draw("zmradio"), left), expected) << theme;
        EXPECT_EQ(bar(pages.draw("another"), left), expected) << theme;
    }
}

INSTANTIATE_TEST_SUITE_P(, StatusOfPlainPages, testing::ValuesIn(table),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace

} // namespace zm::test
