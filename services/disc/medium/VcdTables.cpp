#include "services/disc/medium/VcdTables.h"

#include "base/ByteNumbers.h"

#include <algorithm>
#include <array>

namespace zm::disc::medium {

namespace {

constexpr std::array<std::string_view, 3> discMarks{"VIDEO_CD", "SUPERVCD", "HQ-VCD  "};
constexpr std::array<std::string_view, 2> entryMarks{"ENTRYVCD", "ENTRYSVD"};
constexpr uint32_t FramesPerSecond = 75;
// The first two seconds of a disc are not counted as sectors.
constexpr uint32_t LeadIn = 150;

// In INFO.
constexpr size_t ListBytesAt = 44;
constexpr size_t SegmentsBeginAt = 48;
constexpr size_t UnitAt = 51;
constexpr size_t SegmentCountAt = 54;
constexpr size_t SegmentKindsAt = 56;
constexpr uint32_t SegmentSectors = 150;
constexpr int MaxSegments = 1980;

// In ENTRIES.
constexpr size_t EntryCountAt = 10;
constexpr size_t EntriesAt = 12;
constexpr size_t EntryBytes = 4;
constexpr size_t MaxEntries = 500;

// More lists than any disc has; what a table full of noise names is bounded by it.
constexpr size_t MaxLists = 4096;
// Likewise items and choices of all lists.
constexpr size_t MaxMembers = 20000;

enum ListType : uint8_t { Items = 0x10, Menu = 0x18, MenuWithAreas = 0x1a, End = 0x1f };

// In a list of items.
constexpr size_t ItemsHead = 14;
// In a menu.
constexpr size_t MenuHead = 20;
constexpr uint8_t LoopsMask = 0x7f;
// Lengths are in fifteenths of a second.
constexpr int LengthUnits = 15;

constexpr uint32_t number(std::string_view bytes, size_t at, size_t count) {
    return static_cast<uint32_t>(bigEndian(bytes, at, count));
}

uint32_t decimal(std::string_view bytes, size_t at) {
    const uint32_t value = number(bytes, at, 1);
    return (value >> 4) * 10 + (value & 15);
}

// A time as minutes, seconds and frames, from the beginning of the disc.
uint32_t sectorAt(std::string_view bytes, size_t at) {
    const uint32_t frames =
        (decimal(bytes, at) * 60 + decimal(bytes, at + 1)) * FramesPerSecond + decimal(bytes, at + 2);
    return frames < LeadIn ? 0 : frames - LeadIn;
}

template <size_t Count>
bool beginsWithOne(std::string_view bytes, const std::array<std::string_view, Count>& wanted) {
    return std::any_of(wanted.begin(), wanted.end(),
                       [=](std::string_view each) { return bytes.starts_with(each); });
}

std::map<int, VcdSegment> segmentsOf(std::string_view info) {
    std::map<int, VcdSegment> segments;
    const uint32_t first = sectorAt(info, SegmentsBeginAt);
    const int count = std::min(static_cast<int>(number(info, SegmentCountAt, 2)), MaxSegments);
    VcdSegment* last = nullptr;
    for (int i = 0; i < count; ++i) {
        const uint32_t kind = number(info, SegmentKindsAt + static_cast<size_t>(i), 1);
        const bool goesOn = (kind & 0x20) != 0;
        if (goesOn && last) {
            last->sectors += SegmentSectors;
            continue;
        }
        const uint32_t picture = kind >> 2 & 7;
        const bool moves = picture == 3 || picture == 7;
        last = &(segments[i] = {first + static_cast<uint32_t>(i) * SegmentSectors, SegmentSectors, !moves});
    }
    return segments;
}

std::optional<std::chrono::seconds> waitOf(uint32_t code) {
    constexpr uint32_t ForEver = 255;
    constexpr uint32_t Fine = 60;
    if (code == ForEver) {
        return std::nullopt;
    }
    return std::chrono::seconds(code <= Fine ? code : Fine + (code - Fine) * 10);
}

/** Reads the lists, each place once. */
class ListReader {
public:
    ListReader(std::string_view bytes, uint32_t unit, const VcdItems& items)
        : m_bytes(bytes), m_unit(unit), m_items(items) {}

    /** The place in the result of the list at `offset`, which is read later. */
    model::PlayList::Target target(uint32_t offset) {
        constexpr uint32_t FirstSpecial = 0xfffd; // several standards, or none
        const size_t at = size_t{offset} * m_unit;
        if (offset >= FirstSpecial || !isList(at)) {
            return std::nullopt;
        }
        if (const auto known = m_places.find(at); known != m_places.end()) {
            return known->second;
        }
        if (m_places.size() >= MaxLists) {
            return std::nullopt;
        }
        m_wanted.push_back(at);
        return m_places[at] = m_wanted.size() - 1;
    }

