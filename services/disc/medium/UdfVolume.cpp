#include "services/disc/medium/UdfVolume.h"

#include "services/disc/medium/IsoNumbers.h"

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <string_view>

namespace zm::disc::medium {

namespace {

constexpr uint32_t MarkBlockSize = 2048;
// Of disks and of discs.
constexpr uint32_t blockSizes[] = {MarkBlockSize, 512, 4096};
constexpr uint32_t FirstRecognised = 16; // blocks of 2048 bytes, whatever the size of its own
constexpr uint32_t LastRecognised = 64;
constexpr uint32_t AnchorBlock = 256;
constexpr uint32_t MaxDescriptors = 64;

constexpr unsigned AnchorTag = 2;
constexpr unsigned LogicalVolumeTag = 6;
constexpr unsigned TerminatorTag = 8;

constexpr size_t DescriptorBytes = 2048;
constexpr size_t FirstSequencePlace = 16; // of the anchor
constexpr size_t SecondSequencePlace = 24;
constexpr size_t BlockSizePlace = 212;
constexpr size_t RevisionPlace = 240;
constexpr size_t UdfRootPlace = 248;
// Whole blocks, and no real disc has more than a few.
constexpr uint32_t MaxRootBytes = 1u << 20;
constexpr size_t MapBytesPlace = 264;
constexpr size_t MapsPlace = 440;
constexpr size_t MapNamePlace = 5;
constexpr unsigned SpecialMap = 2;

std::string readBytes(ByteReader& image, uint64_t offset, size_t size) {
    std::string bytes(size, '\0');
    const auto count = image.readAt(offset, bytes);
    bytes.resize(count ? *count : 0);
    return bytes;
}

// A descriptor's tag, and what stands behind it.
constexpr size_t TagBytes = 16;
constexpr size_t TagSumPlace = 4;
constexpr size_t SumPlace = 8;
constexpr size_t SummedBytesPlace = 10;
constexpr unsigned NameTag = 257;
constexpr size_t NameFlagsPlace = 18;
constexpr char DeletedName = 4;

uint64_t shortNumber(std::string_view bytes, size_t place) {
    return littleEndian(bytes, place, 2);
}

unsigned sumOf(std::string_view bytes) {
    unsigned sum = 0;
    for (const char each : bytes) {
        sum ^= static_cast<unsigned>(static_cast<unsigned char>(each)) << 8;
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum & 0x8000 ? sum << 1 ^ 0x1021 : sum << 1) & 0xFFFF;
        }
    }
    return sum;
}

bool hasTag(std::string_view bytes) {
    const auto add = [](unsigned sum, char each) { return sum + static_cast<unsigned char>(each); };
    const auto version = bytes.size() < TagBytes ? 0 : shortNumber(bytes, 2);
    return (version == 2 || version == 3) && shortNumber(bytes, 0) != 0 &&
           (std::accumulate(bytes.begin(), bytes.begin() + TagBytes, 0u, add) - isoByte(bytes, TagSumPlace)) %
                   256 ==
               isoByte(bytes, TagSumPlace);
}

// Of what has a tag.
bool isDamaged(std::string_view descriptor) {
    const auto summed = descriptor.substr(TagBytes, shortNumber(descriptor, SummedBytesPlace));
    return summed.size() == shortNumber(descriptor, SummedBytesPlace) && !summed.empty() &&
           sumOf(summed) != shortNumber(descriptor, SumPlace);
}

// They stand one behind the other, each on a place that is divided by four; the first may begin in the block before.
bool hideDamagedNames(std::span<char> block) {
    constexpr size_t Step = 4;
    bool hidden = false;
    for (size_t at = 0; at + TagBytes < block.size(); at += Step) {
        const std::string_view bytes(block.data() + at, block.size() - at);
        if (hasTag(bytes) && shortNumber(bytes, 0) == NameTag && isDamaged(bytes)) {
            block[at + NameFlagsPlace] |= DeletedName;
            hidden = true;
        }
    }
    return hidden;
}

unsigned tagOf(std::string_view descriptor) {
    return descriptor.size() < DescriptorBytes ? 0 : isoNumber32(descriptor, 0) & 0xFFFF;
}

