#include "services/disc/AudioCd.h"

#include "services/disc/SliceReader.h"
#include "services/disc/WavReader.h"

#include <algorithm>

namespace zm::disc {

namespace {

constexpr int RootFolder = 1;

std::string twoDigits(int number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

Contents contentsOf(const CueImage& image) {
    Contents contents;
    contents.trackType = MediaType::AudioCd;
    Folder root{RootFolder, 0, "", image.label, {}};
    root.counts[kindIndex(MediaKind::Music)].files = static_cast<int>(image.tracks.size());
    contents.folders.push_back(std::move(root));
    for (const auto& track : image.tracks) {
        auto& items = contents.items[kindIndex(MediaKind::Music)];
        const int number = static_cast<int>(items.size()) + 1;
        Item item{RootFolder, number, twoDigits(number) + ".wav", track.title, {}};
        if (item.name.empty()) {
            item.name = "Track " + twoDigits(number);
        }
        item.tags.title = track.title;
        item.tags.artist = track.performer.empty() ? image.performer : track.performer;
        item.tags.album = image.title;
        item.tags.seconds = static_cast<int>(track.size / track.format.sectorSize / SectorsPerSecond);
        items.push_back(std::move(item));
    }
    return contents;
}

} // namespace

AudioCd::AudioCd(CueImage image) : m_image(std::move(image)) {
    std::erase_if(m_image.tracks, [](const ImageTrack& track) {
        return track.format.content != TrackFormat::Content::Audio;
    });
    m_contents = std::make_shared<const Contents>(contentsOf(m_image));
}

Result<std::vector<Entry>> AudioCd::list(const std::string& folder) {
    if (!folder.empty()) {
        return Error{m_image.path + ": " + folder + ": no such folder"};
    }
    std::vector<Entry> entries;
    for (const auto& item : m_contents->of(MediaKind::Music)) {
        entries.push_back({item.rawName, Entry::Type::File, {}});
    }
    return entries;
}

Result<std::unique_ptr<ByteReader>> AudioCd::open(const std::string& file) {
    const auto& items = m_contents->of(MediaKind::Music);
    const auto item =
        std::find_if(items.begin(), items.end(), [&](const Item& each) { return each.rawName == file; });
    if (item == items.end()) {
        return Error{m_image.path + ": " + file + ": no such track"};
    }
    const auto& track = m_image.tracks[static_cast<size_t>(item - items.begin())];
    const std::string name = m_image.path + ": " + file;
    if (track.size == 0) {
        return Error{name + ": " + track.file + " ends before it"};
    }
    auto sound = openSlice(track.file, track.offset, track.size, name);
    if (!sound) {
        return sound;
    }
    return std::unique_ptr<ByteReader>(std::make_unique<WavReader>(std::move(*sound)));
}

} // namespace zm::disc
