#include "services/cover/Decoder.h"

#include "services/cover/Jail.h"
#include "services/cover/Output.h"

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string_view>
#include <vector>

namespace zm::cover {

namespace {

using namespace std::string_view_literals;

constexpr int64_t MaxPixels = 100'000'000;
// What of a picture may be cut off for a square: of sleeves that were photographed or scanned a little more than a
// tenth is margin.
constexpr double NearlySquare = 1.15;

/** The bytes of a picture; nothing behind its end. */
class Bytes {
public:
    explicit Bytes(std::string_view text) : m_text(text) {}
    size_t at(size_t place) const { return place < m_text.size() ? static_cast<uint8_t>(m_text[place]) : 0; }
    std::string_view text() const { return m_text; }

private:
    std::string_view m_text;
};

// The decoder fills up with grey what a JPEG lacks. Its end stands behind the first scan; one before that belongs to a
// preview.
bool isWholeJpeg(const Bytes& bytes) {
    constexpr size_t Scan = 0xDA;
    size_t place = 2;
    while (place < bytes.text().size() && bytes.at(place) == 0xFF && bytes.at(place + 1) != Scan) {
        place += 2 + bytes.at(place + 2) * 256 + bytes.at(place + 3);
    }
    return bytes.text().find("\xFF\xD9"sv, place) != std::string_view::npos;
}

// Black.
bool isWholeBmp(const Bytes& bytes) {
    const size_t told = bytes.at(2) | bytes.at(3) << 8 | bytes.at(4) << 16 | bytes.at(5) << 24;
    return told <= bytes.text().size();
}

bool tellsByItsRows(const Bytes&) {
    return true;
}

struct FormatRow {
    std::string_view signature;
    const char* name;
    bool (*isWhole)(const Bytes& bytes);
    bool scales = false;
};
constexpr FormatRow formats[] = {{"\xFF\xD8\xFF"sv, "jpeg", isWholeJpeg, true},
                                 {"\x89PNG\r\n\x1A\n"sv, "png", tellsByItsRows},
                                 {"GIF8"sv, "gif", tellsByItsRows},
                                 {"BM"sv, "bmp", isWholeBmp}};

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
using Pixbuf = std::unique_ptr<GdkPixbuf, Unref>;
using Loader = std::unique_ptr<GdkPixbufLoader, Unref>;

struct Size {
    int width;
    int height;
};

bool isNearlySquare(int width, int height) {
    return std::max(width, height) <= std::min(width, height) * NearlySquare;
}

// The shorter side of what is cut to a square, the longer one of all else, becomes `side`.
Size scaled(int width, int height, int side) {
    const int from = isNearlySquare(width, height) ? std::min(width, height) : std::max(width, height);
    const auto part = [&](int length) {
        return std::max(1, static_cast<int>(std::lround(static_cast<double>(length) * side / from)));
    };
    return {part(width), part(height)};
}

// How far a picture has come.
struct Progress {
    int side;
    bool scales; ///< the decoder makes it smaller while it decodes
    int rows = 0;
};

void sizeKnown(GdkPixbufLoader* loader, int width, int height, void* data) {
    if (width <= 0 || height <= 0 || int64_t{width} * height > MaxPixels) {
        ::_exit(1);
    }
    const auto& progress = *static_cast<Progress*>(data);
    if (progress.scales) {
        const Size size = scaled(width, height, progress.side);
        gdk_pixbuf_loader_set_size(loader, size.width, size.height);
    }
}

void rowsDecoded(GdkPixbufLoader*, int /*x*/, int y, int /*width*/, int height, void* data) {
    auto& progress = *static_cast<Progress*>(data);
    progress.rows = std::max(progress.rows, y + height);
}

Error errorOf(GError* error) {
    Error result{error ? error->message : "cannot be decoded"};
    g_clear_error(&error);
    return result;
}

// Standard input as it lies in memory, for as long as this process lives.
Result<std::string_view> input() {
    struct stat info {};
    if (::fstat(STDIN_FILENO, &info) != 0 || !S_ISREG(info.st_mode)) {
        return Error{"standard input is no file"};
    }
    const auto size = static_cast<size_t>(info.st_size);
    void* bytes = size > 0 ? ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, STDIN_FILENO, 0) : nullptr;
    if (bytes == MAP_FAILED) {
        return systemError("standard input");
    }
    return std::string_view(static_cast<const char*>(bytes), bytes ? size : 0);
}

Status feed(GdkPixbufLoader* loader, std::string_view bytes) {
    GError* error = nullptr;
    if (!gdk_pixbuf_loader_write(loader, reinterpret_cast<const guchar*>(bytes.data()), bytes.size(),
                                 &error)) {
        gdk_pixbuf_loader_close(loader, nullptr);
        return errorOf(error);
    }
    return gdk_pixbuf_loader_close(loader, &error) ? ok() : Status(errorOf(error));
}

// Of four bytes a pixel, on white where it can be seen through.
std::vector<uint8_t> pixelsOf(const GdkPixbuf* picture, int left, int top, int width, int height) {
    const guchar* rows = gdk_pixbuf_read_pixels(picture);
    const int stride = gdk_pixbuf_get_rowstride(picture);
    const int channels = gdk_pixbuf_get_n_channels(picture);
    std::vector<uint8_t> pixels;
    pixels.reserve(static_cast<size_t>(width) * static_cast<size_t>(height) * 4);
    for (int y = top; y < top + height; ++y) {
        const guchar* from = rows + static_cast<ptrdiff_t>(y) * stride + left * channels;
        for (int x = 0; x < width; ++x, from += channels) {
            const int opaque = channels == 4 ? from[3] : 255;
            for (int channel = 0; channel < 3; ++channel) {
                pixels.push_back(static_cast<uint8_t>((from[channel] * opaque + 255 * (255 - opaque)) / 255));
            }
            pixels.push_back(255);
        }
    }
    return pixels;
}

} // namespace

