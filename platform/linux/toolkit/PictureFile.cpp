#include "platform/linux/toolkit/PictureFile.h"

#include "base/ByteNumbers.h"

#include <cairo.h>

#include <cstring>
#include <fstream>
#include <iterator>

namespace zm {

namespace {

constexpr uint64_t mostSide = 1024;
constexpr size_t mostBytes = 8 << 20;
constexpr size_t sidesAt = 16;

/** The bytes that are still to be read. */
struct Rest {
    const std::string& bytes;
    size_t done = 0;
};

cairo_status_t readOn(void* closure, unsigned char* data, unsigned length) {
    auto& rest = *static_cast<Rest*>(closure);
    if (rest.bytes.size() - rest.done < length) {
        return CAIRO_STATUS_READ_ERROR;
    }
    std::memcpy(data, rest.bytes.data() + rest.done, length);
    rest.done += length;
    return CAIRO_STATUS_SUCCESS;
}

bool isSmall(const std::string& bytes) {
    if (bytes.size() < sidesAt + 8 || bytes.size() > mostBytes) {
        return false;
    }
    const uint64_t width = bigEndian(bytes, sidesAt, 4);
    const uint64_t height = bigEndian(bytes, sidesAt + 4, 4);
    return width > 0 && width <= mostSide && height > 0 && height <= mostSide;
}

} // namespace

PictureFilePtr readPictureFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (!isSmall(bytes)) {
        return nullptr;
    }
    Rest rest{bytes};
    cairo_surface_t* read = cairo_image_surface_create_from_png_stream(readOn, &rest);
    PictureFilePtr result;
    if (cairo_surface_status(read) == CAIRO_STATUS_SUCCESS) {
        // Whatever the file holds, drawn over nothing it has all four channels.
        auto picture = std::make_shared<PictureFile>();
        picture->width = cairo_image_surface_get_width(read);
        picture->height = cairo_image_surface_get_height(read);
        picture->stride = picture->width * 4;
        picture->pixels.resize(static_cast<size_t>(picture->stride) * static_cast<size_t>(picture->height));
        cairo_surface_t* surface = cairo_image_surface_create_for_data(
            picture->pixels.data(), CAIRO_FORMAT_ARGB32, picture->width, picture->height, picture->stride);
        cairo_t* cairo = cairo_create(surface);
        cairo_set_source_surface(cairo, read, 0, 0);
        cairo_paint(cairo);
        cairo_destroy(cairo);
        cairo_surface_finish(surface);
        cairo_surface_destroy(surface);
        result = picture;
    }
    cairo_surface_destroy(read);
    return result;
}

} // namespace zm
