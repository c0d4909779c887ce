#include "platform/linux/toolkit/ScreenFit.h"

#include <algorithm>
#include <cmath>

namespace zm {

namespace {

/** Stays as wide on every screen: what keeps to it stands in one line, whatever its anchor. */
constexpr int edge = 12;

int rounded(double value) {
    return static_cast<int>(std::lround(value));
}

} // namespace

ScreenFit::ScreenFit(ScreenSize written, ScreenSize screen)
    : m_written(written), m_screen(screen),
      m_scale(std::min(static_cast<double>(screen.height) / written.height,
                       static_cast<double>(screen.width) / written.width)),
      m_wide(screen.width / m_scale) {}

int ScreenFit::pixels(int length) const {
    return length == 0 ? 0 : std::max(1, rounded(length * m_scale));
}

// Where a point of the page lies if what is wider is shared out evenly.
double ScreenFit::across(int x) const {
    const double more = m_wide - m_written.width;
    const double part = static_cast<double>(x - edge) / (m_written.width - 2 * edge);
    return x + more * std::clamp(part, 0.0, 1.0);
}

Rect ScreenFit::place(const Rect& rect, Anchor anchor) const {
    const double more = m_wide - m_written.width;
    double left = across(rect.x);
    double right = across(rect.x + rect.w);
    switch (anchor) {
    case Anchor::Spread:
        break;
    case Anchor::Left:
        left = rect.x;
        right = left + rect.w;
        break;
    case Anchor::Right:
        left = rect.x + more;
        right = left + rect.w;
        break;
    case Anchor::Center:
        left = (left + right - rect.w) / 2;
        right = left + rect.w;
        break;
    case Anchor::Stretch:
        left = rect.x;
        right = rect.x + rect.w + more;
        break;
    }
    const int x = rounded(left * m_scale);
    const int y = rounded(rect.y * m_scale);
    return {x, y, rounded(right * m_scale) - x, rounded((rect.y + rect.h) * m_scale) - y};
}

void ScreenFit::apply(Style& style) const {
    // Never larger than the place, which is not rounded up either.
    for (int* size : {&style.textSize, &style.iconSize}) {
        *size = static_cast<int>(*size * m_scale);
    }
    for (int* length : {&style.radius, &style.padding, &style.gap, &style.rowGap, &style.thickness,
                        &style.fadeTop, &style.fadeBottom, &style.bubble}) {
        *length = pixels(*length);
    }
    for (Look& look : style.looks) {
        look.borderWidth = pixels(look.borderWidth);
        look.nudge = pixels(look.nudge);
    }
}

void ScreenFit::apply(Resource& resource) const {
    for (Style& style : resource.styles) {
        apply(style);
    }
    for (WindowSpec& window : resource.windows) {
        for (ItemSpec& item : window.items) {
            item.rect = place(item.rect, item.anchor);
        }
    }
}

} // namespace zm
