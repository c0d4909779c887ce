#include "screen/screen.h"

#include "platform/linux/screen/WindowHandle.h"

#include <cerrno>

namespace {

/** A property of two numbers, and what a flush has to send for it. */
struct PairProperty {
    int name;
    int (_screen_window::*value)[2];
    std::optional<int> zm::WindowProps::*first;
    std::optional<int> zm::WindowProps::*second;
};

constexpr PairProperty Properties[] = {
    {SCREEN_PROPERTY_POSITION, &_screen_window::position, &zm::WindowProps::x, &zm::WindowProps::y},
    {SCREEN_PROPERTY_SIZE, &_screen_window::size, &zm::WindowProps::width, &zm::WindowProps::height},
};

const PairProperty* find(screen_window_t window, int name, const int* param) {
    if (window && param) {
        for (const PairProperty& property : Properties) {
            if (property.name == name) {
                return &property;
            }
        }
    }
    errno = EINVAL;
    return nullptr;
}

} // namespace

int screen_set_window_property_iv(screen_window_t win, int pname, const int* param) {
    const PairProperty* property = find(win, pname, param);
    if (!property) {
        return -1;
    }
    auto& value = win->*property->value;
    win->pending.*property->first = value[0] = param[0];
    win->pending.*property->second = value[1] = param[1];
    return 0;
}

int screen_get_window_property_iv(screen_window_t win, int pname, int* param) {
    const PairProperty* property = find(win, pname, param);
    if (!property) {
        return -1;
    }
    const auto& value = win->*property->value;
    param[0] = value[0];
    param[1] = value[1];
    return 0;
}
