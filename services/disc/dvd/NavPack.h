#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zm::disc::dvd {

/** What a DVD counts time in. */
inline constexpr int64_t TicksPerSecond = 90000;

/** A place on a menu that can be pressed, in pixels of a picture 720 wide. */
struct MenuButton {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    uint32_t chosen = 0;  ///< colours and opacities while it is the chosen one
    uint32_t pressed = 0; ///< the same while it is carried out

    bool contains(int x, int y) const { return x >= left && x <= right && y >= top && y <= bottom; }
};

/** How a pack's buttons go with those of the pack before. */
enum class ButtonChange { None = 0, New = 1, Same = 2, OtherCommands = 3 };

/** What a navigation pack says of the film that follows it. Times are in 90 kHz. */
struct NavPack {
    int64_t begin = 0; ///< of the pictures' times, in the disc's own count
    int64_t end = 0;
    int64_t elapsed = 0; ///< in the cell
    ButtonChange change = ButtonChange::None;
    bool hasPicture = true; ///< else one from before stands, while the sound goes on
    std::vector<MenuButton> buttons;

    /** Number of the button at a point, counted from 1; 0 none. */
    int buttonAt(int x, int y) const;
};

/** Reads a navigation pack; nothing if it is not one. `wide`: the picture is 16:9, shown as such. */
std::optional<NavPack> readNavPack(std::span<const uint8_t> pack, bool wide);

} // namespace zm::disc::dvd