    model::PlayLists readAll() {
        model::PlayLists all;
        for (size_t i = 0; i < m_wanted.size(); ++i) { // reading finds further ones
            all.lists.push_back(read(m_bytes.substr(m_wanted[i])));
        }
        return all;
    }

private:
    bool isList(size_t at) const {
        if (at >= m_bytes.size()) {
            return false;
        }
        const std::string_view list = m_bytes.substr(at);
        switch (number(list, 0, 1)) {
        case ListType::Items:
            return list.size() >= ItemsHead + 2 * number(list, 1, 1);
        case ListType::Menu:
        case ListType::MenuWithAreas:
            return list.size() >= MenuHead + 2 * number(list, 2, 1);
        case ListType::End:
            return true;
        default:
            return false;
        }
    }

    model::PlayList read(std::string_view list) {
        switch (number(list, 0, 1)) {
        case ListType::Items:
            return readItems(list);
        case ListType::End:
            return {};
        default:
            return readMenu(list);
        }
    }

    model::PlayList readItems(std::string_view list) {
        model::PlayList made;
        made.kind = model::PlayList::Kind::Items;
        made.previous = target(number(list, 4, 2));
        made.next = target(number(list, 6, 2));
        made.back = target(number(list, 8, 2));
        made.length = std::chrono::milliseconds(number(list, 10, 2) * 1000 / LengthUnits);
        made.wait = waitOf(number(list, 12, 1));
        for (uint32_t i = 0; i < number(list, 1, 1) && hasRoom(); ++i) {
            addItem(made, number(list, ItemsHead + 2 * i, 2));
        }
        return made;
    }

    model::PlayList readMenu(std::string_view list) {
        model::PlayList made;
        made.kind = model::PlayList::Kind::Menu;
        made.firstNumber = static_cast<int>(number(list, 3, 1));
        made.previous = target(number(list, 6, 2));
        made.next = target(number(list, 8, 2));
        made.back = target(number(list, 10, 2));
        made.standard = target(number(list, 12, 2));
        made.timeout = target(number(list, 14, 2));
        made.wait = waitOf(number(list, 16, 1));
        made.plays = static_cast<int>(number(list, 17, 1) & LoopsMask);
        addItem(made, number(list, 18, 2));
        for (uint32_t i = 0; i < number(list, 2, 1) && hasRoom(); ++i) {
            made.choices.push_back(target(number(list, MenuHead + 2 * i, 2)));
        }
        return made;
    }

    bool hasRoom() { return ++m_members <= MaxMembers; }

    void addItem(model::PlayList& list, uint32_t code) {
        constexpr uint32_t Entries = 100;
        constexpr uint32_t Segments = 1000;
        std::optional<model::ListItem> item;
        if (code >= 2 && code < Entries) {
            item = m_items.track(static_cast<int>(code));
        } else if (code >= Entries && code < Entries + MaxEntries) {
            item = m_items.entry(code - Entries);
        } else if (code >= Segments && code < Segments + MaxSegments) {
            item = m_items.segment(static_cast<int>(code - Segments));
        }
        if (item) {
            list.items.push_back(std::move(*item));
        }
    }

    std::string_view m_bytes;
    uint32_t m_unit;
    const VcdItems& m_items;
    std::map<size_t, size_t> m_places; ///< of the lists, by their first byte
    std::vector<size_t> m_wanted;      ///< first bytes of the lists
    size_t m_members = 0;
};

} // namespace

std::optional<VcdInfo> readVcdInfo(std::string_view info, std::string_view entries) {
    if (!beginsWithOne(info, discMarks)) {
        return std::nullopt;
    }
    VcdInfo made;
    made.listBytes = number(info, ListBytesAt, 4);
    made.unit = std::clamp<uint32_t>(number(info, UnitAt, 1), 1, 8);
    made.segments = segmentsOf(info);
    if (beginsWithOne(entries, entryMarks)) {
        const size_t count = std::min<size_t>(number(entries, EntryCountAt, 2), MaxEntries);
        for (size_t at = EntriesAt; at < EntriesAt + count * EntryBytes && at + EntryBytes <= entries.size();
             at += EntryBytes) {
            made.entries.push_back({static_cast<int>(decimal(entries, at)), sectorAt(entries, at + 1)});
        }
    }
    return made;
}

model::PlayLists readPlayLists(std::string_view offsets, std::string_view lists, uint32_t unit,
                               const VcdItems& items) {
    ListReader reader(lists, unit, items);
    // Number 1 stands behind two bytes that say nothing.
    for (size_t at = 2; at + 2 <= offsets.size(); at += 2) {
        const bool first = at == 2;
        if (!reader.target(number(offsets, at, 2)) && first) {
            return {};
        }
    }
    return reader.readAll();
}

} // namespace zm::disc::medium
