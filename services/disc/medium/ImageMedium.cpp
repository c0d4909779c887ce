#include "services/disc/medium/ImageMedium.h"

#include "services/disc/log/Log.h"
#include "services/disc/medium/FileSystem.h"
#include "services/disc/medium/MixedDisc.h"
#include "services/disc/medium/SectorReader.h"
#include "services/disc/medium/TrackDisc.h"
#include "services/disc/medium/VcdDisc.h"

#include <algorithm>
#include <functional>

namespace zm::disc::medium {

namespace {

// A disc of those tracks of `image` that `isWanted`; null if there is none.
template <class IsWanted>
std::shared_ptr<TrackDisc> discOf(DiscImage image, model::MediaType type, const std::string& form,
                                  IsWanted isWanted) {
    auto& tracks = image.tracks;
    tracks.erase(std::remove_if(tracks.begin(), tracks.end(), std::not_fn(isWanted)), tracks.end());
    if (type != model::MediaType::AudioCd) {
        image.hidden.reset();
    }
    return tracks.empty() && !image.hidden ? nullptr
                                           : std::make_shared<TrackDisc>(std::move(image), type, form);
}

// The file system of the last data track that has one: that of the newest session.
std::shared_ptr<Medium> openData(const DiscImage& image, const std::string& form) {
    for (auto track = image.tracks.rbegin(); track != image.tracks.rend(); ++track) {
        if (track->isSound() || track->size() == 0) {
            continue;
        }
        auto data =
            openFileSystem(image.path, [track = *track](const std::string& name, const IsoExtent& extent) {
                return openSectors(track, name, FileSectorBytes, extent.offset, extent.size);
            });
        if (data) {
            (*data)->describe({form + ", " + (*data)->description().form, image.catalogNumber, {}});
            return *data;
        }
        logWarning("%s\n", data.error().c_str());
    }
    return nullptr;
}

} // namespace

Result<std::shared_ptr<Medium>> openImageMedium(DiscImage image, const std::string& form) {
    if (auto vcd = VcdDisc::open(image, form)) {
        return vcd;
    }
    const auto sound = discOf(image, model::MediaType::AudioCd, form,
                              [](const ImageTrack& track) { return track.isSound(); });
    auto data = openData(image, form);
    if (sound && data) {
        return std::shared_ptr<Medium>(std::make_shared<MixedDisc>(sound, data));
    }
    if (sound) {
        return std::shared_ptr<Medium>(sound);
    }
    if (!data) {
        image.tracks.clear();
        image.hidden.reset();
        return std::shared_ptr<Medium>(
            std::make_shared<TrackDisc>(std::move(image), model::MediaType::AudioCd, form));
    }
    return data;
}

} // namespace zm::disc::medium
