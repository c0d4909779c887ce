#include "services/disc/medium/CdDrive.h"

#include "services/disc/image/CdText.h"
#include "services/disc/log/Log.h"
#include "services/disc/medium/SectorReader.h"

#include <algorithm>

namespace zm::disc::medium {

namespace {

constexpr const char* Nameless = "Audio CD";
// Nothing lies further behind on a CD: the times of its table go up to 99:59:74.
constexpr int64_t FurthestSector = 100 * 60 * image::SectorsPerSecond;
// Between the sound of a session and the first track of the next one: the end of the one and the beginning of the other.
constexpr int64_t SessionGap = 6750 + 4500 + 150;

Status checkTable(const DriveToc& toc) {
    const auto place = [](int64_t sector) { return "sector " + std::to_string(sector); };
    if (toc.tracks.empty()) {
        return Error{"no track"};
    }
    const DriveToc::Track* before = nullptr;
    for (const auto& track : toc.tracks) {
        const std::string name = "track " + std::to_string(track.number);
        if (track.number < 1 || track.number > image::MaxTrackNumber) {
            return Error{name};
        }
        if (track.begin < 0 || track.begin >= FurthestSector) {
            return Error{name + " at " + place(track.begin)};
        }
        if (before && track.begin <= before->begin) {
            return Error{name + " at " + place(track.begin) + ", before the track in front of it"};
        }
        before = &track;
    }
    if (toc.end <= before->begin || toc.end > FurthestSector) {
        return Error{"the end of the disc at " + place(toc.end) + ", its last track at " +
                     place(before->begin)};
    }
    return ok();
}

int64_t trackEnd(const DriveToc& toc, size_t index) {
    if (index + 1 == toc.tracks.size()) {
        return toc.end;
    }
    const auto& track = toc.tracks[index];
    const auto& next = toc.tracks[index + 1];
    const bool gap = !track.data && next.data && toc.laterSession == next.begin;
    const int64_t end = next.begin - (gap ? SessionGap : 0);
    return end > track.begin ? end : next.begin;
}

ImageTrack soundBetween(int64_t begin, int64_t end, const std::string& path) {
    const auto bytes = [](int64_t sectors) {
        return static_cast<uint64_t>(sectors) * image::SoundSectorBytes;
    };
    ImageTrack track{*image::trackFormat("AUDIO"), {}, {}, {}, {}, {}, 0, {}};
    track.pieces.push_back({TrackPiece::Form::Drive, path, bytes(begin), bytes(end - begin)});
    return track;
}

// The system gives the files' sectors without what stands around their bytes.
ImageTrack dataBetween(int64_t begin, int64_t end, const std::string& path) {
    const auto bytes = [](int64_t sectors) { return static_cast<uint64_t>(sectors) * FileSectorBytes; };
    ImageTrack track{*image::trackFormat("MODE1/2048"), {}, {}, {}, {}, {}, 0, {}};
    track.pieces.push_back({TrackPiece::Form::Plain, path, bytes(begin), bytes(end - begin)});
    return track;
}

void addDriveTexts(DiscImage& disc, const DriveToc& toc) {
    if (toc.texts.empty()) {
        return;
    }
    image::DiscSheet sheet;
    for (const auto& track : toc.tracks) {
        sheet.tracks.push_back({track.number, *image::trackFormat("AUDIO"), {}, {}, {}, {}});
    }
    if (const auto added = image::addCdText(sheet, toc.texts); !added) {
        // The disc can be played without its texts.
        logWarning("%s: CD-TEXT: %s\n", disc.path.c_str(), added.error().c_str());
        return;
    }
    disc.title = sheet.title;
    disc.performer = sheet.performer;
    disc.label = sheet.title.empty() ? disc.label : sheet.title;
    for (size_t i = 0; i < disc.tracks.size(); ++i) {
        disc.tracks[i].title = sheet.tracks[i].title;
        disc.tracks[i].performer = sheet.tracks[i].performer;
    }
}

} // namespace

bool isCdDrive(const std::string& path) {
    const auto toc = readDriveToc(path);
    return toc &&
           (toc->tracks.empty() || std::any_of(toc->tracks.begin(), toc->tracks.end(),
                                               [](const DriveToc::Track& each) { return !each.data; }));
}

Result<DiscImage> readCdDrive(const std::string& path) {
    auto toc = readDriveToc(path);
    if (!toc) {
        return Error{path + ": the disc's table of contents cannot be read"};
    }
    toc->texts = readDriveTexts(path);
    return imageOfDrive(*toc, path);
}

Result<DiscImage> imageOfDrive(const DriveToc& toc, const std::string& path) {
    if (const auto good = checkTable(toc); !good) {
        return Error{path + ": the disc's table of contents makes no sense: " + good.error()};
    }
    DiscImage disc{path, {}, {}, Nameless, {}, {}, {}};
    for (size_t i = 0; i < toc.tracks.size(); ++i) {
        const auto& track = toc.tracks[i];
        const int64_t end = trackEnd(toc, i);
        disc.tracks.push_back(track.data ? dataBetween(track.begin, end, path)
                                         : soundBetween(track.begin, end, path));
    }
    const auto& first = toc.tracks.front();
    if (!first.data && first.begin >= static_cast<int64_t>(image::LeastHiddenSectors)) {
        disc.hidden = soundBetween(0, first.begin, path);
        disc.hidden->title = "Hidden track";
    }
    addDriveTexts(disc, toc);
    return disc;
}

} // namespace zm::disc::medium
