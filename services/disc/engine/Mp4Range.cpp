#include "services/disc/engine/Mp4Range.h"

#include "base/ByteNumbers.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace zm::disc::engine {

namespace {

constexpr size_t HeaderBytes = 8;
// The tables of a day of sound take less.
constexpr uint64_t MostTableBytes = 16u << 20;

/** A box of a file: what is in it, and where its name stands in the file. */
struct Box {
    std::string_view content;
    uint64_t nameAt = 0;
};

/** The boxes in a box, by their names. */
class Boxes {
public:
    Boxes(std::string_view bytes, uint64_t offset) : m_bytes(bytes), m_offset(offset) {}

    /** The first of that name from the place `from` on, which is then behind it. */
    std::optional<Box> next(std::string_view name, size_t& from) const {
        while (from + HeaderBytes <= m_bytes.size()) {
            const auto size = bigEndian(m_bytes, from, 4);
            const size_t begin = from;
            if (size < HeaderBytes || size > m_bytes.size() - begin) {
                break;
            }
            from += size;
            if (m_bytes.substr(begin + 4, 4) == name) {
                return Box{m_bytes.substr(begin + HeaderBytes, size - HeaderBytes), m_offset + begin + 4};
            }
        }
        return std::nullopt;
    }
    std::optional<Box> first(std::string_view name) const {
        size_t from = 0;
        return next(name, from);
    }

private:
    std::string_view m_bytes;
    uint64_t m_offset;
};

Boxes in(const Box& box, size_t before = 0) {
    const size_t skipped = std::min(before, box.content.size());
    return {box.content.substr(skipped), box.nameAt + 4 + skipped};
}

// The box follows one or two names: "moov", or "trak" and "mdia".
std::optional<Box> inside(const Box& box, std::initializer_list<std::string_view> names) {
    std::optional<Box> found = box;
    for (const auto name : names) {
        found = found ? in(*found).first(name) : std::nullopt;
    }
    return found;
}

/** The table of contents. */
struct Table {
    std::string bytes;
    uint64_t offset = 0; ///< of its content
};

std::optional<Table> readTable(const ReadBytes& read) {
    constexpr int MostBoxes = 64;
    constexpr uint64_t LargeMark = 1;
    uint64_t at = 0;
    for (int i = 0; i < MostBoxes; ++i) {
        const std::string header = read(at, 2 * HeaderBytes);
        uint64_t size = bigEndian(header, 0, 4);
        const bool large = size == LargeMark;
        size = large ? bigEndian(header, HeaderBytes, 8) : size;
        if (header.size() < HeaderBytes || size < HeaderBytes || size > UINT64_MAX / 2) {
            return std::nullopt;
        }
        if (header.compare(4, 4, "moov") == 0) {
            return !large && size <= MostTableBytes
                       ? std::optional(Table{read(at + HeaderBytes, size - HeaderBytes), at + HeaderBytes})
                       : std::nullopt;
        }
        at += size;
    }
    return std::nullopt;
}

// Times of this kind are twice as long in the second version.
uint64_t timeAt(const Box& box, size_t at, size_t atInSecond) {
    const bool second = bigEndian(box.content, 0, 1) == 1;
    return bigEndian(box.content, second ? atInSecond : at, second ? 8 : 4);
}

uint64_t scaleOf(const Box& box) {
    return bigEndian(box.content, bigEndian(box.content, 0, 1) == 1 ? 20 : 12, 4);
}

// The tag: eight digits of nothing, then the delay, the padding and the length, all of them hexadecimal.
std::optional<SoundRange> fromTag(const Box& moov) {
    const auto meta = inside(moov, {"udta", "meta"});
    const auto list = meta ? in(*meta, 4).first("ilst") : std::nullopt;
    size_t from = 0;
    for (auto tag = list ? in(*list).next("----", from) : std::nullopt; tag;
         tag = in(*list).next("----", from)) {
        const auto name = in(*tag).first("name");
        const auto data = in(*tag).first("data");
        if (!name || !data || !name->content.ends_with("iTunSMPB")) {
            continue;
        }
        const std::string text(data->content.substr(std::min<size_t>(8, data->content.size())));
        unsigned long long delay = 0;
        unsigned long long padding = 0;
        unsigned long long length = 0;
        constexpr unsigned long long Longest = 1ULL << 40;
        const int found = std::sscanf(text.c_str(), " %*8x %8llx %8llx %16llx", &delay, &padding, &length);
        if (found == 3 && length > 0 && length < Longest) {
            SoundRange range;
            range.first = static_cast<int64_t>(delay);
            range.count = static_cast<int64_t>(length);
            return range;
        }
    }
    return std::nullopt;
}

// The list's one edit: from where on. Its length is in coarse units; what it rounds off is in the track's.
std::optional<SoundRange> fromEdits(const Box& moov, const Box& track, int64_t rate) {
    const auto list = inside(track, {"edts", "elst"});
    const auto header = in(moov).first("mvhd");
    const auto media = inside(track, {"mdia", "mdhd"});
    if (!list || !header || bigEndian(list->content, 4, 4) != 1) {
        return std::nullopt;
    }
    const auto scale = static_cast<int64_t>(scaleOf(*header));
    const auto length = static_cast<int64_t>(timeAt(*list, 8, 8));
    const auto first = static_cast<int64_t>(timeAt(*list, 12, 16));
    const auto all = static_cast<int64_t>(timeAt(*media, 16, 24));
    constexpr int64_t Longest = int64_t{1} << 40;
    constexpr int64_t FinestScale = 1 << 22;
    if (scale <= 0 || scale > FinestScale || first < 0 || first > Longest || all > Longest || first >= all ||
        length > Longest) {
        return std::nullopt;
    }
    SoundRange range;
    range.first = first;
    range.count = all - first;
    const bool toTheEnd = std::abs(length * rate - range.count * scale) <= 2 * rate;
    return toTheEnd ? std::optional(range) : std::nullopt;
}

// All of the track is decoded then: the edits are an empty place, and the film's length, which counts them, is the
// track's and a little more.
std::vector<SoundRange::Patch> withoutEdits(const Box& moov, const Box& track, const Box& media,
                                            int64_t rate) {
    std::vector<SoundRange::Patch> patches;
    if (const auto edits = in(track).first("edts")) {
        patches.push_back({edits->nameAt, "free"});
    }
    const auto header = in(moov).first("mvhd");
    if (header) {
        const bool second = bigEndian(header->content, 0, 1) == 1;
        const uint64_t length = timeAt(media, 16, 24) * scaleOf(*header) / static_cast<uint64_t>(rate) + 1;
        std::string bytes;
        for (int shift = second ? 56 : 24; shift >= 0; shift -= 8) {
            bytes += static_cast<char>(length >> shift & 0xFF);
        }
        patches.push_back({header->nameAt + 4 + (second ? 24 : 16), bytes});
    }
    return patches;
}

} // namespace

std::optional<SoundRange> readMp4Range(const ReadBytes& read) {
    const auto table = readTable(read);
    if (!table) {
        return std::nullopt;
    }
    const Box moov{table->bytes, table->offset - 4};
    size_t from = 0;
    const auto track = in(moov).next("trak", from);
    if (!track || in(moov).next("trak", from)) {
        return std::nullopt;
    }
    const auto media = inside(*track, {"mdia", "mdhd"});
    const auto rate = static_cast<int64_t>(media ? scaleOf(*media) : 0);
    constexpr int64_t HighestRate = 1 << 20;
    constexpr uint64_t Longest = uint64_t{1} << 40;
    if (rate == 0 || rate > HighestRate || timeAt(*media, 16, 24) > Longest) {
        return std::nullopt;
    }
    auto range = fromTag(moov);
    range = range ? range : fromEdits(moov, *track, rate);
    if (range) {
        range->rate = rate;
        range->patches = withoutEdits(moov, *track, *media, rate);
    }
    return range;
}

} // namespace zm::disc::engine
