#include "tests/views/Draws.h"

#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"

#include <mutex>
#include <utility>

namespace zm::test {

namespace {

std::mutex mutex;
std::vector<std::string> draws;

void note(const std::string& draw) {
    std::lock_guard lock(mutex);
    draws.push_back(draw);
}

} // namespace

std::vector<std::string> takeDraws() {
    std::lock_guard lock(mutex);
    return std::exchange(draws, {});
}

} // namespace zm::test

// The linker leads the application's calls here first.
extern "C" bool __real__ZN11CUIAnalysis8drawItemEii(CUIAnalysis* items, int window, int item);
extern "C" bool __wrap__ZN11CUIAnalysis8drawItemEii(CUIAnalysis* items, int window, int item) {
    zm::test::note(std::to_string(window) + "/" + std::to_string(item));
    return __real__ZN11CUIAnalysis8drawItemEii(items, window, item);
}

extern "C" void __real__ZN9CUIWndMng11drawAllItemEv(CUIWndMng* windows);
extern "C" void __wrap__ZN9CUIWndMng11drawAllItemEv(CUIWndMng* windows) {
    zm::test::note("all");
    __real__ZN9CUIWndMng11drawAllItemEv(windows);
}
