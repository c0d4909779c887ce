#include "services/disc/medium/IsoDirectory.h"

#include "services/disc/medium/IsoNumbers.h"
#include "services/disc/medium/RockRidge.h"

#include <glib.h>

#include <algorithm>
#include <array>

namespace zm::disc::medium {

namespace {

constexpr uint32_t FirstDescriptor = 16;
constexpr uint32_t LastDescriptor = 48;
constexpr unsigned char PrimaryDescriptor = 1;
constexpr unsigned char SupplementaryDescriptor = 2;
constexpr unsigned char EndOfDescriptors = 255;
constexpr std::string_view signature = "CD001";
constexpr std::array<std::string_view, 3> jolietEscapes{"%/@", "%/C", "%/E"};

constexpr size_t LabelPlace = 40;
constexpr size_t LabelSize = 32;
constexpr size_t EscapePlace = 88;

constexpr size_t RecordHeader = 33;
constexpr size_t BlockPlace = 2; // in a record
constexpr size_t SizePlace = 10;
constexpr unsigned char FolderFlag = 0x02;
constexpr unsigned char GoesOnFlag = 0x80;

// No real folder has more bytes of records.
constexpr uint64_t MaxFolderBytes = uint64_t{64} << 20;

IsoExtent extentOf(std::string_view record) {
    return {isoBlock(isoNumber32(record, BlockPlace)), isoNumber32(record, SizePlace)};
}

// Numbers stand there twice. Where they differ, the first counts, unless it leads out of the image and the second does not.
uint32_t numberUpTo(uint64_t most, std::string_view record, size_t place) {
    const uint32_t first = isoNumber32(record, place);
    const auto second = static_cast<uint32_t>(bigEndian(record, place + 4, 4));
    return first > most && second > 0 && second <= most ? second : first;
}

// Where the sizes differ, too, the record is too damaged to find another place by it.
IsoExtent extentWithin(const ByteReader& image, std::string_view record) {
    const bool sizeIsSure = isoNumber32(record, SizePlace) == bigEndian(record, SizePlace + 4, 4);
    const uint64_t last = sizeIsSure ? image.size() / IsoBlockSize : UINT32_MAX;
    const uint64_t offset = isoBlock(numberUpTo(last, record, BlockPlace));
    return {offset, numberUpTo(image.size() - std::min(image.size(), offset), record, SizePlace)};
}

std::string_view bareName(std::string_view record) {
    return record.substr(RecordHeader, std::min<size_t>(isoByte(record, 32), record.size() - RecordHeader));
}

std::string_view systemUse(std::string_view record) {
    const size_t name = isoByte(record, 32);
    const size_t begin = RecordHeader + name + (name % 2 == 0);
    return begin < record.size() ? record.substr(begin) : std::string_view{};
}

std::string fromUtf16(std::string_view bytes) {
    gsize size = 0;
    char* text = g_convert_with_fallback(bytes.data(), static_cast<gssize>(bytes.size() / 2 * 2), "UTF-8",
                                         "UTF-16BE", "_", nullptr, &size, nullptr);
    const std::string converted(text ? text : "", text ? size : 0);
    g_free(text);
    return converted;
}

std::string withoutVersion(std::string name) {
    name.resize(std::min(name.size(), name.rfind(';')));
    return name;
}

// Bare names have capitals only and a dot in any case.
std::string plainName(std::string_view bytes) {
    std::string name = withoutVersion(std::string(bytes));
    if (!name.empty() && name.back() == '.') {
        name.pop_back();
    }
    std::transform(name.begin(), name.end(), name.begin(), g_ascii_tolower);
    return name;
}

std::string trimmed(std::string text) {
    text.resize(std::min(text.size(), text.find_last_not_of(' ') + 1));
    return text;
}

// A record as it lies in the image; less than a header at the end of a block.
std::string_view recordAt(std::string_view bytes, size_t place) {
    const size_t size = place < bytes.size() ? isoByte(bytes, place) : 0;
    return size > RecordHeader && size <= bytes.size() - place ? bytes.substr(place, size)
                                                               : std::string_view{};
}

Result<std::string> readBytes(ByteReader& image, const IsoExtent& extent) {
    if (extent.size > MaxFolderBytes || extent.offset + extent.size > image.size()) {
        return Error{"folder lies outside of the image"};
    }
    std::string bytes(extent.size, '\0');
    const auto count = image.readAt(extent.offset, bytes);
    if (!count) {
        return count.failure();
    }
    bytes.resize(*count);
    return bytes;
}

// The folder itself comes first in it, and tells its size and whether there is Rock Ridge.
Result<std::string> firstRecord(ByteReader& image, uint64_t offset) {
    auto block = readBytes(image, {offset, IsoBlockSize});
    if (!block) {
        return block;
    }
    const auto record = recordAt(*block, 0);
    if (record.empty()) {
        return Error{"folder has no records"};
    }
    return std::string(record);
}

// ISO 9660:1999: names of up to 207 bytes.
bool isEnhanced(std::string_view block) {
    constexpr size_t VersionPlace = 6;
    constexpr unsigned char EnhancedVersion = 2;
    return isoByte(block, 0) == SupplementaryDescriptor && isoByte(block, VersionPlace) == EnhancedVersion;
}

void takeDescriptor(const std::string& block, IsoVolume& volume) {
    const std::string_view root = recordAt(block, IsoRootPlace);
    const std::string_view label = std::string_view(block).substr(LabelPlace, LabelSize);
    if (root.empty()) {
        return;
    }
    if (isoByte(block, 0) == PrimaryDescriptor) {
        volume.label = trimmed(std::string(label));
        volume.root = extentOf(root);
    } else if (isEnhanced(block)) {
        volume.root = extentOf(root);
        volume.names = volume.names == IsoVolume::Names::Plain ? IsoVolume::Names::Long : volume.names;
    } else if (volume.names != IsoVolume::Names::RockRidge) {
        volume.label = trimmed(fromUtf16(label));
        volume.root = extentOf(root);
        volume.names = IsoVolume::Names::Joliet;
    }
}

bool isJoliet(std::string_view block) {
    return isoByte(block, 0) == SupplementaryDescriptor &&
           std::find(jolietEscapes.begin(), jolietEscapes.end(), block.substr(EscapePlace, 3)) !=
               jolietEscapes.end();
}

// Where the better names are damaged, the bare ones are taken.
bool hasRootFolder(ByteReader& image, std::string_view block) {
    const auto record = recordAt(block, IsoRootPlace);
    const auto self =
        record.empty() ? Result<std::string>(Error{}) : firstRecord(image, extentOf(record).offset);
    return self && extentOf(*self).offset == extentOf(record).offset && readBytes(image, extentOf(record));
}

std::optional<size_t> findRockRidge(ByteReader& image, const IsoVolume& volume) {
    const auto self = firstRecord(image, volume.root.offset);
    return self ? rockRidgeSkip(systemUse(*self)) : std::nullopt;
}

} // namespace

Result<IsoVolume> readIsoVolume(ByteReader& image, uint64_t session) {
    IsoVolume volume;
    for (uint64_t number = FirstDescriptor; number < LastDescriptor; ++number) {
        auto block = readBytes(image, {(session + number) * IsoBlockSize, IsoBlockSize});
        if (!block || block->size() < IsoBlockSize || block->compare(1, signature.size(), signature) != 0 ||
            isoByte(*block, 0) == EndOfDescriptors) {
            break;
        }
        if (isoByte(*block, 0) == PrimaryDescriptor) {
            takeDescriptor(*block, volume);
            // Rock Ridge has whole names of any character set, Joliet up to 103 characters.
            if (const auto skip = findRockRidge(image, volume)) {
                volume.names = IsoVolume::Names::RockRidge;
                volume.skip = *skip;
            }
        } else if ((isJoliet(*block) || (isEnhanced(*block) && volume.names == IsoVolume::Names::Plain)) &&
                   hasRootFolder(image, *block)) {
            takeDescriptor(*block, volume);
        }
    }
    if (volume.root.size == 0) {
        return Error{"not a disc image"};
    }
    return volume;
}

namespace {

// Turns one record of a folder into what is known of it; nothing for those that are not shown.
std::optional<IsoRecord> decode(ByteReader& image, const IsoVolume& volume, std::string_view record) {
    const std::string_view bare = bareName(record);
    const bool folder = (isoByte(record, 25) & FolderFlag) != 0;
    if (bare.empty() || bare == std::string_view("\0", 1) || bare == "\1") {
        return std::nullopt;
    }
    IsoRecord found{
        "", folder ? Entry::Type::Folder : Entry::Type::File, extentWithin(image, record), {}, {}};
    if (volume.names == IsoVolume::Names::Joliet) {
        found.name = withoutVersion(fromUtf16(bare));
    } else if (volume.names == IsoVolume::Names::Long) {
        found.name = withoutVersion(std::string(bare));
    } else if (volume.names == IsoVolume::Names::RockRidge) {
        const auto area = systemUse(record);
        const auto extra = readRockRidge(image, area.substr(std::min(volume.skip, area.size())));
        if (extra.hidden) {
            return std::nullopt;
        }
        found.name = extra.name;
        found.link = extra.link;
        found.compressed = extra.compressed;
        if (extra.relocated) {
            const uint64_t offset = isoBlock(*extra.relocated);
            const auto self = firstRecord(image, offset);
            found.type = Entry::Type::Folder;
            found.extent = {offset, self ? extentOf(*self).size : 0};
        }
    }
    if (found.name.empty()) {
        found.name = plainName(bare);
    }
    // A name of nothing but a version would stand for the folder itself.
    return found.name.empty() ? std::nullopt : std::optional(std::move(found));
}

} // namespace

Result<std::vector<IsoRecord>> readIsoDirectory(ByteReader& image, const IsoVolume& volume,
                                                const IsoExtent& extent) {
    const auto bytes = readBytes(image, extent);
    if (!bytes) {
        return bytes.failure();
    }
    std::vector<IsoRecord> records;
    bool goesOn = false;
    for (size_t place = 0; place < bytes->size();) {
        const auto record = recordAt(*bytes, place);
        if (record.empty()) {
            place = (place / IsoBlockSize + 1) * IsoBlockSize; // records do not cross blocks
            continue;
        }
        place += record.size();
        auto found = decode(image, volume, record);
        if (!found || found->extent.offset > image.size()) {
            continue;
        }
        // A file too large for one record goes on in the next, right behind its bytes so far; one that goes
        // on elsewhere is read as far as it goes.
        if (goesOn && !records.empty() && records.back().name == found->name) {
            auto& sofar = records.back().extent;
            sofar.size += sofar.offset + sofar.size == found->extent.offset ? found->extent.size : 0;
        } else {
            records.push_back(std::move(*found));
        }
        goesOn = (isoByte(record, 25) & GoesOnFlag) != 0;
    }
    return records;
}

} // namespace zm::disc::medium
