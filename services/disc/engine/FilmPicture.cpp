#include "services/disc/engine/FilmPicture.h"

#include <libyuv.h>

#include <algorithm>
#include <cstring>

namespace zm::disc::engine {

namespace {

constexpr int PixelBytes = 4;
// From here on a picture has so many more points than the place for it that all of them have to count.
constexpr int Reduction = 2;

struct Planes {
    const uint8_t* brightness;
    const uint8_t* blue;
    const uint8_t* red;
    int brightnessStride;
    int blueStride;
    int redStride;
    int width;
    int height;
};

int half(int length) {
    return (length + 1) / 2;
}

// One point of colour belongs to four of brightness, so that margins are even.
Planes planesOf(const GstVideoFrame& picture, const PictureMargins& margins) {
    const int left = std::clamp(margins.sides, 0, (GST_VIDEO_FRAME_WIDTH(&picture) - 1) / 2) & ~1;
    const int top = std::clamp(margins.topAndBottom, 0, (GST_VIDEO_FRAME_HEIGHT(&picture) - 1) / 2) & ~1;
    const auto plane = [&](int number, int x, int y) {
        return static_cast<const uint8_t*>(GST_VIDEO_FRAME_COMP_DATA(&picture, number)) +
               static_cast<ptrdiff_t>(y) * GST_VIDEO_FRAME_COMP_STRIDE(&picture, number) + x;
    };
    return {plane(GST_VIDEO_COMP_Y, left, top),
            plane(GST_VIDEO_COMP_U, left / 2, top / 2),
            plane(GST_VIDEO_COMP_V, left / 2, top / 2),
            GST_VIDEO_FRAME_COMP_STRIDE(&picture, GST_VIDEO_COMP_Y),
            GST_VIDEO_FRAME_COMP_STRIDE(&picture, GST_VIDEO_COMP_U),
            GST_VIDEO_FRAME_COMP_STRIDE(&picture, GST_VIDEO_COMP_V),
            GST_VIDEO_FRAME_WIDTH(&picture) - 2 * left,
            GST_VIDEO_FRAME_HEIGHT(&picture) - 2 * top};
}

const libyuv::YuvConstants* coloursOf(const GstVideoColorimetry& colours) {
    const bool full = colours.range == GST_VIDEO_COLOR_RANGE_0_255;
    switch (colours.matrix) {
    case GST_VIDEO_COLOR_MATRIX_BT709:
        return full ? &libyuv::kYuvF709Constants : &libyuv::kYuvH709Constants;
    case GST_VIDEO_COLOR_MATRIX_BT2020:
        return full ? &libyuv::kYuvV2020Constants : &libyuv::kYuv2020Constants;
    default:
        return full ? &libyuv::kYuvJPEGConstants : &libyuv::kYuvI601Constants;
    }
}

void convert(const Planes& from, const libyuv::YuvConstants* colours, uint8_t* to, int stride) {
    libyuv::I420ToARGBMatrix(from.brightness, from.brightnessStride, from.blue, from.blueStride, from.red,
                             from.redStride, to, stride, colours, from.width, from.height);
}

void blacken(uint8_t* pixels, int stride, const ScreenPart& part) {
    const auto left = static_cast<size_t>(part.x) * PixelBytes;
    const auto right = static_cast<size_t>(PictureWidth - part.x - part.width) * PixelBytes;
    for (int y = 0; y < PictureHeight; ++y, pixels += stride) {
        if (y < part.y || y >= part.y + part.height) {
            std::memset(pixels, 0, static_cast<size_t>(PictureWidth) * PixelBytes);
        } else {
            std::memset(pixels, 0, left);
            std::memset(pixels + static_cast<size_t>(PictureWidth) * PixelBytes - right, 0, right);
        }
    }
}

} // namespace

void FilmPicture::draw(const GstVideoFrame& picture, const PictureMargins& margins, uint8_t* pixels,
                       int stride) {
    const Planes from = planesOf(picture, margins);
    const auto* colours = coloursOf(picture.info.colorimetry);
    const ScreenPart part = placeOnScreen({from.width, from.height, picture.info.par_n, picture.info.par_d});
    uint8_t* to =
        pixels + static_cast<ptrdiff_t>(part.y) * stride + static_cast<ptrdiff_t>(part.x) * PixelBytes;
    blacken(pixels, stride, part);
    if (from.width == part.width && from.height == part.height) {
        convert(from, colours, to, stride);
    } else if (from.width < Reduction * part.width && from.height < Reduction * part.height) {
        // The library scales pixels in less time than their planes.
        const int between = from.width * PixelBytes;
        m_between.resize(static_cast<size_t>(between) * from.height);
        convert(from, colours, m_between.data(), between);
        libyuv::ARGBScale(m_between.data(), between, from.width, from.height, to, stride, part.width,
                          part.height, libyuv::kFilterBilinear);
    } else {
        const int width = part.width;
        const int colourWidth = half(width);
        const size_t points = static_cast<size_t>(width) * part.height;
        const size_t colourPoints = static_cast<size_t>(colourWidth) * half(part.height);
        m_between.resize(points + 2 * colourPoints);
        uint8_t* brightness = m_between.data();
        uint8_t* blue = brightness + points;
        uint8_t* red = blue + colourPoints;
        libyuv::I420Scale(from.brightness, from.brightnessStride, from.blue, from.blueStride, from.red,
                          from.redStride, from.width, from.height, brightness, width, blue, colourWidth, red,
                          colourWidth, width, part.height, libyuv::kFilterBox);
        convert({brightness, blue, red, width, colourWidth, colourWidth, width, part.height}, colours, to,
                stride);
    }
}

} // namespace zm::disc::engine
