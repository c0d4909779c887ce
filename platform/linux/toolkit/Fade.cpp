#include "platform/linux/toolkit/Fade.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <utility>

namespace zm {

namespace {

constexpr std::ptrdiff_t pixelBytes = 4;
/** The first step is one frame on already: nobody sees a frame without a change. */
constexpr int64_t firstStepMs = 16;
constexpr uint32_t fullMix = 256;

// Two channels at a time, so that the compiler can take several pixels at once. Of equal channels it makes the same one.
uint32_t mixed(uint32_t before, uint32_t after, uint32_t part) {
    constexpr uint32_t even = 0x00FF00FF;
    const uint32_t low = ((before & even) * (fullMix - part) + (after & even) * part) >> 8 & even;
    const uint32_t high = ((before >> 8 & even) * (fullMix - part) + (after >> 8 & even) * part) & ~even;
    return high | low;
}

} // namespace

double eased(double part) {
    const double left = 1 - std::clamp(part, 0.0, 1.0);
    return 1 - left * left * left;
}

void Fade::want(const Rect& area, int ms) {
    if (area.empty()) {
        return;
    }
    m_wanted = true;
    m_wantedArea = m_wantedArea.united(area);
    m_wantedMs = std::max(m_wantedMs, ms);
}

void Fade::wantFromNothing(const Rect& area, int ms) {
    want(area, ms);
    m_fromNothing = true;
}

void Fade::finish() {
    m_wanted = m_fromNothing = false;
    m_wantedArea = {};
    m_wantedMs = 0;
    m_stepped = m_stepped || m_running;
    m_done = 1;
}

void Fade::begin(const uint8_t* pixels, int stride, const Rect& screen) {
    if (!std::exchange(m_wanted, false)) {
        return;
    }
    const size_t bytes = static_cast<size_t>(stride) * static_cast<size_t>(screen.h);
    m_screen = screen;
    m_stride = stride;
    const Rect area = std::exchange(m_wantedArea, {}).intersected(screen);
    m_area = m_running ? m_area.united(area) : area;
    m_ms = std::exchange(m_wantedMs, 0);
    if (!m_running) {
        m_settled.assign(pixels, pixels + bytes);
    }
    m_before.assign(pixels, pixels + bytes);
    m_stepped = std::exchange(m_fromNothing, false);
    if (m_stepped) {
        std::fill(m_before.begin(), m_before.end(), uint8_t{0});
    }
    m_running = true;
    m_start = -1;
    m_done = 0;
}

void Fade::step(int64_t nowMs) {
    if (!m_running) {
        return;
    }
    if (m_start < 0) {
        m_start = nowMs - firstStepMs;
    }
    m_done = eased(static_cast<double>(nowMs - m_start) / m_ms);
    m_stepped = true;
}

std::vector<Rect> Fade::show(uint8_t* pixels, std::vector<Rect> painted) {
    for (const Rect& area : painted) {
        copy(pixels, area);
    }
    if (m_stepped) {
        painted.push_back(m_area);
    } else if (m_done <= 0) { // inside the area nothing has changed yet
        std::erase_if(painted, [&](const Rect& area) { return area.intersected(m_area) == area; });
    }
    if (m_done >= 1) {
        copy(pixels, m_area);
        m_running = false;
        std::vector<uint8_t>().swap(m_before);
        std::vector<uint8_t>().swap(m_settled);
    } else {
        mix(pixels, m_area);
    }
    m_stepped = false;
    return painted;
}

void Fade::copy(uint8_t* pixels, const Rect& area) const {
    for (int y = area.y; y < area.y + area.h; ++y) {
        const std::ptrdiff_t at = std::ptrdiff_t{y} * m_stride + area.x * pixelBytes;
        std::memcpy(pixels + at, m_settled.data() + at, static_cast<size_t>(area.w) * pixelBytes);
    }
}

void Fade::mix(uint8_t* pixels, const Rect& area) const {
    const auto part = static_cast<uint32_t>(std::lround(m_done * fullMix));
    for (int y = area.y; y < area.y + area.h; ++y) {
        const std::ptrdiff_t at = std::ptrdiff_t{y} * m_stride + area.x * pixelBytes;
        const auto* before = reinterpret_cast<const uint32_t*>(m_before.data() + at);
        const auto* after = reinterpret_cast<const uint32_t*>(m_settled.data() + at);
        auto* to = reinterpret_cast<uint32_t*>(pixels + at);
        for (int x = 0; x < area.w; ++x) {
            to[x] = mixed(before[x], after[x], part);
        }
    }
}

} // namespace zm
