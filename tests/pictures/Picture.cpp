#include "tests/pictures/Picture.h"

#include <spng.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>

namespace zm::test {

namespace {

using Context = std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)>;

constexpr int channels = 3;

bool differs(const uint8_t* a, const uint8_t* b) {
    const auto off = [&](int i) { return std::abs(a[i] - b[i]) > Tolerance; };
    return off(0) || off(1) || off(2);
}

std::string colorText(const uint8_t* pixel) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02X%02X%02X", pixel[2], pixel[1], pixel[0]);
    return text;
}

/** Calls task(x, y) for each pixel, row by row. */
template <class Task>
void forEachPixel(const Image& picture, Task task) {
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            task(x, y);
        }
    }
}

void set(uint8_t* pixel, int red, int green, int blue) {
    const uint8_t bytes[] = {static_cast<uint8_t>(blue), static_cast<uint8_t>(green),
                             static_cast<uint8_t>(red), 0xFF};
    std::memcpy(pixel, bytes, sizeof bytes);
}

} // namespace

std::optional<Image> readPng(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(stream), {});
    const Context context(spng_ctx_new(0), spng_ctx_free);
    spng_ihdr header{};
    size_t size = 0;
    if (!stream.is_open() || !context || spng_set_png_buffer(context.get(), bytes.data(), bytes.size()) ||
        spng_get_ihdr(context.get(), &header) ||
        spng_decoded_image_size(context.get(), SPNG_FMT_RGB8, &size)) {
        return std::nullopt;
    }
    std::vector<uint8_t> rgb(size);
    if (spng_decode_image(context.get(), rgb.data(), rgb.size(), SPNG_FMT_RGB8, 0)) {
        return std::nullopt;
    }
    Image picture(static_cast<int>(header.width), static_cast<int>(header.height));
    const uint8_t* from = rgb.data();
    forEachPixel(picture, [&](int x, int y) {
        set(picture.at(x, y), from[0], from[1], from[2]);
        from += channels;
    });
    return picture;
}

bool writePng(const std::string& file, const Image& picture) {
    std::vector<uint8_t> rgb;
    rgb.reserve(static_cast<size_t>(picture.width) * picture.height * channels);
    forEachPixel(picture, [&](int x, int y) {
        const uint8_t* pixel = picture.at(x, y);
        rgb.insert(rgb.end(), {pixel[2], pixel[1], pixel[0]});
    });
    const Context context(spng_ctx_new(SPNG_CTX_ENCODER), spng_ctx_free);
    spng_ihdr header{};
    header.width = static_cast<uint32_t>(picture.width);
    header.height = static_cast<uint32_t>(picture.height);
    header.bit_depth = 8;
    header.color_type = SPNG_COLOR_TYPE_TRUECOLOR;
    constexpr int smallest = 9;
    if (!context || spng_set_option(context.get(), SPNG_ENCODE_TO_BUFFER, 1) ||
        spng_set_option(context.get(), SPNG_IMG_COMPRESSION_LEVEL, smallest) ||
        // Flat areas: filters only disturb the compression.
        spng_set_option(context.get(), SPNG_FILTER_CHOICE, SPNG_DISABLE_FILTERING) ||
        spng_set_ihdr(context.get(), &header) ||
        spng_encode_image(context.get(), rgb.data(), rgb.size(), SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE)) {
        return false;
    }
    size_t size = 0;
    int error = 0;
    const std::unique_ptr<void, decltype(&free)> bytes(spng_get_png_buffer(context.get(), &size, &error),
                                                       free);
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(static_cast<const char*>(bytes.get()), static_cast<std::streamsize>(size));
    stream.close();
    return bytes && stream;
}

std::string Difference::text() const {
    if (!sameSize) {
        return "the sizes differ";
    }
    return std::to_string(pixels) + " pixels differ, the first at " + std::to_string(x) + "," +
           std::to_string(y) + ": expected " + reference + ", found " + picture;
}

Difference compare(const Image& reference, const Image& picture) {
    Difference result;
    result.sameSize = reference.width == picture.width && reference.height == picture.height;
    if (!result.sameSize) {
        return result;
    }
    forEachPixel(picture, [&](int x, int y) {
        if (differs(reference.at(x, y), picture.at(x, y)) && result.pixels++ == 0) {
            result.x = x;
            result.y = y;
            result.reference = colorText(reference.at(x, y));
            result.picture = colorText(picture.at(x, y));
        }
    });
    return result;
}

Image differencePicture(const Image& reference, const Image& picture) {
    Image result(picture.width, picture.height);
    forEachPixel(picture, [&](int x, int y) {
        const uint8_t* pixel = picture.at(x, y);
        const int pale = 170 + (pixel[0] + pixel[1] + pixel[2]) / 9;
        if (differs(reference.at(x, y), pixel)) {
            set(result.at(x, y), 220, 0, 0);
        } else {
            set(result.at(x, y), pale, pale, pale);
        }
    });
    return result;
}

Image montage(const std::vector<Image>& pictures, int columns) {
    constexpr int gap = 8;
    int width = 0;
    int height = 0;
    for (const Image& picture : pictures) {
        width = std::max(width, picture.width / 2);
        height = std::max(height, picture.height / 2);
    }
    const int count = static_cast<int>(pictures.size());
    const int across = std::min(columns, count);
    const int down = across ? (count + across - 1) / across : 0;
    Image sheet(across * (width + gap), down * (height + gap));
    for (int i = 0; i < count; ++i) {
        const Image& picture = pictures[static_cast<size_t>(i)];
        const int left = i % across * (width + gap);
        const int top = i / across * (height + gap);
        for (int y = 0; y < picture.height / 2; ++y) {
            for (int x = 0; x < picture.width / 2; ++x) {
                const auto mean = [&](int channel) {
                    return (picture.at(2 * x, 2 * y)[channel] + picture.at(2 * x + 1, 2 * y)[channel] +
                            picture.at(2 * x, 2 * y + 1)[channel] +
                            picture.at(2 * x + 1, 2 * y + 1)[channel]) /
                           4;
                };
                set(sheet.at(left + x, top + y), mean(2), mean(1), mean(0));
            }
        }
    }
    return sheet;
}

} // namespace zm::test
