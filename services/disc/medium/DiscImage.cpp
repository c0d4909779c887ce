#include "services/disc/medium/DiscImage.h"

#include "services/disc/image/CcdSheet.h"
#include "services/disc/image/CdText.h"
#include "services/disc/image/CueSheet.h"
#include "services/disc/image/NrgTrailer.h"
#include "services/disc/image/TocFile.h"
#include "services/disc/log/Log.h"
#include "services/disc/medium/CdSoundReader.h"
#include "services/disc/medium/SheetFiles.h"
#include "services/disc/medium/SliceReader.h"
#include "services/disc/text/Charset.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <numeric>

namespace zm::disc::medium {

namespace {

namespace fs = std::filesystem;

// No disc has more; so much sound also fits into one file.
constexpr uint64_t MaxTrackSectors = 100 * 60 * image::SectorsPerSecond;
// A sample of both channels.
constexpr uint64_t FrameBytes = 4;

using Form = TrackPiece::Form;

TrackPiece place(const image::SheetPiece& piece, const image::TrackFormat& format,
                 const std::vector<FoundSheetFile>& files) {
    const uint64_t most = MaxTrackSectors * format.sectorSize;
    if (!piece.file) {
        return {Form::Silence, "", 0, std::min(*piece.end, most)};
    }
    const auto& file = files[*piece.file];
    const bool sound = file.type == image::SheetFileType::SoundFile;
    if (sound && file.sound.form == image::SoundHeader::Form::Encoded) {
        return {Form::Encoded, file.path, 0, file.size};
    }
    const bool swapped = sound ? file.sound.form == image::SoundHeader::Form::Swapped
                               : file.type == image::SheetFileType::SwappedSectors;
    const uint64_t first = sound ? file.sound.begin : 0;
    const uint64_t all = sound ? file.sound.bytes : file.size;
    const uint64_t end = std::min(piece.end.value_or(all), all);
    // A file of sound may end anywhere.
    const uint64_t unit = sound ? FrameBytes : format.sectorSize;
    const uint64_t bytes = end > piece.begin ? (end - piece.begin) / unit * unit : 0;
    return {swapped ? Form::Swapped : Form::Plain, file.path, first + piece.begin, std::min(bytes, most)};
}

// Which part of its file, which lasts so many seconds, an encoded track is. Of what else belongs to it only silence can
// be put behind it: the rest would have to be encoded, too.
void cutOut(ImageTrack& track, const image::SheetPiece& piece, const std::vector<image::SheetPiece>& all,
            int fileSeconds) {
    const uint64_t sector = track.format.sectorSize;
    SoundCut cut{piece.begin / sector, {}, 0};
    if (piece.end) {
        cut.count = *piece.end / sector - cut.first;
    }
    for (const auto& each : all) {
        cut.silence += each.file ? 0 : *each.end / sector;
    }
    const auto before = static_cast<int>(cut.first / image::SectorsPerSecond);
    track.seconds = cut.count ? static_cast<int>((*cut.count + cut.silence) / image::SectorsPerSecond)
                              : std::max(fileSeconds - before, 0);
    if (cut != SoundCut{}) {
        track.cut = cut;
    }
}

ImageTrack place(const image::SheetTrack& track, const std::vector<FoundSheetFile>& files) {
    ImageTrack placed{track.format, track.title, track.performer, track.isrc, {}, {}, 0, {}};
    for (const auto& piece : track.pieces) {
        const auto found = place(piece, track.format, files);
        if (found.form != Form::Encoded) {
            placed.pieces.push_back(found);
        } else if (placed.pieces.empty()) {
            placed.pieces.push_back(found);
            placed.extension = files[*piece.file].sound.extension;
            cutOut(placed, piece, track.pieces, files[*piece.file].sound.seconds);
            break;
        }
    }
    return placed;
}

void addTextsOf(image::DiscSheet& sheet, const std::string& folder, const std::string& path) {
    if (sheet.cdTextFile.empty()) {
        return;
    }
    const auto found = findSheetFile(folder, {sheet.cdTextFile, text::cleanText(sheet.cdTextFile)});
    const auto bytes = found ? readSmallFile(found->path, image::MaxSheetBytes + 1) : found.failure();
    const auto added = bytes ? image::addCdText(sheet, *bytes) : Status(bytes.failure());
    if (!added) {
        // The disc can be played without its texts.
        logWarning("%s: %s: %s\n", path.c_str(), text::cleanText(sheet.cdTextFile).c_str(),
                   added.error().c_str());
    }
}

// ---- sub-channels

// The same sectors where each has another size.
void resize(image::SheetPiece& piece, uint32_t before, uint32_t now) {
    piece.begin = piece.begin / before * now;
    if (piece.end) {
        piece.end = *piece.end / before * now;
    }
}
void resize(image::SheetTrack& track, uint32_t now) {
    for (auto& piece : track.pieces) {
        resize(piece, track.format.sectorSize, now);
    }
    track.format.sectorSize = now;
}

// Whether the file holds sub-channels behind each sector, which not every description says: the size of the file does.
bool hasSubChannels(const image::DiscSheet& sheet, const FoundSheetFile& file, size_t index) {
    constexpr uint64_t Long = image::LongSectorBytes;
    if (file.type == image::SheetFileType::SoundFile || file.size % Long != 0) {
        return false;
    }
    uint64_t said = 0; // where the last track ends, if that is said
    for (const auto& track : sheet.tracks) {
        for (const auto& piece : track.pieces) {
            const bool here = piece.file == index;
            if (here && track.format.sectorSize != image::SoundSectorBytes) {
                return false;
            }
            said = here ? piece.end.value_or(0) : said;
        }
    }
    return file.size % image::SoundSectorBytes != 0 || said / image::SoundSectorBytes == file.size / Long;
}

// Gives the tracks the size that the sectors have in their files.
void fitSectors(image::DiscSheet& sheet, const std::vector<FoundSheetFile>& files) {
    for (size_t i = 0; i < files.size(); ++i) {
        const bool isLong = hasSubChannels(sheet, files[i], i);
        for (auto& track : sheet.tracks) {
            const auto size = track.format.sectorSize;
            if (track.pieces.front().file != i) {
                continue;
            }
            if (isLong ||
                (files[i].type == image::SheetFileType::SoundFile && size == image::LongSectorBytes)) {
                const auto now = isLong ? image::LongSectorBytes : image::SoundSectorBytes;
                if (sheet.hidden && sheet.hidden->file == i && &track == &sheet.tracks.front()) {
                    resize(*sheet.hidden, size, now);
                }
                resize(track, now);
            }
        }
    }
}

Result<DiscImage> imageOf(image::DiscSheet sheet, const std::string& path) {
    const std::string folder = fs::path(path).parent_path().string();
    addTextsOf(sheet, folder, path);
    std::vector<FoundSheetFile> files;
    for (const auto& file : sheet.files) {
        auto found = findSheetFile(folder, file);
        if (!found) {
            return Error{path + ": " + found.error()};
        }
        files.push_back(std::move(*found));
    }
    fitSectors(sheet, files);
    const std::string label =
        sheet.title.empty() ? text::cleanText(fs::path(path).stem().string()) : sheet.title;
    DiscImage image{path, sheet.title, sheet.performer, label, sheet.catalogNumber, {}, {}};
    if (sheet.hidden) {
        const image::SheetTrack hidden{
            0, sheet.tracks.front().format, "Hidden track", {}, {}, {*sheet.hidden}};
        image.hidden = place(hidden, files);
    }
    for (const auto& track : sheet.tracks) {
        image.tracks.push_back(place(track, files));
    }
    return image;
}

template <class Parse>
Result<DiscImage> readText(const std::string& path, Parse parse) {
    const auto text = readSmallFile(path, image::MaxSheetBytes + 1);
    if (!text) {
        return text.failure();
    }
    auto sheet = parse(*text);
    if (!sheet) {
        return Error{path + ": " + sheet.error()};
    }
    return imageOf(std::move(*sheet), path);
}

struct NrgTrailerPlace {
    uint64_t begin = 0;
    uint64_t size = 0; ///< of the image
};
std::optional<NrgTrailerPlace> findNrgTrailer(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0 || info.st_size < static_cast<off_t>(image::NrgFooterBytes)) {
        return std::nullopt;
    }
    const auto size = static_cast<uint64_t>(info.st_size);
    auto reader = openSlice(path, size - image::NrgFooterBytes, image::NrgFooterBytes, path);
    std::string footer(image::NrgFooterBytes, '\0');
    if (!reader || !(*reader)->readAt(0, footer)) {
        return std::nullopt;
    }
    const auto begin = image::nrgTrailerPlace(footer, size);
    return begin ? std::optional(NrgTrailerPlace{*begin, size}) : std::nullopt;
}

Result<std::unique_ptr<ByteReader>> openPiece(const TrackPiece& piece, const std::string& name) {
    if (piece.form == Form::Drive) {
        return openCdSound(piece.file, piece.offset / image::SoundSectorBytes,
                           piece.size / image::SoundSectorBytes, name);
    }
    return openSlice(piece.file, piece.offset, piece.size, name);
}

/** The pieces of a track, one behind the other. */
class PieceReader : public ByteReader {
public:
    struct Part {
        TrackPiece piece;
        std::unique_ptr<ByteReader> bytes; ///< null for silence
    };
    explicit PieceReader(std::vector<Part> parts)
        : m_parts(std::move(parts)),
          m_size(std::accumulate(m_parts.begin(), m_parts.end(), uint64_t{0},
                                 [](uint64_t sum, const Part& part) { return sum + part.piece.size; })) {}

