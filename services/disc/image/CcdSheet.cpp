#include "services/disc/image/CcdSheet.h"

#include "services/disc/image/CdText.h"
#include "services/disc/image/SheetText.h"

#include <algorithm>
#include <charconv>
#include <map>

namespace zm::disc::image {

namespace {

constexpr uint32_t SectorSize = 2352;
constexpr int64_t MaxSectors = 100 * 60 * SectorsPerSecond;
constexpr int LeadOutPoint = 0xA2;
constexpr int DataControl = 0x04;
constexpr size_t MaxEntries = 300;
constexpr size_t MaxSessions = 99;

constexpr const char* audio = "AUDIO";
constexpr const char* modeFormats[] = {audio, "MODE1/2352", "MODE2/2352"};

// Decimal, or hexadecimal with 0x in front; may be negative.
std::optional<int64_t> numberOf(std::string_view text) {
    const bool negative = text.substr(0, 1) == "-";
    text.remove_prefix(negative ? 1 : 0);
    const bool hexadecimal = text.substr(0, 2) == "0x" || text.substr(0, 2) == "0X";
    text.remove_prefix(hexadecimal ? 2 : 0);
    int32_t value = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), value, hexadecimal ? 16 : 10);
    if (error != std::errc() || end != text.data() + text.size() || value < 0) {
        return std::nullopt;
    }
    return negative ? -int64_t{value} : value;
}

// Bytes as pairs of hexadecimal digits between blanks.
std::optional<std::string> bytesOf(std::string_view text) {
    std::string bytes;
    for (auto left = trim(text); !left.empty();) {
        const auto [word, rest] = splitWord(left);
        int value = 0;
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value, 16);
        if (error != std::errc() || end != word.data() + word.size() || value < 0 || value > 0xFF) {
            return std::nullopt;
        }
        bytes += static_cast<char>(value);
        left = rest;
    }
    return bytes;
}

/** What an [Entry] says of a point of a session. */
struct Entry {
    int64_t session = 1;
    int64_t point = 0;
    int64_t control = 0;
    int64_t begin = 0;
};

/** What a [TRACK] says. */
struct Track {
    std::optional<int64_t> mode;
    std::optional<int64_t> pause; ///< INDEX 0
    std::string isrc;
};

class CcdParser {
public:
    explicit CcdParser(const std::string& image) { m_sheet.files.push_back({image, image}); }

    Result<DiscSheet> parse(std::string_view text) {
        auto status = forEachLine(text, [this](int number, std::string_view line) {
            m_line = number;
            return take(line);
        });
        if (status) {
            status = placeTracks();
        }
        if (!status) {
            return status.failure();
        }
        repairTexts(m_sheet);
        if (!m_cdText.empty()) {
            if (auto added = addCdText(m_sheet, m_cdText); !added) {
                return Error{"CDText: " + added.error()};
            }
        }
        return std::move(m_sheet);
    }

private:
    Status take(std::string_view line) {
        if (line.empty() || line.front() == ';') {
            return ok();
        }
        if (line.front() == '[') {
            return section(line);
        }
        const auto equals = line.find('=');
        if (equals == std::string_view::npos) {
            return lineError(m_line, line, "no section and no value");
        }
        return value(line, upperCase(trim(line.substr(0, equals))), trim(line.substr(equals + 1)));
    }

    Status section(std::string_view line) {
        if (line.back() != ']') {
            return lineError(m_line, line, "the section's name has no end");
        }
        const auto [name, number] = splitWord(trim(line.substr(1, line.size() - 2)));
        m_section = upperCase(name);
        m_track = nullptr;
        if (m_section == "ENTRY") {
            if (m_entries.size() == MaxEntries) {
                return lineError(m_line, line, "more than " + std::to_string(MaxEntries) + " entries");
            }
            m_entries.emplace_back();
        } else if (m_section == "TRACK") {
            const auto track = wholeNumber(number, MaxTrackNumber);
            if (!track || *track == 0) {
                return lineError(m_line, line, "not a track from 1 to 99");
            }
            m_track = &m_tracks[*track];
        }
        return ok();
    }

    Status value(std::string_view line, const std::string& name, std::string_view text) {
        if (m_section == "ENTRY") {
            static const std::map<std::string, int64_t Entry::*> members{{"SESSION", &Entry::session},
                                                                         {"POINT", &Entry::point},
                                                                         {"CONTROL", &Entry::control},
                                                                         {"PLBA", &Entry::begin}};
            const auto member = members.find(name);
            return member == members.end() ? ok() : number(line, text, m_entries.back().*member->second);
        }
        if (m_track && name == "MODE") {
            return number(line, text, m_track->mode.emplace());
        }
        if (m_track && name == "INDEX 0") {
            return number(line, text, m_track->pause.emplace());
        }
        if (m_track && name == "ISRC" && isIsrc(text)) {
            m_track->isrc = text;
        } else if (m_section == "DISC" && name == "CATALOG" && isCatalogNumber(text)) {
            m_sheet.catalogNumber = text;
        } else if (m_section == "CDTEXT" && name.rfind("ENTRY", 0) == 0 && name != "ENTRIES") {
            return pack(line, text);
        }
        return ok();
    }

