#include "services/disc/medium/CueSheet.h"

#include "services/disc/text/Charset.h"

#include <algorithm>
#include <charconv>

namespace zm::disc {

namespace {

using Content = TrackFormat::Content;

constexpr size_t MaxLineBytes = 1000;
constexpr size_t MaxFiles = 99;
constexpr int MaxTrack = 99;
constexpr int MaxIndex = 99;
constexpr size_t CulpritBytes = 60;
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view Blanks = " \t\r\f\v";

constexpr TrackFormat formats[] = {
    {"AUDIO", Content::Audio, 2352, 0},       {"MODE1/2048", Content::Mode1, 2048, 0},
    {"MODE1/2352", Content::Mode1, 2352, 16}, {"MODE2/2048", Content::Mode2, 2048, 0},
    {"MODE2/2324", Content::Mode2, 2324, 0},  {"MODE2/2336", Content::Mode2, 2336, 8},
    {"MODE2/2352", Content::Mode2, 2352, 24}, {"CDI/2336", Content::Mode2, 2336, 8},
    {"CDI/2352", Content::Mode2, 2352, 24},
};

// What says nothing that playing needs.
constexpr std::string_view passedOver[] = {
    "REM",   "FLAGS",   "ISRC",    "CATALOG",  "CDTEXTFILE", "SONGWRITER", "PREGAP",   "POSTGAP",  "COMPOSER",
    "GENRE", "MESSAGE", "DISC_ID", "ARRANGER", "SIZE_INFO",  "UPC_EAN",    "TOC_INFO", "TOC_INFO2"};

std::string_view trim(std::string_view text) {
    const auto first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

std::string upperCase(std::string_view word) {
    std::string result(word);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return result;
}

struct Split {
    std::string_view first;
    std::string_view rest;
};
Split splitWord(std::string_view text) {
    const auto end = std::min(text.find_first_of(Blanks), text.size());
    return {text.substr(0, end), trim(text.substr(end))};
}

// The text of a line, with or without quotes; quotes inside belong to it.
std::string unquoted(std::string_view text) {
    if (!text.empty() && text.front() == '"') {
        text.remove_prefix(1);
        const auto close = text.rfind('"');
        text = text.substr(0, close);
    }
    return std::string(trim(text));
}

std::optional<int> number(std::string_view text, int largest) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole && value >= 0 && value <= largest ? std::optional(value) : std::nullopt;
}

// Minutes, seconds and sectors as a number of sectors.
std::optional<int> sectors(std::string_view time) {
    const auto first = std::min(time.find(':'), time.size());
    const auto second = std::min(time.find(':', std::min(first + 1, time.size())), time.size());
    if (second == time.size()) {
        return std::nullopt;
    }
    const auto minutes = number(time.substr(0, first), 99);
    const auto seconds = number(time.substr(first + 1, second - first - 1), 59);
    const auto frames = number(time.substr(second + 1), SectorsPerSecond - 1);
    if (!minutes || !seconds || !frames) {
        return std::nullopt;
    }
    return (*minutes * 60 + *seconds) * SectorsPerSecond + *frames;
}

class Parser {
public:
    Result<CueSheet> parse(std::string_view text) {
        if (text.substr(0, ByteOrderMark.size()) == ByteOrderMark) {
            text.remove_prefix(ByteOrderMark.size());
        }
        while (!text.empty()) {
            const auto end = std::min(text.find_first_of("\r\n"), text.size());
            if (auto status = line(text.substr(0, end)); !status) {
                return status.failure();
            }
            const bool pair = text.substr(end, 2) == "\r\n";
            text.remove_prefix(std::min(text.size(), end + (pair ? 2 : 1)));
        }
        if (auto status = endTrack(); !status) {
            return status.failure();
        }
        if (m_sheet.tracks.empty()) {
            return Error{"names no track"};
        }
        repairTexts();
        return std::move(m_sheet);
    }

private:
    struct Word {
        std::string_view name;
        Status (Parser::*take)(std::string_view rest);
    };

