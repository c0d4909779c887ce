#include "services/disc/image/NrgTrailer.h"

#include "base/ByteNumbers.h"
#include "services/disc/image/CdText.h"
#include "services/disc/image/SheetText.h"

#include <algorithm>

namespace zm::disc::image {

namespace {

constexpr size_t NrgChunkHeader = 8;
constexpr size_t MaxNrgChunks = 1000;

constexpr size_t TracksPlace = 22; // in a chunk of tracks of one piece
constexpr size_t CatalogPlace = 4;
constexpr size_t CatalogBytes = 13;
constexpr size_t IsrcBytes = 12;
constexpr size_t SectorSizePlace = 12;
constexpr size_t ModePlace = 14;
constexpr size_t OffsetsPlace = 18;

struct NrgMode {
    unsigned char mode;
    const char* format;
};
constexpr NrgMode nrgModes[] = {{0x00, "MODE1/2048"}, {0x02, "MODE2/2048"}, {0x03, "MODE2/2336"},
                                {0x05, "MODE1/2352"}, {0x06, "MODE2/2352"}, {0x07, "AUDIO"},
                                {0x0F, "MODE1/2448"}, {0x10, "CDG"},        {0x11, "MODE2/2448"}};

/** The two ages of the format differ in the size of their numbers. */
struct Layout {
    std::string_view tracks; ///< names of the chunks
    std::string_view wholeTracks;
    size_t number;
};
constexpr Layout layouts[] = {{"DAOX", "ETN2", 8}, {"DAOI", "ETNF", 4}};

class NrgParser {
public:
    NrgParser(const std::string& image, uint64_t size) : m_size(size) {
        m_sheet.files.push_back({image, image});
    }

