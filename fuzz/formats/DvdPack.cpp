#include "fuzz/formats/DvdPack.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace zm::fuzz {

namespace {

constexpr size_t PackBytes = 2048;
constexpr size_t PackHeader = 14;
constexpr size_t PacketHeader = 6;
constexpr size_t LengthAt = 4;

constexpr std::array<uint8_t, 10> streams{0xe0, 0xbd, 0xc0, 0xc7, 0xdf, 0xbf, 0xbb, 0xbe, 0xe1, 0xbc};
constexpr std::array<uint8_t, 12> privateStreams{0x20, 0x3f, 0x40, 0x7f, 0x80, 0x87,
                                                 0x88, 0x8f, 0xa0, 0xa7, 0xa8, 0xff};

constexpr uint8_t NavigationStream = 0xbf;
// Places in a navigation pack's packet, from its length's end on, which decide.
constexpr std::array<size_t, 14> navigationPlaces{0,   1,   13,  17,  25,  28,  98,
                                                  111, 112, 114, 119, 143, 144, 161};

size_t byteOf(std::string_view bytes, size_t at) {
    return at < bytes.size() ? static_cast<uint8_t>(bytes[at]) : 0;
}

// Begins a packet; the first piece of a pack does not.
bool isPacket(std::string_view piece) {
    return piece.size() >= PacketHeader && piece.starts_with(std::string_view("\0\0\1", 3)) &&
           byteOf(piece, 3) != 0xba;
}

bool isNavigation(std::string_view piece) {
    return isPacket(piece) && byteOf(piece, 3) == NavigationStream;
}

void changePacket(std::string& packet, Random& random) {
    constexpr size_t BodyAt = PacketHeader;
    const auto set = [&](size_t at, size_t value) {
        packet.resize(std::max(packet.size(), at + 1));
        packet[at] = static_cast<char>(value);
    };
    switch (random.below(7)) {
    case 0:
        set(3, random.pick(streams));
        break;
    case 1: { // times, and how many bytes the header has
        constexpr std::array<uint8_t, 6> times{0x00, 0x80, 0xc0, 0x40, 0x81, 0xff};
        constexpr std::array<uint8_t, 7> counts{0, 4, 5, 9, 10, 17, 255};
        set(BodyAt + 1, random.pick(times));
        set(BodyAt + 2, random.pick(counts));
        break;
    }
    case 2: { // a private stream and its pointer
        const size_t data = BodyAt + 3 + byteOf(packet, BodyAt + 2);
        set(3, 0xbd);
        set(data, random.pick(privateStreams));
        set(data + 2, random.oneIn(3) ? random.below(256) : 0);
        set(data + 3, random.below(16));
        break;
    }
    case 3:
        set(BodyAt, 0x80 | random.below(4) << 4);
        break;
    case 4:
        set(BodyAt + random.pick(navigationPlaces), random.below(256));
        break;
    case 5:
        packet.resize(PacketHeader + random.below(packet.size() + 8));
        break;
    default:
        packet = withChangedBytes(packet, random);
        break;
    }
}

void changeNavigation(std::string& packet, Random& random) {
    constexpr std::array<uint8_t, 9> values{0, 1, 2, 3, 0x10, 0x40, 0x59, 0xbf, 0xff};
    constexpr size_t ButtonsAt = 142;
    constexpr size_t ButtonBytes = 18;
    constexpr size_t Buttons = 36;
    const size_t at = PacketHeader + (random.oneIn(4) ? ButtonsAt + random.below(Buttons * ButtonBytes)
                                                      : random.pick(navigationPlaces));
    if (at < packet.size()) {
        packet[at] = static_cast<char>(random.oneIn(2) ? random.pick(values) : random.below(256));
    }
}

class DvdPackFormat : public Format {
public:
    Pieces split(std::string_view input) const override {
        Pieces pieces{std::string(input.substr(0, PackHeader + (byteOf(input, PackHeader - 1) & 7)))};
        input.remove_prefix(pieces.front().size());
        while (isPacket(input)) {
            const size_t size = PacketHeader + (byteOf(input, LengthAt) << 8 | byteOf(input, LengthAt + 1));
            pieces.emplace_back(input.substr(0, size));
            input.remove_prefix(pieces.back().size());
        }
        if (!input.empty()) {
            pieces.emplace_back(input);
        }
        return pieces;
    }

    void change(Pieces& pieces, size_t at, Random& random) const override {
        // What stands in front of a navigation packet keeps its place, most of the time.
        const auto found = std::find_if(pieces.begin(), pieces.end(), isNavigation);
        if (found != pieces.end() && !isNavigation(pieces[at]) && !random.oneIn(8)) {
            at = static_cast<size_t>(found - pieces.begin());
        }
        if (isNavigation(pieces[at]) && !random.oneIn(8)) {
            changeNavigation(pieces[at], random);
        } else if (isPacket(pieces[at])) {
            changePacket(pieces[at], random);
        } else if (at == 0) {
            const size_t stuffing = random.below(8);
            pieces[0].resize(PackHeader - 1);
            pieces[0] += static_cast<char>(0xf8 | stuffing) + std::string(stuffing, '\xff');
        } else {
            pieces[at] = withChangedBytes(pieces[at], random);
        }
    }

    // Each packet says how long it is, and none is longer than a pack.
    void mend(Pieces& pieces) const override {
        for (auto& piece : pieces) {
            if (isPacket(piece)) {
                piece.resize(std::min(piece.size(), PackBytes));
                piece[LengthAt] = static_cast<char>((piece.size() - PacketHeader) >> 8);
                piece[LengthAt + 1] = static_cast<char>((piece.size() - PacketHeader) & 0xff);
            }
        }
    }
    // A navigation pack counts only as a whole one.
    std::string join(const Pieces& pieces) const override {
        const bool navigation = std::any_of(pieces.begin(), pieces.end(), isNavigation);
        std::string pack = joined(pieces);
        pack.resize(navigation ? PackBytes : std::min(pack.size(), PackBytes));
        return pack;
    }
    size_t movesInHundred() const override { return 15; }
};

} // namespace

const Format& dvdPack() {
    static const DvdPackFormat pack;
    return pack;
}

} // namespace zm::fuzz
