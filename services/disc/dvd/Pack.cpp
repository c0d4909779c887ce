#include "services/disc/dvd/Pack.h"

#include "base/ByteNumbers.h"

#include <algorithm>

namespace zm::disc::dvd {

namespace {

using Bytes = std::span<const uint8_t>;

constexpr size_t PackHeader = 14;
constexpr size_t PacketHeader = 6;
constexpr size_t StreamHeader = 9;

constexpr uint8_t PackStart = 0xba;
constexpr uint8_t VideoStream = 0xe0;
constexpr uint8_t PrivateStream = 0xbd;
constexpr uint8_t FirstMpegSound = 0xc0;
constexpr uint8_t LastMpegSound = 0xdf;

// Kinds of private streams by their first byte: numbers from `first` on, and what stands in front of the
// data.
struct PrivateRow {
    uint8_t first;
    uint8_t count;
    Fragment::Kind kind;
    zm::dvd::SoundKind sound;
    uint8_t header; ///< bytes that the decoder does not get
};
constexpr PrivateRow privateRows[] = {
    {0x20, 32, Fragment::Kind::Subtitle, zm::dvd::SoundKind::Unknown, 1},
    {0x80, 8, Fragment::Kind::Sound, zm::dvd::SoundKind::Ac3, 4},
    {0x88, 8, Fragment::Kind::Sound, zm::dvd::SoundKind::Dts, 4},
    // Its decoder wants the pointer to the first unit and what follows it.
    {0xa0, 8, Fragment::Kind::Sound, zm::dvd::SoundKind::Lpcm, 2},
};
constexpr size_t FullSoundHeader = 4;

bool startsAt(Bytes bytes, size_t at) {
    return at + 4 <= bytes.size() && bytes[at] == 0 && bytes[at + 1] == 0 && bytes[at + 2] == 1;
}

int64_t timeAt(Bytes bytes, size_t at) {
    return (static_cast<int64_t>(bytes[at] & 0x0e) << 29) | (bytes[at + 1] << 22) |
           ((bytes[at + 2] & 0xfe) << 14) | (bytes[at + 3] << 7) | (bytes[at + 4] >> 1);
}

// What kind of private stream it is, and its data.
bool takePrivate(Fragment& fragment, Bytes data) {
    for (const auto& row : privateRows) {
        if (data.size() <= row.header || data[0] < row.first || data[0] >= row.first + row.count) {
            continue;
        }
        fragment.kind = row.kind;
        fragment.sound = row.sound;
        fragment.stream = data[0] - row.first;
        fragment.data = data.subspan(row.header);
        if (row.header == FullSoundHeader) {
            // Counted from the pointer's own last byte: 1 is right behind it.
            const size_t pointer = bigEndian(data, 2, 2);
            fragment.firstUnit = pointer > 1 && pointer - 1 < fragment.data.size() ? pointer - 1 : 0;
        }
        return true;
    }
    return false;
}

// One packet, from the byte behind its length on.
std::optional<Fragment> fragmentOf(uint8_t stream, Bytes packet) {
    constexpr size_t FlagsAt = 0;
    constexpr size_t TimesAt = 3;
    constexpr size_t FixedPart = StreamHeader - PacketHeader;
    if (packet.size() < FixedPart || packet.size() < FixedPart + packet[2]) {
        return std::nullopt;
    }
    const size_t header = FixedPart + packet[2];
    Fragment fragment;
    fragment.scrambled = (packet[FlagsAt] & 0x30) != 0;
    if ((packet[1] & 0x80) && packet[2] >= 5) {
        fragment.time = timeAt(packet, TimesAt);
    }
    if ((packet[1] & 0x40) && packet[2] >= 10) {
        fragment.decodeTime = timeAt(packet, TimesAt + 5);
    }
    const Bytes data = packet.subspan(header);
    if (stream == PrivateStream) {
        if (!takePrivate(fragment, data)) {
            return std::nullopt;
        }
    } else {
        fragment.kind = stream == VideoStream ? Fragment::Kind::Video : Fragment::Kind::Sound;
        fragment.sound = stream == VideoStream ? zm::dvd::SoundKind::Unknown : zm::dvd::SoundKind::Mpeg;
        fragment.stream = stream == VideoStream ? 0 : stream & 7;
        fragment.data = data;
    }
    return fragment.data.empty() ? std::nullopt : std::optional(fragment);
}

} // namespace

std::vector<Fragment> splitPack(Bytes pack) {
    std::vector<Fragment> fragments;
    if (pack.size() < PackHeader || !startsAt(pack, 0) || pack[3] != PackStart) {
        return fragments;
    }
    size_t at = PackHeader + (pack[13] & 7);
    while (startsAt(pack, at) && at + PacketHeader <= pack.size()) {
        const uint8_t stream = pack[at + 3];
        const size_t length = bigEndian(pack, at + 4, 2);
        const size_t begin = at + PacketHeader;
        const Bytes packet = pack.subspan(begin, std::min(length, pack.size() - begin));
        if (stream == VideoStream || stream == PrivateStream ||
            (stream >= FirstMpegSound && stream <= LastMpegSound)) {
            if (const auto fragment = fragmentOf(stream, packet)) {
                fragments.push_back(*fragment);
            }
        }
        at = begin + length;
    }
    return fragments;
}

} // namespace zm::disc::dvd
