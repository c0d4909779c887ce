#include "platform/linux/toolkit/Tint.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace zm {

namespace {

// Contrast of the tint with the page. What has the least contrast by night, borders with 4.2 : 1, keeps 3 : 1, and so have
// they by day with 3.6.
constexpr double mostOnDark = 1.36;
constexpr double mostOnBright = 1.16;
constexpr double darkPage = 0.18;
// Of grey: a page in a pure colour would not be calm, a bright one least of all.
constexpr double greyOnDark = 0.25;
constexpr double greyOnBright = 0.5;

struct Light {
    double red;
    double green;
    double blue;
    double luminance() const { return 0.2126 * red + 0.7152 * green + 0.0722 * blue; }
};

double toLight(double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double toValue(double light) {
    return light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
}

Light lightOf(const Color& color) {
    return {toLight(color.red), toLight(color.green), toLight(color.blue)};
}

Light mixed(const Light& a, const Light& b, double part) {
    return {a.red + (b.red - a.red) * part, a.green + (b.green - a.green) * part,
            a.blue + (b.blue - a.blue) * part};
}

// All of `light` with that luminance, as far as a screen can show it.
Light withLuminance(const Light& light, double wanted) {
    const double own = light.luminance();
    const double factor = own > 0 ? wanted / own : 0;
    const Light scaled{light.red * factor, light.green * factor, light.blue * factor};
    const double most = std::max({scaled.red, scaled.green, scaled.blue});
    if (most <= 1) {
        return own > 0 ? scaled : Light{wanted, wanted, wanted};
    }
    // Too colourful to be that bright: white is added.
    const double white = (most - 1) / (most - wanted);
    return mixed(scaled, {wanted, wanted, wanted}, white);
}

} // namespace

std::optional<Color> colorOf(const std::string& text) {
    unsigned value = 0;
    const char* end = text.data() + text.size();
    if (text.size() != 7 || text[0] != '#') {
        return std::nullopt;
    }
    const auto parsed = std::from_chars(text.data() + 1, end, value, 16);
    if (parsed.ec != std::errc() || parsed.ptr != end) {
        return std::nullopt;
    }
    return Color{((value >> 16) & 255) / 255.0, ((value >> 8) & 255) / 255.0, (value & 255) / 255.0, 1};
}

Color tinted(const Color& page, const Color& wish) {
    const double own = lightOf(page).luminance();
    if (own <= 0) {
        return page;
    }
    const bool dark = own < darkPage;
    const double wanted = dark ? (own + 0.05) * mostOnDark - 0.05 : (own + 0.05) / mostOnBright - 0.05;
    const Light colorful = withLuminance(lightOf(wish), wanted);
    const Light tint = mixed(colorful, {wanted, wanted, wanted}, dark ? greyOnDark : greyOnBright);
    return {toValue(tint.red), toValue(tint.green), toValue(tint.blue), page.alpha};
}

} // namespace zm
