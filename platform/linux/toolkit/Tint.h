#pragma once

#include "platform/linux/toolkit/Resource.h"

#include <optional>
#include <string>

namespace zm {

/** "#RRGGBB"; nothing if it is none. */
std::optional<Color> colorOf(const std::string& text);

/**
 * The page's colour with a breath of `wish` in it: its hue, but hardly brighter than a dark page and hardly darker than a
 * bright one, so that whatever can be read on the page can be read on this. A black page stays black: its theme is one of high contrast.
 */
Color tinted(const Color& page, const Color& wish);

} // namespace zm
