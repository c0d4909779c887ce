#include "services/disc/cover/PngText.h"

#include <spng.h>

#include <cstdlib>
#include <memory>

namespace zm::disc::cover {

namespace {

// A cover is written once and read a few times, from memory.
constexpr int FastCompression = 3;

} // namespace

Result<std::string> pngOf(const Bitmap& picture) {
    const std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)> context(spng_ctx_new(SPNG_CTX_ENCODER),
                                                                      spng_ctx_free);
    if (!context) {
        return Error{"PNG: out of memory"};
    }
    spng_set_option(context.get(), SPNG_ENCODE_TO_BUFFER, 1);
    spng_set_option(context.get(), SPNG_IMG_COMPRESSION_LEVEL, FastCompression);
    spng_set_option(context.get(), SPNG_FILTER_CHOICE, SPNG_FILTER_CHOICE_SUB);
    spng_ihdr header{};
    header.width = picture.width;
    header.height = picture.height;
    header.bit_depth = 8;
    header.color_type = SPNG_COLOR_TYPE_TRUECOLOR;
    spng_set_ihdr(context.get(), &header);
    std::vector<uint8_t> bytes;
    bytes.reserve(picture.pixels.size() / 4 * 3);
    for (size_t at = 0; at + 3 < picture.pixels.size(); at += 4) {
        bytes.insert(bytes.end(), &picture.pixels[at], &picture.pixels[at] + 3);
    }
    int error =
        spng_encode_image(context.get(), bytes.data(), bytes.size(), SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE);
    size_t size = 0;
    std::unique_ptr<void, decltype(&free)> png(nullptr, free);
    if (error == 0) {
        png.reset(spng_get_png_buffer(context.get(), &size, &error));
    }
    if (!png) {
        return Error{std::string("PNG: ") + spng_strerror(error)};
    }
    return std::string(static_cast<const char*>(png.get()), size);
}

} // namespace zm::disc::cover
