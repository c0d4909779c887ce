#include "services/disc/engine/Mp3Range.h"

#include "base/ByteNumbers.h"

namespace zm::disc::engine {

namespace {

// What every decoder of this format gives before the first sample that was encoded.
constexpr int64_t DecoderDelay = 529;

constexpr size_t TagHeaderBytes = 10;
constexpr size_t FrameBytes = 2048;
constexpr uint64_t ShortTagBytes = 4096;

// Where the sound begins: behind the tags in front of it.
uint64_t behindTags(const ReadBytes& read) {
    constexpr int MostTags = 8;
    constexpr uint64_t Footer = 0x10;
    uint64_t at = 0;
    for (int i = 0; i < MostTags; ++i) {
        const std::string header = read(at, TagHeaderBytes);
        if (header.size() < TagHeaderBytes || !header.starts_with("ID3")) {
            break;
        }
        uint64_t size = 0;
        for (size_t digit = 6; digit < TagHeaderBytes; ++digit) {
            size = size << 7 | (bigEndian(header, digit, 1) & 0x7F);
        }
        at += TagHeaderBytes + size + ((bigEndian(header, 5, 1) & Footer) != 0 ? TagHeaderBytes : 0);
    }
    return at;
}

} // namespace

std::optional<SoundRange> readMp3Range(const ReadBytes& read, uint64_t size) {
    const uint64_t begin = behindTags(read);
    const std::string frame = read(begin, FrameBytes);
    const uint64_t header = bigEndian(frame, 0, 4);
    constexpr uint64_t Mark = 0xFFE00000;
    const auto version = header >> 19 & 3; // 3 is version 1
    const bool layer3 = (header >> 17 & 3) == 1;
    if ((header & Mark) != Mark || !layer3 || version == 1) {
        return std::nullopt;
    }
    const bool first = version == 3;
    const bool mono = (header >> 6 & 3) == 3;
    size_t at = 4 + (first ? (mono ? 17u : 32u) : (mono ? 9u : 17u));
    const std::string name = frame.size() > at + 4 ? frame.substr(at, 4) : "";
    if (name != "Xing" && name != "Info") {
        return std::nullopt;
    }
    enum Parts : uint64_t { Frames = 1, Bytes = 2, Table = 4, Quality = 8 };
    const uint64_t parts = bigEndian(frame, at + 4, 4);
    const auto frames = static_cast<int64_t>(bigEndian(frame, at + 8, 4));
    const uint64_t bytes = bigEndian(frame, at + 12, 4);
    at += 8 + ((parts & Frames) != 0 ? 4 : 0) + ((parts & Bytes) != 0 ? 4 : 0) +
          ((parts & Table) != 0 ? 100 : 0) + ((parts & Quality) != 0 ? 4 : 0);
    // The encoder's name and what it says of its sound come before its delay and padding, of 12 bits each.
    constexpr size_t DelayAt = 21;
    const bool named = frame.size() > at + DelayAt + 3 && frame[at] != '\0';
    const auto delay = static_cast<int64_t>(bigEndian(frame, at + DelayAt, 3) >> 12);
    const auto padding = static_cast<int64_t>(bigEndian(frame, at + DelayAt, 3) & 0xFFF);
    SoundRange range;
    range.first = delay + DecoderDelay;
    range.count = frames * (first ? 1152 : 576) - delay - padding;
    const bool usable =
        named && (parts & (Frames | Bytes)) == (Frames | Bytes) && delay + padding > 0 && range.count > 0;
    // Other tags than those in front of a file may follow. For short ones the drive is not sent to the file's end.
    const std::string behind = begin + bytes + ShortTagBytes < size ? read(begin + bytes, 4) : "";
    if ((bigEndian(behind, 0, 4) & Mark) == Mark || behind.starts_with("ID3")) {
        range.count = SoundRange::ToTheEnd; // more sound was put behind it
    }
    return usable ? std::optional(range) : std::nullopt;
}

} // namespace zm::disc::engine
