// What movement costs: every frame of a minute of flung lists and changes of pages, drawn in the time of a screen's 60 frames
// a second. Argument: the folder of pages and fonts; --quick takes a tenth of the time.
#include "benchmarks/Figure.h"
#include "platform/linux/screen/ScreenWindow.h"
#include "platform/linux/toolkit/Scene.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"
#include "zmui/CUI_BtList.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

using namespace zm;
using namespace zm::benchmark;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int Width = 800;
constexpr int Height = 480;
constexpr int MusicPage = 6;
constexpr int MediaList = 24;
constexpr int ListItem = 2000;
constexpr int Rows = 5000;
constexpr double FrameMs = 1000.0 / 60;
constexpr double DrawingLimitMs = 4;
constexpr int PageEveryFrames = 45;
constexpr int FlingEveryFrames = 90;

class NoListener : public SceneListener {
    void itemClicked(int, int, int) override {}
    void listScrolled(int, int, _tagList_Info&) override {}
};

/** A compositor that gives every buffer back at once. */
class NoScreen : public ScreenLink {
public:
    Status send(const nlohmann::json& message, const std::vector<int>&) override {
        m_window->released(message.at("buffer").get<int>(), message.at("seq").get<int64_t>());
        return ok();
    }
    Status receive() override { return ok(); }
    ScreenWindow* m_window = nullptr;
};

/** Draws frame by frame as the application does, and notes how long each took and when it was ready. */
class Reel {
public:
    Reel(Scene& scene, ScreenWindow& window) : m_scene(scene), m_window(window) {}

    /** Waits for the next frame of the screen, and draws it if anything moves. */
    void frame() {
        m_due +=
            std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double, std::milli>(FrameMs));
        std::this_thread::sleep_until(m_due);
        const auto begin = Clock::now();
        m_now = std::chrono::duration_cast<std::chrono::milliseconds>(begin.time_since_epoch()).count();
        if (const int64_t next = m_scene.nextTick(); next >= 0 && next <= m_now) {
            m_scene.tick(m_now);
        }
        const auto areas = m_scene.paint(m_window.surface(), m_window.stride());
        if (!areas.empty() && m_window.present(areas)) {
            const std::chrono::duration<double, std::milli> took = Clock::now() - begin;
            drawing.push_back(took.count());
        }
    }
    int64_t now() const { return m_now; }

    std::vector<double> drawing; ///< milliseconds

private:
    Scene& m_scene;
    ScreenWindow& m_window;
    Clock::time_point m_due = Clock::now();
    int64_t m_now = 0;
};

void fill(Scene& scene) {
    auto* items = scene.wndMng().GetUIAnalysisObj();
    items->SetItemText(MusicPage, 2065, L"A title of quite some length for a song 东方");
    items->SetItemText(MusicPage, 2061, L"An artist");
    CUI_BtList* list = nullptr;
    items->GetItemData(MediaList, ListItem, list);
    for (int row = 0; row < Rows; ++row) {
        list->InsertItem(row, -1);
        list->SetItemICon(row, 140, 4, 0, 1);
        list->SetItemString(row, (std::to_wstring(row + 1) + L"  Song of a long list 东方.mp3").c_str(), 1);
    }
}

// The finger goes up the list in six frames and lets go.
void fling(Scene& scene, Reel& reel, bool down) {
    int y = down ? 120 : 360;
    scene.press(400, y);
    for (int step = 0; step < 6; ++step) {
        reel.frame();
        y += down ? 40 : -40;
        scene.move(400, y, reel.now());
    }
    scene.release(400, y, reel.now());
}

int count(const std::vector<double>& values, double limit) {
    return static_cast<int>(
        std::count_if(values.begin(), values.end(), [&](double ms) { return ms > limit; }));
}

void report(const std::string& what, const Reel& reel) {
    const auto& ms = reel.drawing;
    const std::string frames = std::to_string(ms.size()) + " frames, slowest " +
                               std::to_string(*std::max_element(ms.begin(), ms.end())) + " ms";
    print({.name = what + ", a frame",
           .unit = "ms",
           .value = median(ms),
           .limit = DrawingLimitMs,
           .note = frames});
    print({.name = what + ", frames later than the screen's next",
           .unit = "frames",
           .value = double(count(ms, FrameMs)),
           .limit = 0});
}

} // namespace

int main(int argc, char** argv) {
    const std::string share = argc > 1 ? argv[1] : "build/share";
    const bool quick = argc > 2 && std::strcmp(argv[2], "--quick") == 0;
    NoListener listener;
    auto scene = Scene::load(share + "/rccs/DISC.zmrc_device", share + "/fonts/", Width, Height, listener);
    if (!scene) {
        std::fprintf(stderr, "%s\n", scene.error().c_str());
        return 1;
    }
    NoScreen screen;
    ScreenWindow window(screen, 1, {"motion", Width, Height, 1, true, true});
    screen.m_window = &window;
    if (auto memory = window.allocate(); !memory) {
        std::fprintf(stderr, "%s\n", memory.error().c_str());
        return 1;
    }
    fill(**scene);
    (*scene)->setMotion(MotionLevel::Full);
    const int frames = (quick ? 3 : 30) * 60;
    (*scene)->showWindow(MusicPage, true);
    Reel pages(**scene, window);
    for (int frame = 0; frame < frames; ++frame) {
        if (frame % PageEveryFrames == 0) {
            (*scene)->showWindow(frame / PageEveryFrames % 2 ? MusicPage : MediaList, true);
        }
        pages.frame();
    }
    (*scene)->showWindow(MediaList, true);
    Reel flings(**scene, window);
    for (int frame = 0; frame < frames; ++frame) {
        if (frame % FlingEveryFrames == 0) {
            fling(**scene, flings, frame / FlingEveryFrames % 4 == 3);
        }
        flings.frame();
    }
    report("page that fades over", pages);
    report("list that runs on", flings);
    return 0;
}
