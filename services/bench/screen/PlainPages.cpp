#include "services/bench/screen/PlainPages.h"

#include "platform/linux/toolkit/ScreenFit.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"

#include <array>
#include <cstdio>
#include <string_view>

namespace zm::bench::screen {

namespace {

struct PageRow {
    std::string_view application;
    int window;
};

constexpr std::array<PageRow, 9> Pages = {{
    {"zmhome", 1},
    {"zmradio", 2},
    {"zmusb", 3},
    {"zmbttel", 4},
    {"zmnavi", 5},
    {"zmasr", 6},
    {"zmaux1", 7},
    {"zmaircond", 8},
    {"zmeq", 9},
}};

constexpr ScreenSize WrittenFor;
constexpr Rect Return{300, 300, 200, 80};
constexpr int OtherPage = 10;
constexpr int Title = 20201;

int pageOf(std::string_view application) {
    for (const auto& row : Pages) {
        if (row.application == application) {
            return row.window;
        }
    }
    return OtherPage;
}

} // namespace

PlainPages::PlainPages(std::string resourceFile, std::string fontDir, ScreenSize screen)
    : m_resourceFile(std::move(resourceFile)), m_fontDir(std::move(fontDir)), m_screen(screen) {}

Rect PlainPages::wayBack() const {
    return ScreenFit(WrittenFor, m_screen).place(Return, Anchor::Spread);
}

void PlainPages::load() {
    m_loaded = true;
    auto scene = Scene::load(m_resourceFile, m_fontDir, WrittenFor.width, WrittenFor.height, *this, m_screen);
    if (scene) {
        m_scene = std::move(*scene);
    } else {
        std::fprintf(stderr, "zmbench: %s\n", scene.error().c_str());
    }
}

Image PlainPages::draw(const std::string& application) {
    if (!m_loaded) {
        load();
    }
    Image page(m_screen.width, m_screen.height);
    if (!m_scene) {
        return page;
    }
    const int window = pageOf(application);
    m_scene->setLanguage(m_language);
    m_scene->setTheme(m_theme);
    m_scene->showWindow(window, true);
    showStatus(*m_scene->wndMng().GetUIAnalysisObj(), window, m_status);
    if (window == OtherPage) {
        const std::wstring name(application.begin(), application.end());
        m_scene->wndMng().GetUIAnalysisObj()->SetItemText(window, Title, name.c_str());
    }
    m_scene->invalidate();
    m_scene->paint(page.pixels.data(), page.stride);
    return page;
}

// Touches go to the launcher, which knows the area that leads back.
void PlainPages::itemClicked(int, int, int) {}
void PlainPages::listScrolled(int, int, _tagList_Info&) {}

} // namespace zm::bench::screen
