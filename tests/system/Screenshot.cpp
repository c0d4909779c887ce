#include "tests/system/Screenshot.h"

#include <gtest/gtest.h>
#include <spng.h>

#include <fstream>
#include <memory>
#include <vector>

namespace zm::test {

Pixel pixelOf(const std::string& file, int x, int y) {
    std::ifstream stream(file, std::ios::binary);
    const std::string png((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    const std::unique_ptr<spng_ctx, void (*)(spng_ctx*)> reader(spng_ctx_new(0), spng_ctx_free);
    EXPECT_EQ(spng_set_png_buffer(reader.get(), png.data(), png.size()), 0);
    spng_ihdr size{};
    EXPECT_EQ(spng_get_ihdr(reader.get(), &size), 0);
    std::vector<unsigned char> pixels(size_t{3} * size.width * size.height);
    EXPECT_EQ(spng_decode_image(reader.get(), pixels.data(), pixels.size(), SPNG_FMT_RGB8, 0), 0);
    const unsigned char* pixel =
        &pixels.at(size_t{3} * (size.width * static_cast<size_t>(y) + static_cast<size_t>(x)));
    return {pixel[0], pixel[1], pixel[2]};
}

} // namespace zm::test
