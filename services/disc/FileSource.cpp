#include "services/disc/FileSource.h"

#include <string_view>
#include <vector>

namespace zm::disc {

namespace {

constexpr uint64_t MaxPhotoBytes = 256u << 20;

// The only GIF decoder wants whole images. The element that would cut the file into them never notices the
// file's end and keeps a processor busy for ever, so that it is passed by: the first image is all we show.
constexpr std::string_view GifSignature = "GIF8";
constexpr const char* GifImage = "image/gst-libav-gif, parsed=(boolean)true";

GstOwned<GstBuffer> bufferOf(std::vector<char> bytes) {
    if (bytes.empty()) {
        return nullptr;
    }
    auto* kept = new std::vector<char>(std::move(bytes));
    return GstOwned<GstBuffer>(gst_buffer_new_wrapped_full(
        GST_MEMORY_FLAG_READONLY, kept->data(), kept->size(), 0, kept->size(), kept,
        [](gpointer data) { delete static_cast<std::vector<char>*>(data); }));
}

} // namespace

Status FileSource::open() {
    const auto size = m_feed->open();
    if (!size) {
        return Error{size.error()};
    }
    m_size = *size;
    if (m_kind != MediaKind::Photo) {
        return ok();
    }
    if (m_size > MaxPhotoBytes) {
        return Error{"too large a photo"};
    }
    m_photo = bufferOf(m_feed->read(0, static_cast<size_t>(m_size)));
    const std::string failure = m_feed->failure();
    return failure.empty() ? ok() : Error{failure};
}

GstOwned<GstCaps> FileSource::caps() const {
    const bool gif =
        m_photo && gst_buffer_memcmp(m_photo.get(), 0, GifSignature.data(), GifSignature.size()) == 0;
    return GstOwned<GstCaps>(gif ? gst_caps_from_string(GifImage) : nullptr);
}

GstOwned<GstBuffer> FileSource::read(uint64_t offset, size_t size) {
    if (m_kind == MediaKind::Photo) {
        return GstOwned<GstBuffer>(offset == 0 && m_photo ? gst_buffer_ref(m_photo.get()) : nullptr);
    }
    const std::lock_guard lock(m_mutex);
    return bufferOf(m_feed->read(offset, size));
}

} // namespace zm::disc
