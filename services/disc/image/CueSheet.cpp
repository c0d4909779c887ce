#include "services/disc/image/CueSheet.h"

#include "services/disc/image/SheetText.h"

#include <algorithm>

namespace zm::disc::image {

namespace {

using Content = TrackFormat::Content;

constexpr int MaxIndex = 99;

// What says nothing that playing needs.
constexpr std::string_view passedOverCommands[] = {"REM",       "FLAGS",   "SONGWRITER", "COMPOSER",
                                                   "GENRE",     "MESSAGE", "DISC_ID",    "ARRANGER",
                                                   "SIZE_INFO", "UPC_EAN", "TOC_INFO",   "TOC_INFO2"};

struct FileTypeRow {
    std::string_view name;
    SheetFileType type;
};
constexpr FileTypeRow fileTypes[] = {
    {"BINARY", SheetFileType::Sectors}, {"MOTOROLA", SheetFileType::SwappedSectors},
    {"WAVE", SheetFileType::SoundFile}, {"AIFF", SheetFileType::SoundFile},
    {"MP3", SheetFileType::SoundFile},  {"FLAC", SheetFileType::SoundFile},
};

class CueParser {
public:
    Result<DiscSheet> parse(std::string_view text) {
        auto status = forEachLine(text, [this](int number, std::string_view line) {
            m_line = number;
            return take(line);
        });
        if (status) {
            status = endTrack();
        }
        if (!status) {
            return status.failure();
        }
        if (m_sheet.tracks.empty()) {
            return Error{"names no track"};
        }
        addSilence();
        repairTexts(m_sheet);
        return std::move(m_sheet);
    }

private:
    struct Word {
        std::string_view name;
        Status (CueParser::*take)(std::string_view rest);
    };

    Status take(std::string_view text) {
        static constexpr Word words[] = {
            {"FILE", &CueParser::file},       {"TRACK", &CueParser::track},
            {"INDEX", &CueParser::index},     {"TITLE", &CueParser::title},
            {"ISRC", &CueParser::isrc},       {"PERFORMER", &CueParser::performer},
            {"PREGAP", &CueParser::pregap},   {"POSTGAP", &CueParser::postgap},
            {"CATALOG", &CueParser::catalog}, {"CDTEXTFILE", &CueParser::cdTextFile},
        };
        const auto [first, rest] = splitWord(text);
        const std::string name = upperCase(first);
        const auto word = std::find_if(std::begin(words), std::end(words),
                                       [&](const Word& each) { return each.name == name; });
        m_text = text;
        if (word != std::end(words)) {
            return (this->*word->take)(rest);
        }
        const bool known = std::find(std::begin(passedOverCommands), std::end(passedOverCommands), name) !=
                           std::end(passedOverCommands);
        return known || text.empty() ? ok() : fail(text, "no line of a cue sheet");
    }

    Status fail(std::string_view culprit, const std::string& what) const {
        return lineError(m_line, culprit, what);
    }

    Status file(std::string_view rest) {
        const auto end = rest.find_last_of(Blanks);
        const std::string type =
            upperCase(rest.substr(end == std::string_view::npos ? rest.size() : end + 1));
        const auto* row = std::find_if(std::begin(fileTypes), std::end(fileTypes),
                                       [&](const FileTypeRow& each) { return each.name == type; });
        if (row == std::end(fileTypes)) {
            return fail(m_text, "not of the type BINARY, MOTOROLA, WAVE, AIFF, MP3 or FLAC");
        }
        const std::string_view quoted = trim(rest.substr(0, end));
        const std::string name = unquoted(quoted);
        if (name.empty() || name.find('\0') != std::string::npos ||
            (quoted.front() == '"' && (quoted.size() < 2 || quoted.back() != '"'))) {
            return fail(m_text, "no file name");
        }
        if (m_sheet.files.size() == MaxSheetFiles) {
            return fail(m_text, "more than " + std::to_string(MaxSheetFiles) + " files");
        }
        m_sheet.files.push_back({name, name, row->type});
        m_sector = 0;
        m_offset = 0;
        m_sectorSize = 0;
        return ok();
    }

    Status track(std::string_view rest) {
        if (auto status = endTrack(); !status) {
            return status;
        }
        const auto [numberText, mode] = splitWord(rest);
        const int before = m_sheet.tracks.empty() ? 0 : m_sheet.tracks.back().number;
        const auto found = wholeNumber(numberText, MaxTrackNumber);
        if (!found || *found <= before) {
            return fail(m_text, "not the number of a next track (at most 99)");
        }
        const auto* format = trackFormat(upperCase(mode));
        if (!format) {
            return fail(m_text, "unknown kind of track");
        }
        if (m_sheet.files.empty()) {
            return fail(m_text, "no FILE before it");
        }
        m_trackLine = m_line;
        m_lastIndex = -1;
        m_pauseBegin.reset();
        m_sheet.tracks.push_back({*found, *format, {}, {}, {}, {{}}});
        m_silence.push_back(0);
        return ok();
    }

