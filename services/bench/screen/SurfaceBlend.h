#pragma once

#include "base/Image.h"
#include "base/Rect.h"

#include <cstdint>
#include <vector>

namespace zm::bench::screen {

/** One picture on the screen: `source` pixels drawn into `place`, scaled if their sizes differ. */
struct SurfaceLayer {
    const uint8_t* pixels = nullptr; ///< null: black
    int width = 0;
    int height = 0;
    int stride = 0;
    Rect place;
    bool alpha = false; ///< premultiplied alpha counts; else the picture is opaque
    /** Of one with alpha, the rows that are not all clear; null: any may have something. */
    const std::vector<bool>* drawnRows = nullptr;
};

/** Draws `area` of `frame` anew from the layers, lowest first; what no layer covers is black. */
void composeLayers(Image& frame, Rect area, const std::vector<SurfaceLayer>& layers);

/** A few rectangles that together cover all that changed; overlapping and surplus ones are united. */
class SurfaceDamage {
public:
    void add(Rect rect);
    void clear() { m_rects.clear(); }
    bool empty() const { return m_rects.empty(); }
    const std::vector<Rect>& rects() const { return m_rects; }
    /** The smallest rectangle around all. */
    Rect bounds() const;

private:
    std::vector<Rect> m_rects;
};

} // namespace zm::bench::screen
