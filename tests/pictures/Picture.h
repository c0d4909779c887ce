#pragma once

#include "services/bench/screen/Compositor.h"

#include <optional>
#include <string>

namespace zm::test {

/** A PNG file as a picture; nothing if it cannot be read. */
std::optional<Image> readPng(const std::string& file);
/** Writes the picture, as small as PNG gets it; false if it cannot. */
bool writePng(const std::string& file, const Image& picture);

/** How two pictures differ, colour by colour; what A says does not matter. */
struct Difference {
    bool sameSize = true;
    int pixels = 0; ///< that differ
    int x = 0;      ///< the first of them, row by row
    int y = 0;
    std::string reference; ///< its colours, "#RRGGBB"
    std::string picture;

    bool none() const { return sameSize && pixels == 0; }
    /** One line for people. */
    std::string text() const;
};

/** A channel may be off by one: blending rounds differently with other compilers. */
inline constexpr int Tolerance = 1;

Difference compare(const Image& reference, const Image& picture);
/** The picture in pale grey, and in red what differs from a reference of the same size. */
Image differencePicture(const Image& reference, const Image& picture);
/** The pictures in rows of `columns`, at half their size. */
Image montage(const std::vector<Image>& pictures, int columns);

} // namespace zm::test