    uint64_t size() const override { return m_size; }

    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override {
        size_t done = 0;
        for (auto& part : m_parts) {
            if (offset >= part.piece.size) {
                offset -= part.piece.size;
                continue;
            }
            const auto wanted =
                static_cast<size_t>(std::min<uint64_t>(part.piece.size - offset, buffer.size() - done));
            if (wanted == 0) {
                break;
            }
            const auto count = read(part, offset, buffer.subspan(done, wanted));
            if (!count) {
                return count;
            }
            done += *count;
            if (*count < wanted) {
                break; // shorter than it was when it was opened
            }
            offset = 0;
        }
        return done;
    }

private:
    static Result<size_t> read(Part& part, uint64_t offset, std::span<char> buffer) {
        if (part.piece.form == Form::Silence) {
            std::fill(buffer.begin(), buffer.end(), '\0');
            return buffer.size();
        }
        if (part.piece.form != Form::Swapped) {
            return part.bytes->readAt(offset, buffer);
        }
        // Whole samples, which may begin before and end behind what is wanted.
        const auto before = static_cast<size_t>(offset % 2);
        std::vector<char> samples((before + buffer.size() + 1) / 2 * 2);
        const auto count = part.bytes->readAt(offset - before, samples);
        if (!count) {
            return count;
        }
        for (size_t i = 0; i + 1 < samples.size(); i += 2) {
            std::swap(samples[i], samples[i + 1]);
        }
        const size_t usable = *count / 2 * 2 > before ? *count / 2 * 2 - before : 0;
        const size_t given = std::min(usable, buffer.size());
        std::copy_n(samples.begin() + static_cast<std::ptrdiff_t>(before), given, buffer.begin());
        return given;
    }

