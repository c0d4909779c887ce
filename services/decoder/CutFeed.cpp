#include "services/decoder/CutFeed.h"

#include <algorithm>
#include <cstdint>

namespace zm::decoder {

namespace {

constexpr int64_t SectorsPerSecond = 75;
// More in a row is no scratch.
constexpr int64_t MostLostSeconds = 4;
constexpr uint64_t PlainSamples = 1;
constexpr uint64_t FormatBytes = 16;
// What the first size counts beside the sound: all of the header behind it.
constexpr uint64_t HeaderRest = 36;
// As much as the sizes in the header can say.
constexpr int64_t MostBytes = UINT32_MAX - int64_t{HeaderRest};

void put(std::string& header, uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        header += static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

std::string headerOf(const SF_INFO& info, int64_t sampleBytes, int64_t bytes) {
    const auto channels = static_cast<uint64_t>(info.channels);
    const auto rate = static_cast<uint64_t>(info.samplerate);
    const auto frame = channels * static_cast<uint64_t>(sampleBytes);
    std::string header = "RIFF";
    put(header, HeaderRest + static_cast<uint64_t>(bytes), 4);
    header += "WAVEfmt ";
    put(header, FormatBytes, 4);
    put(header, PlainSamples, 2);
    put(header, channels, 2);
    put(header, rate, 4);
    put(header, rate * frame, 4);
    put(header, frame, 2);
    put(header, static_cast<uint64_t>(sampleBytes) * 8, 2);
    header += "data";
    put(header, static_cast<uint64_t>(bytes), 4);
    return header;
}

} // namespace

CutFeed::CutFeed(std::shared_ptr<disc::engine::ByteFeed> file, int64_t first, std::optional<int64_t> count,
                 int64_t silence)
    : m_file(std::move(file)), m_firstSector(first), m_sectors(count), m_silentSectors(silence) {}

int64_t CutFeed::frames(int64_t sectors) const {
    return sectors * m_info.samplerate / SectorsPerSecond;
}

void CutFeed::openSound() {
    SF_VIRTUAL_IO bytes{sizeOf, seekTo, readInto, nullptr, placeOf};
    m_filePlace = 0;
    m_next = 0;
    m_sound.reset();
    m_info = {};
    m_sound.reset(::sf_open_virtual(&bytes, SFM_READ, &m_info, this));
    // Sound that is louder than its numbers can say is not to turn over.
    ::sf_command(m_sound.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
}

Result<uint64_t> CutFeed::open() {
    const auto size = m_file->open();
    if (!size) {
        return size;
    }
    m_fileSize = *size;
    openSound();
    if (const std::string why = m_file->failure(); !why.empty()) {
        return Error{why};
    }
    if (!m_sound || m_info.channels < 1 || m_info.samplerate < 1) {
        return Error{"cannot be decoded"};
    }
    m_bytesPerSample =
        (m_info.format & SF_FORMAT_SUBMASK) == SF_FORMAT_PCM_16 ? sizeof(int16_t) : sizeof(int32_t);
    m_begin = frames(m_firstSector);
    if (m_begin >= m_info.frames) {
        return Error{"its file ends before it"};
    }
    m_count = m_info.frames - m_begin;
    if (m_sectors) {
        // Both ends are rounded, so that nothing is lost between two tracks.
        m_count = std::min(m_count, frames(m_firstSector + *m_sectors) - m_begin);
    }
    const int64_t most = MostBytes / (m_bytesPerSample * m_info.channels);
    m_count = std::min(m_count, most);
    m_silence = std::min(frames(m_silentSectors), most - m_count);
    const int64_t all = (m_count + m_silence) * m_info.channels * m_bytesPerSample;
    const std::string header = headerOf(m_info, m_bytesPerSample, all);
    m_header = header; // moved, it would look to the compiler as if it overflowed
    return m_header.size() + static_cast<uint64_t>(all);
}

std::vector<char> CutFeed::fetch(uint64_t offset) {
    const uint64_t place = std::max<uint64_t>(offset, m_header.size()) - m_header.size();
    const int64_t frameBytes = m_info.channels * m_bytesPerSample;
    const auto frame = static_cast<int64_t>(place) / frameBytes;
    const int64_t count =
        std::min(static_cast<int64_t>(BlockBytes) / frameBytes, m_count + m_silence - frame);
    if (count <= 0) {
        return {};
    }
    std::vector<char> bytes(static_cast<size_t>(count * frameBytes));
    const int64_t heard = std::min(count, m_count - frame);
    if (heard > 0 && !decode(m_begin + frame, heard, bytes.data())) {
        return {};
    }
    bytes.erase(bytes.begin(), bytes.begin() + static_cast<int64_t>(place) % frameBytes);
    if (offset < m_header.size()) {
        bytes.insert(bytes.begin(), m_header.begin() + static_cast<std::ptrdiff_t>(offset), m_header.end());
    }
    return bytes;
}

// What cannot be decoded is silent, as a scratch is.
bool CutFeed::decode(int64_t frame, int64_t count, char* bytes) {
    int64_t done = 0;
    if (m_next == frame || ::sf_seek(m_sound.get(), frame, SEEK_SET) == frame) {
        done = m_bytesPerSample == sizeof(int16_t)
                   ? ::sf_readf_short(m_sound.get(), reinterpret_cast<int16_t*>(bytes), count)
                   : ::sf_readf_int(m_sound.get(), reinterpret_cast<int32_t*>(bytes), count);
    }
    m_next = frame + done;
    if (done == count) {
        return true;
    }
    // The same place may be read again and again.
    m_lost = (frame == m_lostEnd ? m_lost : 0) + count - done;
    m_lostEnd = frame + count;
    if (m_lost > MostLostSeconds * m_info.samplerate) {
        fail("cannot be decoded");
        return false;
    }
    // After an error the library finds its way in no other way.
    const SF_INFO before = m_info;
    openSound();
    const bool same = m_sound && m_info.channels == before.channels && m_info.samplerate == before.samplerate;
    m_info = before;
    if (!same) {
        fail("cannot be decoded");
    }
    return same;
}

void CutFeed::fail(const std::string& why) {
    const MutexLock lock(m_mutex);
    m_failure = why;
}

std::string CutFeed::failure() const {
    if (std::string why = m_file->failure(); !why.empty()) {
        return why;
    }
    const MutexLock lock(m_mutex);
    return m_failure;
}

// ---- the file as the library reads it

sf_count_t CutFeed::sizeOf(void* self) {
    return static_cast<sf_count_t>(static_cast<CutFeed*>(self)->m_fileSize);
}

sf_count_t CutFeed::placeOf(void* self) {
    return static_cast<sf_count_t>(static_cast<CutFeed*>(self)->m_filePlace);
}

sf_count_t CutFeed::seekTo(sf_count_t offset, int whence, void* self) {
    auto* feed = static_cast<CutFeed*>(self);
    const sf_count_t from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? placeOf(self) : sizeOf(self);
    feed->m_filePlace = static_cast<uint64_t>(std::clamp<sf_count_t>(from + offset, 0, sizeOf(self)));
    return placeOf(self);
}

sf_count_t CutFeed::readInto(void* bytes, sf_count_t count, void* self) {
    auto* feed = static_cast<CutFeed*>(self);
    const auto found =
        feed->m_file->read(feed->m_filePlace, static_cast<size_t>(std::max<sf_count_t>(count, 0)));
    std::copy(found.begin(), found.end(), static_cast<char*>(bytes));
    feed->m_filePlace += found.size();
    return static_cast<sf_count_t>(found.size());
}

} // namespace zm::decoder
