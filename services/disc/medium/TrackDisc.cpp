#include "services/disc/medium/TrackDisc.h"

#include "services/disc/medium/SectorReader.h"
#include "services/disc/medium/VideoTrack.h"
#include "services/disc/medium/WavReader.h"
#include "services/disc/model/DiscIdentity.h"

#include <algorithm>

namespace zm::disc::medium {

namespace {

constexpr int RootFolder = 1;

std::string twoDigits(int number) {
    const std::string digits = std::to_string(number);
    return std::string(digits.size() < 2 ? 1 : 0, '0') + digits;
}

std::string extensionOf(const ImageTrack& track, model::MediaKind kind) {
    return !track.extension.empty() ? track.extension : kind == model::MediaKind::Music ? ".wav" : ".mpg";
}

// In sectors. What a track that goes on to the end of an encoded file lasts is not known yet; its beginning tells it from
// others as well.
uint64_t lengthOf(const ImageTrack& track) {
    return track.cut ? track.cut->count.value_or(track.cut->first) : track.size() / track.format.sectorSize;
}

model::Contents contentsOf(const DiscImage& image, model::MediaType type, model::MediaKind kind) {
    model::Contents contents;
    contents.trackType = type;
    model::Folder root{RootFolder, 0, "", image.label, {}};
    root.counts[model::kindIndex(kind)].files = static_cast<int>(image.tracks.size());
    contents.folders.push_back(std::move(root));
    auto& items = contents.items[model::kindIndex(kind)];
    model::DiscIdentity identity;
    for (const auto& track : image.tracks) {
        const int number = static_cast<int>(items.size()) + 1;
        model::Item item{RootFolder, number, twoDigits(number) + extensionOf(track, kind), track.title, {}};
        if (item.name.empty()) {
            item.name = "Track " + twoDigits(number);
        }
        item.tags.title = track.title;
        item.tags.artist = track.performer.empty() ? image.performer : track.performer;
        item.tags.album = image.title;
        const auto sectors = lengthOf(track);
        item.tags.seconds =
            track.extension.empty() ? static_cast<int>(sectors / image::SectorsPerSecond) : track.seconds;
        items.push_back(std::move(item));
        identity.addTrack(items.size(), sectors);
    }
    contents.identity = identity.text();
    return contents;
}

} // namespace

TrackDisc::TrackDisc(DiscImage image, model::MediaType type, const std::string& form)
    : m_image(std::move(image)), m_type(type) {
    if (m_image.hidden) {
        m_image.tracks.push_back(*m_image.hidden);
    }
    m_contents = std::make_shared<const model::Contents>(contentsOf(m_image, type, kind()));
    DiscDescription description{form, m_image.catalogNumber, {}};
    for (const auto& track : m_image.tracks) {
        description.isrcs.push_back(track.isrc);
    }
    describe(std::move(description));
}

model::MediaKind TrackDisc::kind() const {
    return m_type == model::MediaType::AudioCd ? model::MediaKind::Music : model::MediaKind::Video;
}

Result<std::vector<Entry>> TrackDisc::list(const std::string& folder) {
    if (!folder.empty()) {
        return Error{m_image.path + ": " + folder + ": no such folder"};
    }
    std::vector<Entry> entries;
    for (const auto& item : m_contents->of(kind())) {
        entries.push_back({item.rawName, Entry::Type::File, {}});
    }
    return entries;
}

const ImageTrack* TrackDisc::find(const std::string& file) const {
    const auto& items = m_contents->of(kind());
    const auto item = std::find_if(items.begin(), items.end(),
                                   [&](const model::Item& each) { return each.rawName == file; });
    return item == items.end() ? nullptr : &m_image.tracks[static_cast<size_t>(item - items.begin())];
}

std::optional<SoundCut> TrackDisc::cut(const std::string& file) const {
    const auto* track = find(file);
    return track ? track->cut : std::nullopt;
}

Result<std::unique_ptr<ByteReader>> TrackDisc::open(const std::string& file) {
    const auto* found = find(file);
    if (!found) {
        return Error{m_image.path + ": " + file + ": no such track"};
    }
    const auto& track = *found;
    const std::string name = m_image.path + ": " + file;
    if (track.size() == 0) {
        return Error{name + ": " + track.pieces.front().file + " ends before it"};
    }
    if (kind() == model::MediaKind::Video) {
        return openVideoTrack(track, name);
    }
    const bool subChannels = track.format.sectorSize > image::SoundSectorBytes;
    auto sound = subChannels ? openSectors(track, name, image::SoundSectorBytes) : openTrack(track, name);
    if (!sound || !track.extension.empty()) {
        return sound;
    }
    return std::unique_ptr<ByteReader>(std::make_unique<WavReader>(std::move(*sound)));
}

} // namespace zm::disc::medium
