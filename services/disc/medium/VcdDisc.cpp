#include "services/disc/medium/VcdDisc.h"

#include "services/disc/log/Log.h"
#include "services/disc/medium/SectorReader.h"
#include "services/disc/medium/VideoTrack.h"

#include <algorithm>

namespace zm::disc::medium {

namespace {

constexpr size_t PackHead = 14;
constexpr int64_t TicksPerMillisecond = 90;

/** A film of the disc and where it lies there. */
struct PlacedFilm {
    int number = 0; ///< of the track on the disc, from 1
    uint64_t sector = 0;
    ImageTrack track;
};

// Where tracks begin on the disc, if their files stand there one behind the other.
std::vector<PlacedFilm> filmsOf(const DiscImage& image) {
    std::vector<PlacedFilm> films;
    uint64_t sector = 0;
    for (size_t i = 0; i < image.tracks.size(); ++i) {
        const auto& track = image.tracks[i];
        if (i > 0) {
            const auto& before = image.tracks[i - 1];
            const auto& from = before.pieces.front();
            const auto& to = track.pieces.front();
            const bool sameFile = from.file == to.file && to.offset > from.offset;
            sector += (sameFile ? to.offset - from.offset : before.size()) / before.format.sectorSize;
            if (isVideoTrack(track)) {
                films.push_back({static_cast<int>(i) + 1, sector, track});
            }
        }
    }
    return films;
}

std::string read(ByteReader& reader, uint64_t offset, size_t size) {
    std::string bytes(size, '\0');
    const auto count = reader.readAt(offset, bytes);
    bytes.resize(count ? *count : 0);
    return bytes;
}

// The clock of the pack at the beginning of `bytes`, in 90 kHz: of MPEG-1 or MPEG-2.
std::optional<int64_t> packTime(std::string_view bytes) {
    if (bytes.size() < PackHead || !bytes.starts_with(PackStart)) {
        return std::nullopt;
    }
    const auto byte = [&](size_t at) { return static_cast<int64_t>(static_cast<uint8_t>(bytes[at])); };
    if (byte(4) >> 4 == 2) {
        return (byte(4) >> 1 & 7) << 30 | byte(5) << 22 | byte(6) >> 1 << 15 | byte(7) << 7 | byte(8) >> 1;
    }
    return (byte(4) >> 3 & 7) << 30 | (byte(4) & 3) << 28 | byte(5) << 20 | byte(6) >> 3 << 15 |
           (byte(6) & 3) << 13 | byte(7) << 5 | byte(8) >> 3;
}

std::chrono::milliseconds timeInFilm(const PlacedFilm& film, const std::string& name, uint32_t sector) {
    const auto reader = openSectors(film.track, name, FilmSectorBytes);
    const auto whole = openVideoTrack(film.track, name);
    if (!reader || !whole || sector < film.sector) {
        return {};
    }
    const auto first = packTime(read(**whole, 0, PackHead));
    const auto entry = packTime(read(**reader, (sector - film.sector) * FilmSectorBytes, PackHead));
    return std::chrono::milliseconds(
        first && entry && *entry > *first ? (*entry - *first) / TicksPerMillisecond : 0);
}

// By the film's own clock, as its sectors do not all have the same length; nothing if it does not say.
std::optional<int> secondsOf(const PlacedFilm& film) {
    // At its end there are some empty sectors.
    constexpr uint64_t LookedAt = 4 * image::SectorsPerSecond * FilmSectorBytes;
    const auto reader = openVideoTrack(film.track, "film");
    if (!reader) {
        return std::nullopt;
    }
    const auto first = packTime(read(**reader, 0, PackHead));
    const uint64_t size = (*reader)->size() / FilmSectorBytes * FilmSectorBytes;
    const std::string end = read(**reader, size - std::min(size, LookedAt), LookedAt);
    for (size_t at = end.size() / FilmSectorBytes * FilmSectorBytes; at > 0 && first;) {
        at -= FilmSectorBytes;
        const auto last = packTime(std::string_view(end).substr(at));
        if (last && *last > *first) {
            return static_cast<int>((*last - *first) / TicksPerMillisecond / 1000);
        }
    }
    return std::nullopt;
}

std::string segmentPath(int number) {
    return "SEGMENT/ITEM" + std::to_string(number + 1) + ".MPG";
}

// Bytes of the segment: the packs in front of the empty sectors that fill it up.
uint64_t filled(ByteReader& sectors) {
    constexpr size_t AtOnce = image::SectorsPerSecond * FilmSectorBytes;
    for (uint64_t begin = 0; begin < sectors.size(); begin += AtOnce) {
        const std::string bytes = read(sectors, begin, AtOnce);
        for (size_t at = 0; at < AtOnce; at += FilmSectorBytes) {
            if (at >= bytes.size() || !std::string_view(bytes).substr(at).starts_with(PackStart)) {
                return begin + at;
            }
        }
    }
    return sectors.size();
}

} // namespace

/** What the lists' items are on this disc. */
class VcdDisc::Items : public VcdItems {
public:
    Items(const std::vector<PlacedFilm>& films, const model::Contents& contents, const VcdInfo& info)
        : m_films(films), m_contents(contents), m_info(info) {}

