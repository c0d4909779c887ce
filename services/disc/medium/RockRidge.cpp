#include "services/disc/medium/RockRidge.h"

#include "services/disc/medium/IsoNumbers.h"

namespace zm::disc::medium {

namespace {

// A name or a chain of continuations longer than any real one is an image that wants to keep us busy.
constexpr size_t MaxName = 1024;
constexpr int MaxAreas = 16;

constexpr size_t EntryHeader = 4;
constexpr size_t ContinuationSize = 28;
constexpr size_t RelocationSize = 12;
constexpr size_t NameHeader = 5;
constexpr size_t SharingSize = 7;

// A link's parts: a name or one of those.
constexpr unsigned PartGoesOn = 0x01;
constexpr unsigned PartHere = 0x02;
constexpr unsigned PartAbove = 0x04;
constexpr unsigned PartRoot = 0x08;

// Compressed files.
constexpr size_t CompressedSize = 16;
constexpr std::string_view CompressedPlainly = "pz";

// The path that a link's parts make; `goesOn`: the last part does so in the next entry.
void readLink(std::string_view parts, std::string& link, bool& goesOn) {
    constexpr size_t PartHeader = 2;
    while (parts.size() >= PartHeader && link.size() < MaxName) {
        const unsigned flags = isoByte(parts, 0);
        const size_t size = std::min<size_t>(isoByte(parts, 1), parts.size() - PartHeader);
        if (!goesOn && !link.empty() && link.back() != '/') {
            link += '/';
        }
        if (flags & PartRoot) {
            link.assign(1, '/');
        } else if (flags & PartAbove) {
            link += "..";
        } else if (flags & PartHere) {
            link += ".";
        } else {
            link += parts.substr(PartHeader, size);
        }
        goesOn = (flags & PartGoesOn) != 0;
        parts.remove_prefix(PartHeader + size);
    }
}

// Where entries go on.
struct Continuation {
    uint64_t offset = 0;
    uint32_t size = 0;
};

std::optional<Continuation> readArea(std::string_view area, RockRidge& found) {
    std::optional<Continuation> next;
    bool linkGoesOn = false;
    while (area.size() >= EntryHeader) {
        const size_t size = static_cast<unsigned char>(area[2]);
        if (size < EntryHeader || size > area.size()) {
            break;
        }
        const std::string_view entry = area.substr(0, size);
        const std::string_view kind = entry.substr(0, 2);
        if (kind == "NM" && size > NameHeader && found.name.size() < MaxName) {
            found.name += entry.substr(NameHeader);
        } else if (kind == "CL" && size >= RelocationSize) {
            found.relocated = isoNumber32(entry, 4);
        } else if (kind == "SL" && size > NameHeader) {
            readLink(entry.substr(NameHeader), found.link, linkGoesOn);
        } else if (kind == "ZF" && size >= CompressedSize) {
            const bool plainly = entry.substr(4, 2) == CompressedPlainly;
            // Without sizes it is one that nobody here can read, and says so when it is opened.
            found.compressed =
                plainly ? ZisofsHeader{isoNumber32(entry, 8), isoByte(entry, 6) * 4u, isoByte(entry, 7)}
                        : ZisofsHeader{};
        } else if (kind == "RE") {
            found.hidden = true;
        } else if (kind == "CE" && size >= ContinuationSize) {
            next = Continuation{isoBlock(isoNumber32(entry, 4)) + isoNumber32(entry, 12),
                                isoNumber32(entry, 20)};
        } else if (kind == "ST") {
            break;
        }
        area.remove_prefix(size);
    }
    return next;
}

} // namespace

RockRidge readRockRidge(ByteReader& image, std::string_view area) {
    RockRidge found;
    auto next = readArea(area, found);
    for (int areas = 0; next && areas < MaxAreas; ++areas) {
        std::string more(std::min<size_t>(next->size, IsoBlockSize), '\0');
        const auto count = image.readAt(next->offset, more);
        if (!count) {
            break;
        }
        next = readArea(std::string_view(more).substr(0, *count), found);
    }
    return found;
}

std::optional<size_t> rockRidgeSkip(std::string_view area) {
    if (area.size() < SharingSize || area.substr(0, 2) != "SP" || area.substr(4, 2) != "\xBE\xEF") {
        return std::nullopt;
    }
    return static_cast<unsigned char>(area[6]);
}

} // namespace zm::disc::medium
