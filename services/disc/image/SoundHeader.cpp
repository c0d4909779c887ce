#include "services/disc/image/SoundHeader.h"

#include "base/ByteNumbers.h"

#include <algorithm>
#include <string_view>

namespace zm::disc::image {

namespace {

constexpr size_t ChunkHeader = 8;
constexpr size_t FileHeader = 12;
constexpr int MaxChunks = 100;
constexpr size_t FormatBytes = 40;

constexpr uint64_t Channels = 2;
constexpr uint64_t SamplesPerSecond = 44100;
constexpr uint64_t BitsPerSample = 16;
constexpr uint64_t PlainFormat = 1;
constexpr uint64_t ExtensibleFormat = 0xFFFE;
constexpr size_t SubFormatPlace = 24;
// 44,100 Hz as the extended number of an AIFF file.
constexpr std::string_view AiffRate("\x40\x0E\xAC\x44\0\0\0\0\0\0", 10);

enum class Order { LowFirst, HighFirst };

// 0 where `bytes` is shorter.
uint64_t numberAt(std::string_view bytes, size_t place, size_t count, Order order) {
    if (place + count > bytes.size()) {
        return 0;
    }
    return order == Order::LowFirst ? littleEndian(bytes, place, count) : bigEndian(bytes, place, count);
}

bool isWaveSound(std::string_view format) {
    const auto number = [&](size_t place, size_t count) {
        return numberAt(format, place, count, Order::LowFirst);
    };
    const bool plain = number(0, 2) == PlainFormat ||
                       (number(0, 2) == ExtensibleFormat && number(SubFormatPlace, 2) == PlainFormat);
    return plain && number(2, 2) == Channels && number(4, 4) == SamplesPerSecond &&
           number(14, 2) == BitsPerSample;
}

bool isAiffSound(std::string_view common, bool compressed) {
    const auto number = [&](size_t place, size_t count) {
        return numberAt(common, place, count, Order::HighFirst);
    };
    const std::string_view kind = compressed ? common.substr(std::min<size_t>(18, common.size()), 4) : "NONE";
    return number(0, 2) == Channels && number(6, 2) == BitsPerSample && common.substr(8, 10) == AiffRate &&
           (kind == "NONE" || kind == "twos" || kind == "sowt");
}

/** The chunks of both kinds of file, which differ in the order of their numbers' bytes. */
Result<SoundHeader> readChunks(const ReadHeaderBytes& read, uint64_t size, Order order, bool compressed) {
    SoundHeader header;
    header.extension = order == Order::LowFirst ? ".wav" : ".aiff";
    bool ours = false;
    bool swapped = order == Order::HighFirst;
    uint64_t place = FileHeader;
    for (int chunk = 0; chunk < MaxChunks && place + ChunkHeader <= size; ++chunk) {
        const std::string bytes = read(place, ChunkHeader + FormatBytes);
        const std::string_view name = std::string_view(bytes).substr(0, 4);
        const uint64_t length = numberAt(bytes, 4, 4, order);
        const auto data = std::string_view(bytes).substr(std::min(ChunkHeader, bytes.size()));
        if (name == "fmt ") {
            ours = isWaveSound(data);
        } else if (name == "COMM") {
            ours = isAiffSound(data, compressed);
            swapped = !(compressed && data.substr(std::min<size_t>(18, data.size()), 4) == "sowt");
        } else if (name == "data" || name == "SSND") {
            // In an AIFF file two numbers stand in front of the sound; the first says how much is to be skipped.
            const uint64_t skip = name == "SSND" ? 8 + numberAt(data, 0, 4, order) : 0;
            header.begin = place + ChunkHeader + skip;
            if (header.begin > size) {
                return Error{"its sound lies outside of it"};
            }
            // A file that was never closed says 0 or too much.
            const uint64_t said = length > skip ? length - skip : UINT64_MAX;
            header.bytes = std::min(said, size - header.begin);
            if (ours) {
                header.form = swapped ? SoundHeader::Form::Swapped : SoundHeader::Form::Plain;
            }
            return header;
        }
        place += ChunkHeader + length + length % 2;
    }
    return Error{"has no sound"};
}

int flacSeconds(const std::string& begin) {
    constexpr size_t RatePlace = 18;
    const uint64_t packed = numberAt(begin, RatePlace, 8, Order::HighFirst);
    const uint64_t rate = packed >> 44;
    const uint64_t samples = packed & 0xFFFFFFFFF;
    return rate == 0 ? 0 : static_cast<int>(samples / rate);
}

} // namespace

Result<SoundHeader> readSoundHeader(const ReadHeaderBytes& read, uint64_t size) {
    const std::string begin = read(0, 64);
    const auto starts = [&](std::string_view with, size_t at = 0) {
        return begin.size() >= at + with.size() && std::string_view(begin).substr(at, with.size()) == with;
    };
    if (starts("RIFF") && starts("WAVE", 8)) {
        return readChunks(read, size, Order::LowFirst, false);
    }
    if (starts("FORM") && (starts("AIFF", 8) || starts("AIFC", 8))) {
        return readChunks(read, size, Order::HighFirst, starts("AIFC", 8));
    }
    SoundHeader header;
    if (starts("fLaC")) {
        header.extension = ".flac";
        header.seconds = flacSeconds(begin);
        return header;
    }
    const bool frame = begin.size() > 1 && begin[0] == '\xFF' && (begin[1] & '\xE0') == '\xE0';
    if (starts("ID3") || frame) {
        header.extension = ".mp3";
        return header;
    }
    return Error{"neither WAVE, AIFF, FLAC nor MP3"};
}

} // namespace zm::disc::image
