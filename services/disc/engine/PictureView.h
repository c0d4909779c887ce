#pragma once

#include <array>
#include <cstddef>

namespace zm::disc::engine {

/** How a picture is looked at: enlarged around its middle, and turned clockwise by quarters. */
struct PictureView {
    static constexpr std::array<double, 4> zooms{1.0, 1.5, 2.0, 3.0};
    size_t zoomStep = 0;
    int quarterTurns = 0;

    double zoom() const { return zooms[zoomStep]; }
    void nextZoom() { zoomStep = (zoomStep + 1) % zooms.size(); }
    void turn() { quarterTurns = (quarterTurns + 1) % 4; }
};

} // namespace zm::disc::engine
