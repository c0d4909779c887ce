#include "services/bench/screen/SurfaceBlend.h"

#include <cstring>

namespace zm::bench::screen {

namespace {

constexpr size_t MostRects = 16;
constexpr int PixelBytes = 4;

uint32_t loadPixel(const uint8_t* at) {
    uint32_t pixel;
    std::memcpy(&pixel, at, sizeof pixel);
    return pixel;
}

// source + destination * (255 - alpha) / 255, two channels at a time. Unsigned, so that a picture that is not
// premultiplied as promised gives wrong colours and nothing worse.
uint32_t over(uint32_t source, uint32_t destination) {
    const uint32_t rest = 255 - (source >> 24);
    constexpr uint32_t Mask = 0x00ff00ff;
    constexpr uint32_t Half = 0x00800080;
    uint32_t even = (destination & Mask) * rest + Half;
    even = ((even + ((even >> 8) & Mask)) >> 8) & Mask;
    uint32_t odd = ((destination >> 8) & Mask) * rest + Half;
    odd = (odd + ((odd >> 8) & Mask)) & ~Mask;
    return source + (even | odd);
}

void blendPixels(uint8_t* destination, const uint8_t* source, int count) {
    for (int i = 0; i < count; ++i, source += PixelBytes, destination += PixelBytes) {
        const uint32_t mixed = over(loadPixel(source), loadPixel(destination));
        std::memcpy(destination, &mixed, sizeof mixed);
    }
}

// Pictures are empty or opaque nearly everywhere: eight such pixels are skipped or copied at a time.
void blendRow(uint8_t* destination, const uint8_t* source, int count) {
    constexpr int Group = 8;
    constexpr uint64_t Opaque = 0xff000000ff000000;
    int done = 0;
    for (; done + Group <= count; done += Group) {
        const uint8_t* from = source + done * PixelBytes;
        uint8_t* to = destination + done * PixelBytes;
        uint64_t words[Group / 2];
        std::memcpy(words, from, sizeof words);
        if ((words[0] | words[1] | words[2] | words[3]) == 0) {
            continue;
        }
        if ((words[0] & words[1] & words[2] & words[3] & Opaque) == Opaque) {
            std::memcpy(to, words, sizeof words);
        } else {
            blendPixels(to, from, Group);
        }
    }
    blendPixels(destination + done * PixelBytes, source + done * PixelBytes, count - done);
}

void fillBlack(Image& frame, const Rect& area) {
    // Opaque black: the first row by hand, the others as its copies.
    for (int x = 0; x < area.w; ++x) {
        constexpr uint32_t Black = 0xff000000;
        std::memcpy(frame.at(area.x + x, area.y), &Black, sizeof Black);
    }
    for (int y = 1; y < area.h; ++y) {
        std::memcpy(frame.at(area.x, area.y + y), frame.at(area.x, area.y),
                    static_cast<size_t>(area.w) * PixelBytes);
    }
}

// The nearest pixels of the source row, for a layer whose picture has another width than its place.
void scaleRow(std::vector<uint8_t>& row, const SurfaceLayer& layer, const uint8_t* source, const Rect& part) {
    row.resize(static_cast<size_t>(part.w) * PixelBytes);
    for (int x = 0; x < part.w; ++x) {
        const int64_t column = int64_t{part.x - layer.place.x + x} * layer.width / layer.place.w;
        std::memcpy(row.data() + static_cast<size_t>(x) * PixelBytes, source + column * PixelBytes,
                    PixelBytes);
    }
}

void drawLayer(Image& frame, const Rect& area, const SurfaceLayer& layer) {
    const Rect part = area.intersected(layer.place);
    if (part.empty()) {
        return;
    }
    if (!layer.pixels) {
        fillBlack(frame, part);
        return;
    }
    const bool scaled = layer.place.w != layer.width || layer.place.h != layer.height;
    std::vector<uint8_t> row;
    for (int y = part.y; y < part.y + part.h; ++y) {
        const int64_t line = int64_t{y - layer.place.y} * layer.height / layer.place.h;
        if (layer.alpha && layer.drawnRows && !(*layer.drawnRows)[static_cast<size_t>(line)]) {
            continue;
        }
        const uint8_t* source = layer.pixels + line * layer.stride;
        if (scaled) {
            scaleRow(row, layer, source, part);
            source = row.data();
        } else {
            source += static_cast<ptrdiff_t>(part.x - layer.place.x) * PixelBytes;
        }
        if (layer.alpha) {
            blendRow(frame.at(part.x, y), source, part.w);
        } else {
            std::memcpy(frame.at(part.x, y), source, static_cast<size_t>(part.w) * PixelBytes);
        }
    }
}

} // namespace

void composeLayers(Image& frame, Rect area, const std::vector<SurfaceLayer>& layers) {
    area = area.intersected({0, 0, frame.width, frame.height});
    if (area.empty()) {
        return;
    }
    // What lies under an opaque picture that covers the area is not drawn at all.
    size_t lowest = layers.size();
    while (lowest > 0) {
        const auto& layer = layers[--lowest];
        if (!layer.alpha && area.intersected(layer.place) == area) {
            break;
        }
        if (lowest == 0) {
            fillBlack(frame, area);
        }
    }
    if (layers.empty()) {
        fillBlack(frame, area);
    }
    for (size_t i = lowest; i < layers.size(); ++i) {
        drawLayer(frame, area, layers[i]);
    }
}

void SurfaceDamage::add(Rect rect) {
    if (rect.empty()) {
        return;
    }
    // A united rectangle may in turn touch others.
    for (size_t i = 0; i < m_rects.size();) {
        if (!rect.intersected(m_rects[i]).empty()) {
            rect = rect.united(m_rects[i]);
            m_rects.erase(m_rects.begin() + static_cast<ptrdiff_t>(i));
            i = 0;
        } else {
            ++i;
        }
    }
    if (m_rects.size() == MostRects) {
        rect = rect.united(bounds());
        m_rects.clear();
    }
    m_rects.push_back(rect);
}

Rect SurfaceDamage::bounds() const {
    Rect result;
    for (const auto& rect : m_rects) {
        result = result.united(rect);
    }
    return result;
}

} // namespace zm::bench::screen
