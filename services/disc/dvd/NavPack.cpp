#include "services/disc/dvd/NavPack.h"

#include "base/ByteNumbers.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace zm::disc::dvd {

namespace {

using Bytes = std::span<const uint8_t>;

constexpr size_t PackBytes = 2048;
// The packet with the presentation's control information, behind pack and system header.
constexpr size_t PacketAt = 38;
constexpr size_t KindAt = PacketAt + 6;
constexpr size_t ControlAt = KindAt + 1;
// In the control information.
constexpr size_t BeginAt = ControlAt + 12;
constexpr size_t EndAt = ControlAt + 16;
constexpr size_t ElapsedAt = ControlAt + 24;
constexpr size_t HighlightAt = ControlAt + 96;
// In the packet behind it, with the data for searches.
constexpr size_t SearchPacketAt = 1024;
constexpr size_t SearchKindAt = SearchPacketAt + 6;
constexpr size_t PictureEndAt = SearchKindAt + 13;
// In the highlight's information.
constexpr size_t GroupsAt = HighlightAt + 14;
constexpr size_t CountAt = HighlightAt + 17;
constexpr size_t ColoursAt = HighlightAt + 22;
constexpr size_t ButtonsAt = ColoursAt + 24;

constexpr int MaxButtons = 36;
constexpr size_t ButtonBytes = 18;
constexpr int MaxGroups = 3;
constexpr int WideGroup = 1;
constexpr int MaxElapsed = 24 * 3600;

uint32_t number32(Bytes bytes, size_t at) {
    return static_cast<uint32_t>(bigEndian(bytes, at, 4));
}

int decimal(int binaryCoded) {
    return (binaryCoded >> 4) * 10 + (binaryCoded & 15);
}

int64_t elapsed(Bytes bytes) {
    const int seconds =
        (decimal(bytes[ElapsedAt]) * 60 + decimal(bytes[ElapsedAt + 1])) * 60 + decimal(bytes[ElapsedAt + 2]);
    const int frames = decimal(bytes[ElapsedAt + 3] & 0x3f);
    const bool twentyFive = (bytes[ElapsedAt + 3] >> 6) == 1;
    return std::min(seconds, MaxElapsed) * TicksPerSecond + frames * TicksPerSecond / (twentyFive ? 25 : 30);
}

// Buttons may be there once for each shape of the picture; which group is for the one that is shown.
int groupFor(Bytes bytes, int groups, bool wide) {
    const std::array<int, MaxGroups> shapes{bytes[GroupsAt] & 7, bytes[GroupsAt + 1] >> 4 & 7,
                                            bytes[GroupsAt + 1] & 7};
    for (int group = 0; wide && group < groups; ++group) {
        if (shapes[static_cast<size_t>(group)] & WideGroup) {
            return group;
        }
    }
    return 0;
}

MenuButton buttonFrom(Bytes bytes, size_t at) {
    MenuButton button;
    const auto pair = [&](size_t from) {
        return std::pair{(bytes[from] & 0x3f) << 4 | bytes[from + 1] >> 4,
                         (bytes[from + 1] & 3) << 8 | bytes[from + 2]};
    };
    std::tie(button.left, button.right) = pair(at);
    std::tie(button.top, button.bottom) = pair(at + 3);
    const int colour = bytes[at] >> 6;
    if (colour > 0) {
        const size_t colours = ColoursAt + static_cast<size_t>(colour - 1) * 8;
        button.chosen = number32(bytes, colours);
        button.pressed = number32(bytes, colours + 4);
    }
    return button;
}

} // namespace

int NavPack::buttonAt(int x, int y) const {
    const auto found = std::find_if(buttons.begin(), buttons.end(),
                                    [=](const MenuButton& each) { return each.contains(x, y); });
    return found == buttons.end() ? 0 : static_cast<int>(found - buttons.begin()) + 1;
}

std::optional<NavPack> readNavPack(Bytes bytes, bool wide) {
    constexpr std::array<uint8_t, 4> packet{0, 0, 1, 0xbf};
    if (bytes.size() < PackBytes || !std::equal(packet.begin(), packet.end(), bytes.begin() + PacketAt) ||
        bytes[KindAt] != 0) {
        return std::nullopt;
    }
    NavPack pack;
    pack.begin = number32(bytes, BeginAt);
    pack.end = number32(bytes, EndAt);
    pack.elapsed = elapsed(bytes);
    pack.hasPicture = bytes[SearchKindAt] != 1 || number32(bytes, PictureEndAt) != 0;
    pack.change = static_cast<ButtonChange>(bytes[HighlightAt + 1] & 3);
    if (pack.change == ButtonChange::None) {
        return pack;
    }
    const int groups = std::clamp(bytes[GroupsAt] >> 4 & 3, 1, MaxGroups);
    const int room = MaxButtons / groups;
    const int count = std::min<int>(bytes[CountAt] & 0x3f, room);
    const int first = groupFor(bytes, groups, wide) * room;
    for (int i = 0; i < count; ++i) {
        pack.buttons.push_back(buttonFrom(bytes, ButtonsAt + static_cast<size_t>(first + i) * ButtonBytes));
    }
    return pack;
}

} // namespace zm::disc::dvd
