#include "fuzz/formats/IsoRecords.h"

#include <algorithm>
#include <array>

namespace zm::fuzz {

namespace {

constexpr size_t FixedBytes = 33;
constexpr size_t ExtentAt = 2;
constexpr size_t SizeAt = 10;
constexpr size_t FlagsAt = 25;
constexpr size_t NameSizeAt = 32;
constexpr size_t EntryHeader = 4;
constexpr size_t MostBytes = 255;

constexpr std::array<uint32_t, 10> sizes{0, 1, 7, 2047, 2048, 2049, 4096, 64u << 20, 0x7fffffff, 0xffffffff};
constexpr std::array<char, 6> flags{0, 2, 2, static_cast<char>(0x80), static_cast<char>(0x82), 1};

size_t byteOf(std::string_view bytes, size_t at) {
    return static_cast<uint8_t>(bytes[at]);
}

std::string entry(const std::string& kind, const std::string& body) {
    return kind + static_cast<char>(body.size() + EntryHeader) + '\1' + body;
}

uint32_t someBlock(Random& random) {
    constexpr size_t Blocks = 16;
    return random.oneIn(12) ? random.pick(sizes)
                            : FirstIsoBlock + static_cast<uint32_t>(random.below(Blocks));
}

std::string newEntry(Random& random) {
    switch (random.below(9)) {
    case 0:
        return entry("NM", std::string(1, random.oneIn(3) ? '\1' : '\0') + "a.mp3");
    case 1:
        return entry("CL", bothEndian(someBlock(random)));
    case 2:
        return entry("RE", "");
    case 3:
        return entry("CE", bothEndian(someBlock(random)) + bothEndian(random.oneIn(2) ? 0 : 40) +
                               bothEndian(random.pick(sizes)));
    case 4:
        return entry("ST", "");
    case 5: // a link: flags of the link, then its parts
        return entry("SL", std::string(1, '\0') + static_cast<char>(1 << random.below(4)) +
                               std::string(1, '\0') + std::string("\0\5a.mp3", 7));
    case 6:
        return entry("ZF", std::string("pz\4\17", 4) + bothEndian(random.pick(sizes)));
    case 7:
        return entry("SP", "\xbe\xef" + std::string(1, static_cast<char>(random.below(8))));
    default:
        return entry("PX", std::string(32, '\0'));
    }
}

} // namespace

std::string bothEndian(uint32_t number) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) {
        bytes += static_cast<char>(number >> shift);
    }
    return bytes + std::string(bytes.rbegin(), bytes.rend());
}

FolderRecord::FolderRecord(std::string_view bytes) : fixed(bytes.substr(0, FixedBytes)) {
    fixed.resize(FixedBytes);
    const auto rest = bytes.substr(std::min(FixedBytes, bytes.size()));
    name = rest.substr(0, byteOf(fixed, NameSizeAt));
    const size_t use = name.size() + (name.size() % 2 == 0);
    systemUse = rockRidgeEntries(rest.substr(std::min(use, rest.size())));
}

std::string FolderRecord::bytes() const {
    const std::string shortName = name.substr(0, MostBytes - FixedBytes - 1);
    std::string all = fixed + shortName;
    all += shortName.size() % 2 == 0 ? std::string(1, '\0') : "";
    for (const auto& each : systemUse) {
        all += all.size() + each.size() < MostBytes ? each : "";
    }
    all += all.size() % 2 && all.size() < MostBytes ? std::string(1, '\0') : "";
    all[0] = static_cast<char>(all.size());
    all[NameSizeAt] = static_cast<char>(shortName.size());
    return all;
}

void FolderRecord::change(const FolderRecord& other, Random& random) {
    switch (random.below(8)) {
    case 0:
        fixed.replace(ExtentAt, 8, bothEndian(someBlock(random)));
        break;
    case 1:
        fixed.replace(SizeAt, 8, bothEndian(random.pick(sizes)));
        break;
    case 2:
        fixed[FlagsAt] = random.pick(flags);
        break;
    case 3:
        name = other.name;
        break;
    case 4: // goes on behind the other
        name = other.name;
        fixed.replace(ExtentAt, 16, other.fixed.substr(ExtentAt, 16));
        break;
    case 5:
        name = withChangedBytes(name, random);
        break;
    default:
        changeRockRidge(systemUse, random);
        break;
    }
}

Pieces folderRecords(std::string_view block) {
    Pieces records;
    while (!block.empty() && byteOf(block, 0) > FixedBytes) {
        const size_t size = std::min(byteOf(block, 0), block.size());
        records.emplace_back(block.substr(0, size));
        block.remove_prefix(size);
    }
    return records;
}

Pieces rockRidgeEntries(std::string_view area) {
    Pieces entries;
    while (area.size() >= EntryHeader && byteOf(area, 2) >= EntryHeader) {
        const size_t size = std::min(byteOf(area, 2), area.size());
        entries.emplace_back(area.substr(0, size));
        area.remove_prefix(size);
    }
    return entries;
}

void changeRockRidge(Pieces& entries, Random& random) {
    const size_t at = random.below(entries.size() + 1);
    if (at == entries.size() || random.oneIn(3)) {
        entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(at), newEntry(random));
    } else if (random.oneIn(3)) {
        entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(at));
    } else {
        std::string body = withChangedBytes(entries[at].substr(EntryHeader), random);
        body.resize(std::min(body.size(), MostBytes - EntryHeader));
        entries[at] = entry(entries[at].substr(0, 2), body);
    }
}

} // namespace zm::fuzz