    Status line(std::string_view text) {
        static constexpr Word words[] = {
            {"FILE", &Parser::file},   {"TRACK", &Parser::track},         {"INDEX", &Parser::index},
            {"TITLE", &Parser::title}, {"PERFORMER", &Parser::performer},
        };
        ++m_line;
        if (text.size() > MaxLineBytes) {
            return fail({}, "longer than " + std::to_string(MaxLineBytes) + " bytes");
        }
        text = trim(text);
        const auto [first, rest] = splitWord(text);
        const std::string name = upperCase(first);
        const auto word = std::find_if(std::begin(words), std::end(words),
                                       [&](const Word& each) { return each.name == name; });
        m_text = text;
        if (word != std::end(words)) {
            return (this->*word->take)(rest);
        }
        const bool known =
            std::find(std::begin(passedOver), std::end(passedOver), name) != std::end(passedOver);
        return known || text.empty() ? ok() : fail(text, "no line of a cue sheet");
    }

    Status fail(std::string_view culprit, const std::string& what) const {
        const std::string shown = culprit.empty() ? "" : cleanText(culprit.substr(0, CulpritBytes));
        return Error{"line " + std::to_string(m_line) + ": " + (shown.empty() ? "" : shown + ": ") + what};
    }

    Status file(std::string_view rest) {
        const auto end = rest.find_last_of(Blanks);
        const std::string type =
            upperCase(rest.substr(end == std::string_view::npos ? rest.size() : end + 1));
        if (type != "BINARY") {
            return fail(m_text, "only files of the type BINARY are played");
        }
        const std::string_view quoted = trim(rest.substr(0, end));
        const std::string name = unquoted(quoted);
        if (name.empty() || name.find('\0') != std::string::npos ||
            (quoted.front() == '"' && (quoted.size() < 2 || quoted.back() != '"'))) {
            return fail(m_text, "no file name");
        }
        if (m_sheet.files.size() == MaxFiles) {
            return fail(m_text, "more than " + std::to_string(MaxFiles) + " files");
        }
        m_sheet.files.push_back({name, name});
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
        const auto found = number(numberText, MaxTrack);
        if (!found || *found <= before) {
            return fail(m_text, "not the number of a next track (at most 99)");
        }
        const std::string name = upperCase(mode);
        const auto format = std::find_if(std::begin(formats), std::end(formats),
                                         [&](const TrackFormat& each) { return each.name == name; });
        if (format == std::end(formats)) {
            return fail(m_text, "unknown kind of track");
        }
        if (m_sheet.files.empty()) {
            return fail(m_text, "no FILE before it");
        }
        m_trackLine = m_line;
        m_lastIndex = -1;
        m_sheet.tracks.push_back({*found, *format, {}, {}, 0, 0, {}});
        return ok();
    }

    Status index(std::string_view rest) {
        const auto [numberText, time] = splitWord(rest);
        const auto found = number(numberText, MaxIndex);
        const auto sector = sectors(time);
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
        if (*found == 1) {
            track.file = m_sheet.files.size() - 1;
            track.begin = m_offset;
        }
        return endsBefore && before ? end(*before) : ok();
    }

    // A track ends with the first index of the next one, or earlier where sectors of another format begin.
    Status end(CueTrack& track) {
        if (track.begin >= m_offset) {
            return fail(m_text, "leaves nothing of the track before");
        }
        track.end = track.end.value_or(m_offset);
        return ok();
    }

    // The track before the present one if it lies in the same file.
    CueTrack* trackBefore() {
        const size_t count = m_sheet.tracks.size();
        CueTrack* before = count < 2 ? nullptr : &m_sheet.tracks[count - 2];
        return before && before->file == m_sheet.files.size() - 1 ? before : nullptr;
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

    template <class Use>
    void forEachText(Use use) {
        use(m_sheet.title);
        use(m_sheet.performer);
        for (auto& file : m_sheet.files) {
            use(file.name);
        }
        for (auto& track : m_sheet.tracks) {
            use(track.title);
            use(track.performer);
        }
    }

    void repairTexts() {
        CharsetRepair repair;
        forEachText([&](const std::string& text) { repair.learn(text); });
        forEachText([&](std::string& text) { text = repair.toUtf8(text); });
    }

    CueSheet m_sheet;
    int m_line = 0;
    std::string_view m_text; ///< of the present line
    int m_trackLine = 0;
    int m_lastIndex = -1;      ///< of the present track
    int m_sector = 0;          ///< of the last index in the present file
    uint64_t m_offset = 0;     ///< its place there
    uint32_t m_sectorSize = 0; ///< of the sectors behind it; 0 at the beginning of a file
};

} // namespace

Result<CueSheet> parseCueSheet(std::string_view text) {
    if (text.size() > MaxCueBytes) {
        return Error{"longer than " + std::to_string(MaxCueBytes) + " bytes"};
    }
    return Parser().parse(text);
}

} // namespace zm::disc
