#include "services/disc/engine/FileSource.h"

#include "services/disc/engine/ReadSoundRange.h"

#include <string_view>
#include <vector>

namespace zm::disc::engine {

namespace {

constexpr uint64_t MaxPhotoBytes = 256u << 20;

// The only GIF decoder wants whole images. The element that would cut the file into them never notices the
// file's end and keeps a processor busy for ever, so that it is passed by: the first image is all we show.
constexpr const char* GifImage = "image/gst-libav-gif, parsed=(boolean)true";

const char* capsOf(PhotoFormat format) {
    switch (format) {
    case PhotoFormat::Jpeg:
        return "image/jpeg";
    case PhotoFormat::Png:
        return "image/png";
    case PhotoFormat::Gif:
        return GifImage;
    case PhotoFormat::Bmp:
        return "image/bmp";
    }
    return nullptr;
}

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
        return size.failure();
    }
    m_size = *size;
    if (m_kind == model::MediaKind::Music) {
        const auto read = [this](uint64_t offset, size_t bytes) {
            const std::vector<char> found = m_feed->read(offset, bytes);
            return std::string(found.begin(), found.end());
        };
        m_sound = readSoundRange(read, m_size);
    }
    if (m_kind != model::MediaKind::Photo) {
        return ok();
    }
    if (m_size > MaxPhotoBytes) {
        return Error{"too large a photo"};
    }
    std::vector<char> bytes = m_feed->read(0, static_cast<size_t>(m_size));
    if (const std::string failure = m_feed->failure(); !failure.empty()) {
        return Error{failure};
    }
    const auto header = readPhotoHeader({bytes.data(), bytes.size()});
    if (!header) {
        return header.failure();
    }
    if (auto showable = header->showable(); !showable) {
        return showable;
    }
    m_header = *header;
    // What follows the picture (a film, a preview) would be taken for another one.
    bytes.resize(static_cast<size_t>(m_header.length));
    m_photo = bufferOf(std::move(bytes));
    return ok();
}

GstOwned<GstCaps> FileSource::caps() const {
    return GstOwned<GstCaps>(m_photo ? gst_caps_from_string(capsOf(m_header.format)) : nullptr);
}

bool FileSource::isQuiet(std::chrono::milliseconds time) const {
    return m_reads == 0 &&
           Clock::now().time_since_epoch().count() - m_lastRead >= Clock::duration(time).count();
}

void FileSource::patch(uint64_t offset, std::vector<char>& bytes) const {
    for (const auto& each : m_sound.patches) {
        for (size_t i = 0; i < each.bytes.size(); ++i) {
            const uint64_t place = each.offset + i;
            if (place >= offset && place < offset + bytes.size()) {
                bytes[static_cast<size_t>(place - offset)] = each.bytes[i];
            }
        }
    }
}

GstOwned<GstBuffer> FileSource::read(uint64_t offset, size_t size) {
    if (m_kind == model::MediaKind::Photo) {
        return GstOwned<GstBuffer>(offset == 0 && m_photo ? gst_buffer_ref(m_photo.get()) : nullptr);
    }
    ++m_reads;
    auto buffer = [&] {
        const MutexLock lock(m_mutex);
        std::vector<char> bytes = m_feed->read(offset, size);
        patch(offset, bytes);
        return bufferOf(std::move(bytes));
    }();
    m_lastRead = Clock::now().time_since_epoch().count();
    --m_reads;
    return buffer;
}

} // namespace zm::disc::engine