bool isRecognised(ByteReader& image) {
    for (uint32_t block = FirstRecognised; block < LastRecognised; ++block) {
        const std::string mark = readBytes(image, uint64_t{block} * MarkBlockSize, 6);
        if (mark.size() == 6 && (mark.compare(1, 5, "NSR02") == 0 || mark.compare(1, 5, "NSR03") == 0)) {
            return true;
        }
    }
    return false;
}

void takeMaps(std::string_view descriptor, UdfVolume& volume) {
    const size_t bytes =
        std::min<size_t>(isoNumber32(descriptor, MapBytesPlace), DescriptorBytes - MapsPlace);
    std::string_view maps = descriptor.substr(MapsPlace, bytes);
    while (maps.size() > 2) {
        const auto size = static_cast<size_t>(static_cast<unsigned char>(maps[1]));
        if (size < 2 || size > maps.size()) {
            return;
        }
        if (maps[0] == SpecialMap && size > MapNamePlace) {
            const std::string_view name = maps.substr(MapNamePlace, size - MapNamePlace);
            volume.isVirtual |= name.rfind("*UDF Virtual", 0) == 0;
            volume.isSparable |= name.rfind("*UDF Sparable", 0) == 0;
        }
        maps.remove_prefix(size);
    }
}

void takeSequence(ByteReader& image, uint32_t blockSize, uint32_t bytes, uint32_t first, UdfVolume& volume) {
    const uint32_t count = std::min(bytes / blockSize, MaxDescriptors);
    for (uint32_t i = 0; i < count; ++i) {
        const auto descriptor = readBytes(image, (uint64_t{first} + i) * blockSize, DescriptorBytes);
        const unsigned tag = tagOf(descriptor);
        if (tag == LogicalVolumeTag) {
            volume.blockSize = isoNumber32(descriptor, BlockSizePlace);
            volume.revision = static_cast<int>(isoNumber32(descriptor, RevisionPlace) & 0xFFFF);
            const uint32_t rootBytes = isoNumber32(descriptor, UdfRootPlace);
            if (rootBytes == 0 || rootBytes % MarkBlockSize != 0 || rootBytes > MaxRootBytes) {
                volume.badRootBytes = rootBytes;
            }
            takeMaps(descriptor, volume);
        }
        if (tag == 0 || tag == TerminatorTag) {
            break;
        }
    }
}

// The descriptors stand there twice.
bool takeDescriptors(ByteReader& image, uint32_t blockSize, UdfVolume& volume) {
    const auto anchor = readBytes(image, uint64_t{AnchorBlock} * blockSize, DescriptorBytes);
    if (tagOf(anchor) != AnchorTag) {
        return false;
    }
    for (const size_t place : {SecondSequencePlace, FirstSequencePlace}) {
        takeSequence(image, blockSize, isoNumber32(anchor, place), isoNumber32(anchor, place + 4), volume);
    }
    return volume.blockSize != 0;
}

} // namespace

bool hideDamage(std::span<char> blocks) {
    bool hidden = false;
    for (size_t at = 0; at + MarkBlockSize <= blocks.size(); at += MarkBlockSize) {
        const auto block = blocks.subspan(at, MarkBlockSize);
        const std::string_view bytes(block.data(), block.size());
        const auto tag = hasTag(bytes) ? shortNumber(bytes, 0) : 0;
        if (tag <= NameTag) {
            hidden |= hideDamagedNames(block);
        } else if (isDamaged(bytes)) {
            std::fill(block.begin(), block.end(), '\0');
            hidden = true;
        }
    }
    return hidden;
}

std::string UdfVolume::name() const {
    if (revision == 0) {
        return "UDF";
    }
    char text[32];
    std::snprintf(text, sizeof text, "UDF %x.%02x", static_cast<unsigned>(revision) >> 8,
                  static_cast<unsigned>(revision) & 0xFF);
    return text;
}

std::optional<UdfVolume> findUdfVolume(ByteReader& image) {
    if (!isRecognised(image)) {
        return std::nullopt;
    }
    UdfVolume volume;
    for (const uint32_t size : blockSizes) {
        if (takeDescriptors(image, size, volume)) {
            break;
        }
    }
    return volume;
}

} // namespace zm::disc::medium