    std::vector<Part> m_parts;
    uint64_t m_size;
};

} // namespace

uint64_t ImageTrack::size() const {
    return std::accumulate(pieces.begin(), pieces.end(), uint64_t{0},
                           [](uint64_t sum, const TrackPiece& piece) { return sum + piece.size; });
}

Result<DiscImage> readCueImage(const std::string& path) {
    return readText(path, image::parseCueSheet);
}

Result<DiscImage> readTocImage(const std::string& path) {
    return readText(path, image::parseTocFile);
}

Result<DiscImage> readCcdImage(const std::string& path) {
    const std::string image = fs::path(path).replace_extension(".img").filename().string();
    return readText(path, [&](const std::string& text) { return image::parseCcdSheet(text, image); });
}

Result<DiscImage> readNrgImage(const std::string& path) {
    const auto place = findNrgTrailer(path);
    if (!place) {
        return Error{path + ": has no description at its end"};
    }
    auto reader = openSlice(path, place->begin, place->size - place->begin, path);
    if (!reader) {
        return reader.failure();
    }
    std::string trailer(static_cast<size_t>(std::min<uint64_t>((*reader)->size(), image::MaxSheetBytes + 1)),
                        '\0');
    const auto count = (*reader)->readAt(0, trailer);
    if (!count) {
        return count.failure();
    }
    trailer.resize(*count);
    auto sheet = image::parseNrgTrailer(trailer, fs::path(path).filename().string(), place->size);
    if (!sheet) {
        return Error{path + ": " + sheet.error()};
    }
    return imageOf(std::move(*sheet), path);
}

bool isNrgImage(const std::string& path) {
    return findNrgTrailer(path).has_value();
}

Result<std::unique_ptr<ByteReader>> openTrack(const ImageTrack& track, const std::string& name) {
    std::vector<PieceReader::Part> parts;
    for (const auto& piece : track.pieces) {
        std::unique_ptr<ByteReader> bytes;
        if (piece.form != Form::Silence) {
            auto opened = openPiece(piece, name);
            if (!opened) {
                return opened;
            }
            bytes = std::move(*opened);
        }
        parts.push_back({piece, std::move(bytes)});
    }
    if (parts.size() == 1 && parts.front().bytes && parts.front().piece.form != Form::Swapped) {
        return std::move(parts.front().bytes);
    }
    return std::unique_ptr<ByteReader>(std::make_unique<PieceReader>(std::move(parts)));
}

} // namespace zm::disc::medium