    Status index(std::string_view rest) {
        const auto [numberText, time] = splitWord(rest);
        const auto found = wholeNumber(numberText, MaxIndex);
        const auto sector = sectorsOf(time);
        if (m_sheet.tracks.empty()) {
            return fail(m_text, "no TRACK before it");
        }
        if (!found || !sector) {
            return fail(m_text, "not a number and a time mm:ss:ff");
        }
        if (*found <= m_lastIndex || (*found > 1 && m_lastIndex < 1)) {
            return fail(m_text, "not the next index of its track");
        }
        if (*sector < m_sector) {
            return fail(m_text, "goes backwards");
        }
        auto& track = m_sheet.tracks.back();
        const uint32_t sectorSize = m_sectorSize ? m_sectorSize : track.format.sectorSize;
        m_offset += static_cast<uint64_t>(*sector - m_sector) * sectorSize;
        m_sector = *sector;
        m_sectorSize = track.format.sectorSize;
        m_lastIndex = *found;
        auto* before = trackBefore();
        const bool endsBefore =
            *found == 1 || (*found == 0 && before && before->format.name != track.format.name);
        if (*found == 0) {
            m_pauseBegin = SheetPiece{m_sheet.files.size() - 1, m_offset, {}};
        }
        if (*found == 1) {
            track.pieces.front() = {m_sheet.files.size() - 1, m_offset, {}};
            hide();
        }
        return endsBefore && before ? end(before->pieces.front()) : ok();
    }

    // A track ends with the first index of the next one, or earlier where sectors of another format begin.
    Status end(SheetPiece& track) {
        if (track.begin >= m_offset) {
            return fail(m_text, "leaves nothing of the track before");
        }
        track.end = track.end.value_or(m_offset);
        return ok();
    }

    // Sound before the first track that is no mere pause.
    void hide() {
        const bool first = m_sheet.tracks.size() == 1;
        const auto& begin = m_sheet.tracks.back().pieces.front();
        if (first && m_sheet.tracks.back().format.content == Content::Audio && m_pauseBegin &&
            m_pauseBegin->file == begin.file &&
            begin.begin - m_pauseBegin->begin >=
                LeastHiddenSectors * m_sheet.tracks.back().format.sectorSize) {
            m_sheet.hidden = *m_pauseBegin;
            m_sheet.hidden->end = begin.begin;
        }
    }

    // The track before the present one if it lies in the same file.
    SheetTrack* trackBefore() {
        const size_t count = m_sheet.tracks.size();
        SheetTrack* before = count < 2 ? nullptr : &m_sheet.tracks[count - 2];
        return before && before->pieces.front().file == m_sheet.files.size() - 1 ? before : nullptr;
    }

    Status endTrack() {
        if (m_sheet.tracks.empty() || m_lastIndex >= 1) {
            return ok();
        }
        m_line = m_trackLine;
        return fail("TRACK " + std::to_string(m_sheet.tracks.back().number), "has no INDEX 01");
    }

    Status title(std::string_view rest) {
        (m_sheet.tracks.empty() ? m_sheet.title : m_sheet.tracks.back().title) = unquoted(rest);
        return ok();
    }

    Status performer(std::string_view rest) {
        (m_sheet.tracks.empty() ? m_sheet.performer : m_sheet.tracks.back().performer) = unquoted(rest);
        return ok();
    }

    Status isrc(std::string_view rest) {
        const std::string number = upperCase(unquoted(rest));
        if (!m_sheet.tracks.empty() && isIsrc(number)) {
            m_sheet.tracks.back().isrc = number;
        }
        return ok();
    }

    Status catalog(std::string_view rest) {
        if (const std::string number = unquoted(rest); isCatalogNumber(number)) {
            m_sheet.catalogNumber = number;
        }
        return ok();
    }

    Status cdTextFile(std::string_view rest) {
        m_sheet.cdTextFile = unquoted(rest);
        return ok();
    }

    // Silence between two tracks belongs to the first of them.
    Status pregap(std::string_view rest) {
        const auto place = m_silence.size();
        return addSilenceTo(place < 2 ? nullptr : &m_silence[place - 2], rest);
    }
    Status postgap(std::string_view rest) {
        return addSilenceTo(m_silence.empty() ? nullptr : &m_silence.back(), rest);
    }
    Status addSilenceTo(uint64_t* silence, std::string_view time) {
        const auto sectors = sectorsOf(time);
        if (!sectors) {
            return fail(m_text, "not a time mm:ss:ff");
        }
        if (m_sheet.tracks.empty()) {
            return fail(m_text, "no TRACK before it");
        }
        if (silence) {
            *silence += static_cast<uint64_t>(*sectors);
        }
        return ok();
    }

    void addSilence() {
        for (size_t i = 0; i < m_silence.size(); ++i) {
            if (m_silence[i] > 0 && m_sheet.tracks[i].format.content == Content::Audio) {
                m_sheet.tracks[i].pieces.push_back(
                    {{}, 0, m_silence[i] * m_sheet.tracks[i].format.sectorSize});
            }
        }
    }

    DiscSheet m_sheet;
    std::vector<uint64_t> m_silence;        ///< behind each track, in sectors
    std::optional<SheetPiece> m_pauseBegin; ///< INDEX 00 of the present track
    int m_line = 0;
    std::string_view m_text; ///< of the present line
    int m_trackLine = 0;
    int m_lastIndex = -1;      ///< of the present track
    int m_sector = 0;          ///< of the last index in the present file
    uint64_t m_offset = 0;     ///< its place there
    uint32_t m_sectorSize = 0; ///< of the sectors behind it; 0 at the beginning of a file
};

} // namespace

Result<DiscSheet> parseCueSheet(std::string_view text) {
    if (text.size() > MaxSheetBytes) {
        return Error{"longer than " + std::to_string(MaxSheetBytes) + " bytes"};
    }
    return CueParser().parse(text);
}

} // namespace zm::disc::image
