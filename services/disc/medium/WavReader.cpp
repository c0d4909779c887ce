#include "services/disc/medium/WavReader.h"

#include <algorithm>

namespace zm::disc::medium {

namespace {

constexpr uint32_t Channels = 2;
constexpr uint32_t SamplesPerSecond = 44100;
constexpr uint32_t BytesPerSample = 2;
constexpr uint32_t FormatBytes = 16;
constexpr uint32_t PlainSamples = 1;
// What the first size counts beside the sound: all of the header behind it.
constexpr uint32_t HeaderRest = 36;

void put(std::string& header, uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        header += static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

std::string headerOf(uint32_t bytes) {
    std::string header = "RIFF";
    put(header, HeaderRest + bytes, 4);
    header += "WAVEfmt ";
    put(header, FormatBytes, 4);
    put(header, PlainSamples, 2);
    put(header, Channels, 2);
    put(header, SamplesPerSecond, 4);
    put(header, SamplesPerSecond * Channels * BytesPerSample, 4);
    put(header, Channels * BytesPerSample, 2);
    put(header, BytesPerSample * 8, 2);
    header += "data";
    put(header, bytes, 4);
    return header;
}

} // namespace

WavReader::WavReader(std::unique_ptr<ByteReader> sound)
    : m_sound(std::move(sound)), m_header(headerOf(static_cast<uint32_t>(m_sound->size()))) {}

Result<size_t> WavReader::readAt(uint64_t offset, std::span<char> buffer) {
    size_t done = 0;
    if (offset < m_header.size()) {
        done = m_header.copy(buffer.data(), buffer.size(), offset);
    }
    if (done == buffer.size()) {
        return done;
    }
    const auto count = m_sound->readAt(offset + done - m_header.size(), buffer.subspan(done));
    if (!count) {
        return count;
    }
    return done + *count;
}

} // namespace zm::disc::medium
