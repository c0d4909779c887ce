#include "services/disc/FileSource.h"

#include <gst/app/gstappsrc.h>

#include <string_view>
#include <vector>

namespace zm::disc {

namespace {

constexpr size_t PushBytes = 64 * 1024;
constexpr guint64 QueueBytes = 256 * 1024;
constexpr uint64_t MaxPhotoBytes = 256u << 20;

// The only GIF decoder wants whole images. The element that would cut the file into them never notices the
// file's end and keeps a processor busy for ever, so that it is passed by: the first image is all we show.
constexpr std::string_view GifSignature = "GIF8";
constexpr const char* GifImage = "image/gst-libav-gif, parsed=(boolean)true";

GstOwned<GstBuffer> bufferOf(std::vector<char> bytes) {
    if (bytes.empty()) {
        return GstOwned<GstBuffer>(gst_buffer_new());
    }
    auto* kept = new std::vector<char>(std::move(bytes));
    return GstOwned<GstBuffer>(gst_buffer_new_wrapped_full(
        GST_MEMORY_FLAG_READONLY, kept->data(), kept->size(), 0, kept->size(), kept,
        [](gpointer data) { delete static_cast<std::vector<char>*>(data); }));
}

bool isGif(GstBuffer* photo) {
    return gst_buffer_memcmp(photo, 0, GifSignature.data(), GifSignature.size()) == 0;
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

void FileSource::connect(GstElement* source) {
    seek(0);
    const bool photo = m_kind == MediaKind::Photo;
    g_object_set(source, "format", GST_FORMAT_BYTES, "stream-type",
                 photo ? GST_APP_STREAM_TYPE_STREAM : GST_APP_STREAM_TYPE_RANDOM_ACCESS, "size",
                 static_cast<gint64>(m_size), "max-bytes", QueueBytes, nullptr);
    if (photo && isGif(m_photo.get())) {
        const GstOwned<GstCaps> caps(gst_caps_from_string(GifImage));
        g_object_set(source, "caps", caps.get(), nullptr);
    }
    GstAppSrcCallbacks callbacks{};
    callbacks.need_data = [](GstAppSrc* from, guint size, gpointer self) {
        static_cast<FileSource*>(self)->supply(GST_ELEMENT(from), size);
    };
    callbacks.seek_data = [](GstAppSrc*, guint64 offset, gpointer self) -> gboolean {
        static_cast<FileSource*>(self)->seek(offset);
        return TRUE;
    };
    gst_app_src_set_callbacks(GST_APP_SRC(source), &callbacks, this, nullptr);
}

void FileSource::seek(uint64_t offset) {
    const std::lock_guard lock(m_mutex);
    m_offset = offset;
}

void FileSource::supply(GstElement* source, size_t size) {
    const std::lock_guard lock(m_mutex);
    auto buffer = piece(size);
    const size_t bytes = gst_buffer_get_size(buffer.get());
    if (bytes == 0) {
        gst_app_src_end_of_stream(GST_APP_SRC(source));
        return;
    }
    m_offset += bytes;
    gst_app_src_push_buffer(GST_APP_SRC(source), buffer.release());
}

// Exactly what was asked for is handed over: demuxers that jump about never find their place in larger
// pieces.
GstOwned<GstBuffer> FileSource::piece(size_t size) {
    if (m_kind == MediaKind::Photo) {
        return GstOwned<GstBuffer>(m_offset == 0 ? gst_buffer_ref(m_photo.get()) : gst_buffer_new());
    }
    return bufferOf(m_feed->read(m_offset, size == G_MAXUINT ? PushBytes : size));
}

} // namespace zm::disc
