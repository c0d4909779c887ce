// How long the toolkit takes to draw: a whole page, what changes twice a second on it, a long list that is
// scrolled.
#include "benchmarks/Figure.h"
#include "platform/linux/toolkit/Scene.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"
#include "zmui/CUI_BtList.h"

#include <cstdio>
#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

using namespace zm;
using namespace zm::benchmark;

namespace {

constexpr int Width = 800;
constexpr int Height = 480;
constexpr int Stride = Width * 4;
constexpr int MusicPage = 6;
constexpr int MediaList = 24;
constexpr int ListItem = 2000;
constexpr int LongList = 65535;

class NoListener : public SceneListener {
    void itemClicked(int, int, int) override {}
    void listScrolled(int, int, _tagList_Info&) override {}
};

void musicPage(Scene& scene, std::vector<uint8_t>& pixels) {
    auto* items = scene.wndMng().GetUIAnalysisObj();
    items->SetItemText(MusicPage, 2065, L"A title of quite some length for a song 东方");
    items->SetItemText(MusicPage, 2061, L"An artist");
    items->SetItemText(MusicPage, 2063, L"An album");
    scene.showWindow(MusicPage, true);
    const double copy = median(milliseconds(300, 20, [&](int) {
        static std::vector<uint8_t> other(pixels.size());
        std::memcpy(other.data(), pixels.data(), pixels.size());
    }));
    const auto page = milliseconds(300, 20, [&](int) {
        scene.invalidate();
        scene.paint(pixels.data(), Stride);
    });
    print({"play page, full redraw", "ms", median(page), 1.0, "copy of the same pixels", copy});
    const auto times = milliseconds(1000, 20, [&](int turn) {
        wchar_t text[32];
        std::swprintf(text, 32, L"%02d:%02d", (turn / 60 + 60) % 60, (turn + 60) % 60);
        items->SetItemText(MusicPage, 2067, text);
        items->SetItemText(MusicPage, 2068, text);
        items->SetProgressItemPos(MusicPage, 2069, (turn + 100) % 100);
        for (const int item : {2067, 2068, 2069}) {
            items->drawItem(MusicPage, item);
        }
        scene.paint(pixels.data(), Stride);
    });
    print(
        {"two times and the progress bar", "ms", median(times), 0.1, "play page, full redraw", median(page)});
}

void longList(Scene& scene, std::vector<uint8_t>& pixels) {
    CUI_BtList* list = nullptr;
    scene.wndMng().GetUIAnalysisObj()->GetItemData(MediaList, ListItem, list);
    const auto fill = milliseconds(1, 0, [&](int) {
        for (int row = 0; row < LongList; ++row) {
            list->InsertItem(row, -1);
            list->SetItemICon(row, 140, 4, 0, 1);
            list->SetItemString(row, (std::to_wstring(row + 1) + L"  Song of a long list.mp3").c_str(), 1);
        }
    });
    print({"list of 65,535 rows, filled", "ms", fill[0], 1000});
    scene.showWindow(MediaList, true);
    scene.paint(pixels.data(), Stride);
    const auto scroll = milliseconds(500, 20, [&](int turn) {
        list->SetTopIndex(30000 + turn, 1, 0, 0, 0);
        scene.paint(pixels.data(), Stride);
    });
    print({"list of 65,535 rows, one frame while scrolling", "ms", median(scroll), 1.0});
}

} // namespace

int main(int argc, char** argv) {
    const std::string share = argc > 1 ? argv[1] : "build/share";
    NoListener listener;
    auto scene = Scene::load(share + "/rccs/DISC.zmrc_device", share + "/fonts/", Width, Height, listener);
    if (!scene) {
        std::fprintf(stderr, "%s\n", scene.error().c_str());
        return 1;
    }
    std::vector<uint8_t> pixels(static_cast<size_t>(Stride) * Height);
    musicPage(**scene, pixels);
    longList(**scene, pixels);
    return 0;
}
