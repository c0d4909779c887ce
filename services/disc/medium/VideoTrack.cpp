#include "services/disc/medium/VideoTrack.h"

#include "services/disc/medium/SectorReader.h"

#include <algorithm>
#include <optional>

namespace zm::disc::medium {

namespace {

// A track begins with a second or two of empty sectors.
constexpr size_t LookedAtSectors = 4 * image::SectorsPerSecond;

// Where in the track's bytes the first pack of the film stands.
std::optional<uint64_t> beginning(const ImageTrack& track) {
    const auto& format = track.format;
    const bool hasRoom = format.headerSize + FilmSectorBytes <= format.sectorSize;
    if (format.content != image::TrackFormat::Content::Mode2 || !hasRoom || track.size() == 0) {
        return std::nullopt;
    }
    const auto reader = openSectors(track, track.pieces.front().file, FilmSectorBytes);
    if (!reader) {
        return std::nullopt;
    }
    std::string bytes(LookedAtSectors * FilmSectorBytes, '\0');
    const auto count = (*reader)->readAt(0, bytes);
    const std::string_view read(bytes.data(), count ? *count : 0);
    for (size_t at = 0; at < read.size(); at += FilmSectorBytes) {
        if (read.substr(at, PackStart.size()) == PackStart) {
            return at;
        }
    }
    return std::nullopt;
}

} // namespace

bool isVideoTrack(const ImageTrack& track) {
    return beginning(track).has_value();
}

Result<std::unique_ptr<ByteReader>> openVideoTrack(const ImageTrack& track, const std::string& name) {
    return openSectors(track, name, FilmSectorBytes, beginning(track).value_or(0));
}

} // namespace zm::disc::medium