    std::optional<model::ListItem> track(int number) const override {
        const auto found = std::find_if(m_films.begin(), m_films.end(),
                                        [=](const PlacedFilm& each) { return each.number == number; });
        if (found == m_films.end()) {
            return std::nullopt;
        }
        const auto index = static_cast<size_t>(found - m_films.begin());
        return model::ListItem{
            m_contents.of(model::MediaKind::Video)[index].rawName, static_cast<int>(index), {}, false};
    }
    std::optional<model::ListItem> entry(size_t number) const override {
        if (number >= m_info.entries.size()) {
            return std::nullopt;
        }
        const auto [known, isNew] = m_entries.try_emplace(number);
        if (isNew) {
            const auto& entry = m_info.entries[number];
            auto item = track(entry.track);
            if (item) {
                item->begin = timeInFilm(m_films[static_cast<size_t>(item->track)], item->path, entry.sector);
            }
            known->second = std::move(item);
        }
        return known->second;
    }
    std::optional<model::ListItem> segment(int number) const override {
        const auto found = m_info.segments.find(number);
        return found == m_info.segments.end()
                   ? std::nullopt
                   : std::optional(model::ListItem{segmentPath(number), -1, {}, found->second.still});
    }

private:
    const std::vector<PlacedFilm>& m_films;
    const model::Contents& m_contents;
    const VcdInfo& m_info;
    mutable std::map<size_t, std::optional<model::ListItem>>
        m_entries; ///< those that were asked for; the disc is read for each
};

VcdDisc::VcdDisc(DiscImage films, const ImageTrack& fileSystem, const std::string& form)
    : TrackDisc(std::move(films), model::MediaType::Vcd, form), m_fileSystem(fileSystem) {}

std::shared_ptr<Medium> VcdDisc::open(const DiscImage& image, const std::string& form) {
    const auto films = filmsOf(image);
    if (films.empty()) {
        return nullptr;
    }
    DiscImage shown = image;
    shown.tracks.clear();
    shown.hidden.reset();
    std::transform(films.begin(), films.end(), std::back_inserter(shown.tracks),
                   [](const PlacedFilm& each) { return each.track; });
    const std::shared_ptr<VcdDisc> disc(new VcdDisc(std::move(shown), image.tracks.front(), form));
    auto contents = std::make_shared<model::Contents>(*disc->TrackDisc::tracks());
    for (size_t i = 0; i < films.size(); ++i) {
        auto& seconds = contents->items[model::kindIndex(model::MediaKind::Video)][i].tags.seconds;
        seconds = secondsOf(films[i]).value_or(seconds);
    }
    disc->m_contents = contents;
    const auto& system = disc->m_fileSystem;
    const auto sectors = openSectors(system, image.path, FileSectorBytes);
    if (!sectors || system.format.headerSize + FilmSectorBytes > system.format.sectorSize) {
        return disc;
    }
    const auto part = [&](uint32_t sector, uint64_t size) {
        return read(**sectors, uint64_t{sector} * FileSectorBytes, static_cast<size_t>(size));
    };
    const auto info =
        readVcdInfo(part(VcdInfoSector, FileSectorBytes), part(VcdEntriesSector, FileSectorBytes));
    if (!info) {
        return disc;
    }
    const Items items(films, *disc->m_contents, *info);
    auto lists =
        readPlayLists(part(VcdListOffsetsSector, VcdListOffsetsSectors * FileSectorBytes),
                      part(VcdListsSector, std::min(info->listBytes, VcdListsSectors * FileSectorBytes)),
                      info->unit, items);
    if (lists.lists.empty()) {
        return disc;
    }
    for (const auto& [number, segment] : info->segments) {
        disc->m_segments[segmentPath(number)] = segment;
    }
    contents->playLists = std::make_shared<const model::PlayLists>(std::move(lists));
    return disc;
}

Result<std::unique_ptr<ByteReader>> VcdDisc::open(const std::string& file) {
    const auto segment = m_segments.find(file);
    if (segment == m_segments.end()) {
        return TrackDisc::open(file);
    }
    const uint64_t begin = uint64_t{segment->second.sector} * FilmSectorBytes;
    auto all = openSectors(m_fileSystem, file, FilmSectorBytes, begin,
                           uint64_t{segment->second.sectors} * FilmSectorBytes);
    if (!all) {
        return all;
    }
    const uint64_t size = filled(**all);
    if (size == 0) {
        return Error{file + ": no film stands there"};
    }
    return openSectors(m_fileSystem, file, FilmSectorBytes, begin, size);
}

} // namespace zm::disc::medium
