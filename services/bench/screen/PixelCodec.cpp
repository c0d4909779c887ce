#include "services/bench/screen/PixelCodec.h"

#include <spng.h>
#include <turbojpeg.h>

#include <memory>
#include <vector>

namespace zm::bench::screen {

Result<std::string> encodePng(const PixelView& view, int level) {
    const std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)> context(spng_ctx_new(SPNG_CTX_ENCODER),
                                                                      spng_ctx_free);
    if (!context) {
        return Error{"PNG: out of memory"};
    }
    spng_set_option(context.get(), SPNG_ENCODE_TO_BUFFER, 1);
    spng_set_option(context.get(), SPNG_IMG_COMPRESSION_LEVEL, level);
    spng_set_option(context.get(), SPNG_FILTER_CHOICE, SPNG_FILTER_CHOICE_SUB);
    spng_ihdr header{};
    header.width = static_cast<uint32_t>(view.area.w);
    header.height = static_cast<uint32_t>(view.area.h);
    header.bit_depth = 8;
    header.color_type = SPNG_COLOR_TYPE_TRUECOLOR;
    spng_set_ihdr(context.get(), &header);
    int error = spng_encode_image(context.get(), nullptr, 0, SPNG_FMT_PNG,
                                  SPNG_ENCODE_PROGRESSIVE | SPNG_ENCODE_FINALIZE);
    std::vector<uint8_t> row(static_cast<size_t>(view.area.w) * 3);
    for (int y = 0; y < view.area.h && error == 0; ++y) {
        const uint8_t* from =
            view.pixels + static_cast<ptrdiff_t>(view.area.y + y) * view.stride + view.area.x * 4;
        for (size_t x = 0; x < row.size(); x += 3, from += 4) {
            row[x] = from[2];
            row[x + 1] = from[1];
            row[x + 2] = from[0];
        }
        error = spng_encode_row(context.get(), row.data(), row.size());
    }
    size_t size = 0;
    std::unique_ptr<void, decltype(&free)> bytes(nullptr, free);
    if (error == SPNG_EOI) {
        bytes.reset(spng_get_png_buffer(context.get(), &size, &error));
    }
    if (!bytes) {
        return Error{std::string("PNG: ") + spng_strerror(error)};
    }
    return std::string(static_cast<const char*>(bytes.get()), size);
}

Result<std::string> encodeJpeg(const PixelView& view, int quality) {
    // The compressor keeps tables worth keeping; each thread that encodes has its own.
    thread_local const std::unique_ptr<void, decltype(&tjDestroy)> compressor(tjInitCompress(), tjDestroy);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    const uint8_t* from = view.pixels + static_cast<ptrdiff_t>(view.area.y) * view.stride + view.area.x * 4;
    const int failed = tjCompress2(compressor.get(), from, view.area.w, view.stride, view.area.h, TJPF_BGRX,
                                   &bytes, &size, TJSAMP_420, quality, TJFLAG_FASTDCT);
    const std::unique_ptr<unsigned char, decltype(&tjFree)> owner(bytes, tjFree);
    if (failed) {
        return Error{std::string("JPEG: ") + tjGetErrorStr2(compressor.get())};
    }
    return std::string(reinterpret_cast<const char*>(bytes), size);
}

} // namespace zm::bench::screen