    Result<DiscSheet> parse(std::string_view trailer) {
        std::string_view texts;
        for (size_t chunks = 0; trailer.size() >= NrgChunkHeader; ++chunks) {
            const auto name = trailer.substr(0, 4);
            const uint64_t size = bigEndian(trailer, 4, 4);
            if (name == "END!" || name == "NER5" || name == "NERO") {
                break;
            }
            if (size > trailer.size() - NrgChunkHeader || chunks == MaxNrgChunks) {
                return fail(name, "longer than the image");
            }
            const auto data = trailer.substr(NrgChunkHeader, static_cast<size_t>(size));
            if (name == "CDTX") {
                texts = data;
            } else if (auto status = take(name, data); !status) {
                return status.failure();
            }
            trailer.remove_prefix(NrgChunkHeader + static_cast<size_t>(size));
        }
        if (m_sheet.tracks.empty()) {
            return Error{"names no track"};
        }
        if (!texts.empty()) {
            if (auto status = addCdText(m_sheet, texts); !status) {
                return Error{"CDTX: " + status.error()};
            }
        }
        return std::move(m_sheet);
    }

private:
    static Error fail(std::string_view chunk, const std::string& what) {
        std::string name(chunk);
        std::replace_if(
            name.begin(), name.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
        return Error{name + ": " + what};
    }

    Status take(std::string_view name, std::string_view data) {
        for (const auto& layout : layouts) {
            if (name == layout.tracks) {
                return takeTracks(name, data, layout.number);
            }
            if (name == layout.wholeTracks) {
                return takeWholeTracks(name, data, layout.number);
            }
        }
        return ok();
    }

    // A disc written at once: of each track where its pause, its sound and its end are.
    Status takeTracks(std::string_view name, std::string_view data, size_t number) {
        const size_t bytes = OffsetsPlace + 3 * number;
        if (data.size() < TracksPlace || (data.size() - TracksPlace) % bytes != 0) {
            return fail(name, "no whole number of tracks");
        }
        if (const auto catalog = data.substr(CatalogPlace, CatalogBytes); isCatalogNumber(catalog)) {
            m_sheet.catalogNumber = catalog;
        }
        for (size_t place = TracksPlace; place < data.size(); place += bytes) {
            const auto track = data.substr(place, bytes);
            const uint64_t pause = bigEndian(track, OffsetsPlace, number);
            const uint64_t begin = bigEndian(track, OffsetsPlace + number, number);
            const uint64_t end = bigEndian(track, OffsetsPlace + 2 * number, number);
            const auto mode = static_cast<unsigned char>(track[ModePlace]);
            if (auto status = add(name, mode, pause, begin, end); !status) {
                return status;
            }
            auto& added = m_sheet.tracks.back();
            if (bigEndian(track, SectorSizePlace, 2) != added.format.sectorSize) {
                return fail(name, trackName() + "sectors of another size than its mode has");
            }
            added.isrc = isIsrc(track.substr(0, IsrcBytes)) ? track.substr(0, IsrcBytes) : "";
        }
        return ok();
    }

    // Tracks written one by one.
    Status takeWholeTracks(std::string_view name, std::string_view data, size_t number) {
        const size_t bytes = number == 8 ? 32 : 20;
        if (data.size() % bytes != 0) {
            return fail(name, "no whole number of tracks");
        }
        for (size_t place = 0; place < data.size(); place += bytes) {
            const auto track = data.substr(place, bytes);
            const uint64_t begin = bigEndian(track, 0, number);
            const uint64_t size = std::min(bigEndian(track, number, number), m_size);
            const auto mode = static_cast<unsigned char>(track[2 * number + 3]);
            if (auto status = add(name, mode, begin, begin, begin + size); !status) {
                return status;
            }
        }
        return ok();
    }

    std::string trackName() const { return "track " + std::to_string(m_sheet.tracks.size()) + ": "; }

    Status add(std::string_view name, unsigned char mode, uint64_t pause, uint64_t begin, uint64_t end) {
        const int number = static_cast<int>(m_sheet.tracks.size()) + 1;
        const std::string track = "track " + std::to_string(number) + ": ";
        const auto* row = std::find_if(std::begin(nrgModes), std::end(nrgModes),
                                       [=](const NrgMode& each) { return each.mode == mode; });
        if (number > MaxTrackNumber) {
            return fail(name, "more than 99 tracks");
        }
        if (row == std::end(nrgModes)) {
            return fail(name, track + "unknown mode " + std::to_string(mode));
        }
        if (begin > end || pause > begin || begin > m_size || begin == end) {
            return fail(name, track + "ends before it begins, or lies outside of the image");
        }
        const auto& format = *trackFormat(row->format);
        const bool sound = format.content == TrackFormat::Content::Audio;
        if (m_sheet.tracks.empty() && sound && begin - pause >= LeastHiddenSectors * format.sectorSize) {
            m_sheet.hidden = SheetPiece{0, pause, begin};
        } else if (!m_sheet.tracks.empty() && m_sheet.tracks.back().format.name == format.name && sound &&
                   m_sheet.tracks.back().pieces.front().end == pause) {
            m_sheet.tracks.back().pieces.front().end = begin;
        }
        m_sheet.tracks.push_back({number, format, {}, {}, {}, {{0, begin, end}}});
        return ok();
    }

    uint64_t m_size;
    DiscSheet m_sheet;
};

} // namespace

std::optional<uint64_t> nrgTrailerPlace(std::string_view footer, uint64_t size) {
    if (footer.size() < NrgFooterBytes || size < NrgFooterBytes) {
        return std::nullopt;
    }
    footer = footer.substr(footer.size() - NrgFooterBytes);
    std::optional<uint64_t> place;
    if (footer.substr(0, 4) == "NER5") {
        place = bigEndian(footer, 4, 8);
    } else if (footer.substr(4, 4) == "NERO") {
        place = bigEndian(footer, 8, 4);
    }
    return place && *place < size ? place : std::nullopt;
}

Result<DiscSheet> parseNrgTrailer(std::string_view trailer, const std::string& image, uint64_t size) {
    if (trailer.size() > MaxSheetBytes) {
        return Error{"description longer than " + std::to_string(MaxSheetBytes) + " bytes"};
    }
    return NrgParser(image, size).parse(trailer);
}

} // namespace zm::disc::image
