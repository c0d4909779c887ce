#include "services/disc/medium/CueMedium.h"

#include "services/disc/log/Log.h"
#include "services/disc/medium/IsoMedium.h"
#include "services/disc/medium/SectorReader.h"
#include "services/disc/medium/TrackDisc.h"
#include "services/disc/medium/VideoTrack.h"

#include <algorithm>
#include <functional>

namespace zm::disc {

namespace {

bool isAudioTrack(const ImageTrack& track) {
    return track.format.content == TrackFormat::Content::Audio;
}

// A disc of those tracks of `image` that `isWanted`; null if there is none.
template <class IsWanted>
std::shared_ptr<Medium> discOf(CueImage image, MediaType type, IsWanted isWanted) {
    auto& tracks = image.tracks;
    tracks.erase(std::remove_if(tracks.begin(), tracks.end(), std::not_fn(isWanted)), tracks.end());
    return tracks.empty() ? nullptr : std::make_shared<TrackDisc>(std::move(image), type);
}

Result<std::shared_ptr<Medium>> openData(const CueImage& image) {
    const auto& track = image.tracks.front();
    return IsoMedium::openImage(image.path, [track](const std::string& name, const IsoExtent& extent) {
        return openSectors(track, name, FileSectorBytes, extent.offset, extent.size);
    });
}

} // namespace

Result<std::shared_ptr<Medium>> openCue(const std::string& path) {
    const auto image = readCueImage(path);
    if (!image) {
        return image.failure();
    }
    // The first track of a VCD is its file system.
    CueImage films = *image;
    films.tracks.erase(films.tracks.begin());
    if (auto vcd = discOf(std::move(films), MediaType::Vcd, isVideoTrack)) {
        return vcd;
    }
    if (auto cd = discOf(*image, MediaType::AudioCd, isAudioTrack)) {
        return cd;
    }
    auto data = openData(*image);
    if (!data) {
        logWarning("%s\n", data.error().c_str());
        return std::shared_ptr<Medium>(
            std::make_shared<TrackDisc>(CueImage{path, {}, {}, {}, {}}, MediaType::AudioCd));
    }
    return data;
}

} // namespace zm::disc