Status decode(int side) {
    const auto bytes = input();
    if (!bytes) {
        return bytes.failure();
    }
    const auto* row = std::find_if(std::begin(formats), std::end(formats),
                                   [&](const FormatRow& each) { return bytes->starts_with(each.signature); });
    if (row == std::end(formats)) {
        return Error{"no picture of a known format"};
    }
    GError* error = nullptr;
    const Loader loader(gdk_pixbuf_loader_new_with_type(row->name, &error)); // loads what decodes it
    if (!loader) {
        return errorOf(error);
    }
    Progress progress{side, row->scales};
    g_signal_connect(loader.get(), "size-prepared", G_CALLBACK(sizeKnown), &progress);
    g_signal_connect(loader.get(), "area-updated", G_CALLBACK(rowsDecoded), &progress);
    if (auto locked = lockIn(); !locked) {
        return locked;
    }
    if (auto fed = feed(loader.get(), *bytes); !fed) {
        return fed;
    }
    GdkPixbuf* decoded = gdk_pixbuf_loader_get_pixbuf(loader.get());
    if (decoded && (progress.rows < gdk_pixbuf_get_height(decoded) || !row->isWhole(Bytes(*bytes)))) {
        return Error{"breaks off"};
    }
    const Pixbuf upright(decoded ? gdk_pixbuf_apply_embedded_orientation(decoded) : nullptr);
    if (!upright) {
        return Error{"cannot be decoded"};
    }
    const Size is{gdk_pixbuf_get_width(upright.get()), gdk_pixbuf_get_height(upright.get())};
    const Size wanted = scaled(is.width, is.height, side);
    const Pixbuf fitted(
        gdk_pixbuf_scale_simple(upright.get(), wanted.width, wanted.height, GDK_INTERP_BILINEAR));
    if (!fitted) {
        return Error{"out of memory"};
    }
    const int width = std::min(wanted.width, side);
    const int height = std::min(wanted.height, side);
    const auto pixels =
        pixelsOf(fitted.get(), (wanted.width - width) / 2, (wanted.height - height) / 2, width, height);
    return writePicture(static_cast<uint32_t>(width), static_cast<uint32_t>(height), pixels.data());
}

} // namespace zm::cover