    Status number(std::string_view line, std::string_view text, int64_t& value) const {
        const auto found = numberOf(text);
        if (!found) {
            return lineError(m_line, line, "not a number");
        }
        value = *found;
        return ok();
    }

    Status pack(std::string_view line, std::string_view text) {
        auto bytes = bytesOf(text);
        if (!bytes || (bytes->size() != CdTextBareBytes && bytes->size() != CdTextPackBytes)) {
            return lineError(m_line, line, "not the bytes of a text");
        }
        bytes->resize(CdTextBareBytes);
        const uint16_t sum = cdTextSum(*bytes);
        m_cdText += *bytes;
        m_cdText += static_cast<char>(sum >> 8);
        m_cdText += static_cast<char>(sum & 0xFF);
        return ok();
    }

    // The sessions' sectors follow each other in the image without what lies between them on the disc.
    Status placeTracks() {
        std::vector<Entry> tracks;
        std::map<int64_t, int64_t> leadOuts; // by session
        for (const auto& entry : m_entries) {
            if (entry.point == LeadOutPoint && leadOuts.size() < MaxSessions) {
                leadOuts[entry.session] = entry.begin;
            } else if (entry.point >= 1 && entry.point <= MaxTrackNumber) {
                tracks.push_back(entry);
            }
        }
        std::sort(tracks.begin(), tracks.end(),
                  [](const Entry& a, const Entry& b) { return a.point < b.point; });
        int64_t missing = 0; // sectors of the disc so far that the image does not have
        int64_t sessionEnd = 0;
        for (size_t i = 0; i < tracks.size(); ++i) {
            const auto& track = tracks[i];
            const bool sameSession = i > 0 && tracks[i - 1].session == track.session;
            const bool last = i + 1 == tracks.size() || tracks[i + 1].session != track.session;
            if (!sameSession && i > 0) {
                missing += track.begin - sessionEnd;
            }
            if (last && !leadOuts.contains(track.session)) {
                return trackError(track, "its session has no end");
            }
            const int64_t end = last ? leadOuts[track.session] : tracks[i + 1].begin;
            if (track.begin < missing || end <= track.begin || end > MaxSectors) {
                return trackError(track, "ends before it begins, or lies nowhere");
            }
            sessionEnd = last ? end : sessionEnd;
            if (auto status = add(track, track.begin - missing, end - missing); !status) {
                return status;
            }
        }
        return m_sheet.tracks.empty() ? Status(Error{"names no track"}) : ok();
    }

    static Error trackError(const Entry& track, const std::string& what) {
        return Error{"track " + std::to_string(track.point) + ": " + what};
    }

    Status add(const Entry& entry, int64_t begin, int64_t end) {
        const auto& known = m_tracks[static_cast<int>(entry.point)];
        const int64_t mode = known.mode.value_or(entry.control & DataControl ? 1 : 0);
        if (mode < 0 || mode >= std::ssize(modeFormats)) {
            return trackError(entry, "unknown mode " + std::to_string(mode));
        }
        const int number = static_cast<int>(entry.point);
        if (!m_sheet.tracks.empty() && m_sheet.tracks.back().number == number) {
            return trackError(entry, "stands there twice");
        }
        const auto& format = *trackFormat(modeFormats[mode]);
        const auto bytes = [](int64_t sectors) { return static_cast<uint64_t>(sectors) * SectorSize; };
        // What lies before the first track; what lies before a later one ends the one before it.
        if (m_sheet.tracks.empty() && modeFormats[mode] == audio &&
            begin >= static_cast<int64_t>(LeastHiddenSectors)) {
            m_sheet.hidden = SheetPiece{0, 0, bytes(begin)};
        }
        if (!m_sheet.tracks.empty() && known.pause && m_sheet.tracks.back().format.name != format.name) {
            auto& before = m_sheet.tracks.back().pieces.front();
            const int64_t pause = *known.pause - (entry.begin - begin);
            if (pause > 0 && bytes(pause) > before.begin && bytes(pause) < *before.end) {
                before.end = bytes(pause);
            }
        }
        m_sheet.tracks.push_back({number, format, {}, {}, known.isrc, {{0, bytes(begin), bytes(end)}}});
        return ok();
    }

    DiscSheet m_sheet;
    int m_line = 0;
    std::string m_section; ///< in capitals
    std::vector<Entry> m_entries;
    std::map<int, Track> m_tracks;
    Track* m_track = nullptr; ///< of the present section
    std::string m_cdText;
};

} // namespace

Result<DiscSheet> parseCcdSheet(std::string_view text, const std::string& image) {
    if (text.size() > MaxSheetBytes) {
        return Error{"longer than " + std::to_string(MaxSheetBytes) + " bytes"};
    }
    return CcdParser(image).parse(text);
}

} // namespace zm::disc::image
