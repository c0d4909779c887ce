#include "base/ScreenSize.h"

#include <array>
#include <cstdlib>

namespace zm {

namespace {

// None narrower than the usual one: what is written for it always has its height, and at least its width.
constexpr std::array<ScreenSize, 3> Sizes = {{{800, 480}, {1024, 600}, {1280, 720}}};

} // namespace

Result<ScreenSize> parseScreenSize(const std::string& text) {
    for (const auto& size : Sizes) {
        if (size.text() == text) {
            return size;
        }
    }
    std::string known;
    for (const auto& size : Sizes) {
        known += (&size == &Sizes.front() ? "" : &size == &Sizes.back() ? " or " : ", ") + size.text();
    }
    return Error{"\"" + text + "\" is no size of a screen that the pages are made for, expected " + known};
}

ScreenSize screenSize(ScreenSize usual) {
    const char* text = std::getenv("ZM_SCREEN");
    const auto size = parseScreenSize(text ? text : "");
    return size ? *size : usual;
}

} // namespace zm
