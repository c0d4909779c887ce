#include "services/disc/image/TocFile.h"

#include "services/disc/image/SheetText.h"
#include "services/disc/image/TocTokens.h"

#include <algorithm>
#include <charconv>

namespace zm::disc::image {

namespace {

constexpr size_t MaxPieces = 500; // of all tracks
constexpr uint64_t SampleBytes = 4;
constexpr uint64_t MaxBytes = uint64_t{100} * 60 * SectorsPerSecond * SoundSectorBytes;

struct TocMode {
    std::string_view mode;
    std::string_view format;
    std::string_view longFormat{}; ///< with sub-channels
};
constexpr TocMode tocModes[] = {{"AUDIO", "AUDIO", "CDG"},
                                {"MODE1", "MODE1/2048"},
                                {"MODE1_RAW", "MODE1/2352", "MODE1/2448"},
                                {"MODE2", "MODE2/2336"},
                                {"MODE2_RAW", "MODE2/2352", "MODE2/2448"},
                                {"MODE2_FORM1", "MODE2/2048"},
                                {"MODE2_FORM2", "MODE2/2324"},
                                {"MODE2_FORM_MIX", "MODE2/2336"}};

// What a disc may be, and what is said of tracks that playing does not need.
constexpr std::string_view passedOverWords[] = {
    "CD_DA", "CD_ROM",      "CD_ROM_XA", "CD_I", "NO", "COPY", "TWO_CHANNEL_AUDIO", "FOUR_CHANNEL_AUDIO",
    "END",   "PRE_EMPHASIS"};

class TocParser {
public:
    explicit TocParser(std::vector<TocToken> tokens) : m_tokens(std::move(tokens)) {}

    Result<DiscSheet> parse() {
        while (m_place < m_tokens.size()) {
            const TocToken& token = m_tokens[m_place++];
            if (auto status = take(token); !status) {
                return status.failure();
            }
        }
        if (auto status = endTrack(); !status) {
            return status.failure();
        }
        if (m_sheet.tracks.empty()) {
            return Error{"names no track"};
        }
        repairTexts(m_sheet);
        return std::move(m_sheet);
    }

private:
    struct Word {
        std::string_view name;
        Status (TocParser::*take)(const TocToken& token);
        bool ofTrack = true;
    };

    Status take(const TocToken& token) {
        static constexpr Word words[] = {
            {"CATALOG", &TocParser::catalog, false},
            {"CD_TEXT", &TocParser::texts, false},
            {"TRACK", &TocParser::track, false},
            {"ISRC", &TocParser::isrc},
            {"FILE", &TocParser::sound},
            {"AUDIOFILE", &TocParser::sound},
            {"DATAFILE", &TocParser::data},
            {"SILENCE", &TocParser::silence},
            {"ZERO", &TocParser::silence},
            {"PREGAP", &TocParser::pregap},
            {"START", &TocParser::start},
            {"INDEX", &TocParser::index},
        };
        const auto word = std::find_if(std::begin(words), std::end(words),
                                       [&](const Word& each) { return token.is(each.name); });
        if (word != std::end(words)) {
            const bool early = word->ofTrack && m_sheet.tracks.empty();
            return early ? Status(fail(token, "no TRACK before it")) : (this->*word->take)(token);
        }
        const bool known = token.kind == TocToken::Kind::Word &&
                           std::find(std::begin(passedOverWords), std::end(passedOverWords), token.text) !=
                               std::end(passedOverWords);
        return known ? ok() : fail(token, "does not belong there");
    }

    static Error fail(const TocToken& token, const std::string& what) {
        return lineError(token.line, token.text, what);
    }

    // The next token if it is of that kind.
    const TocToken* next(TocToken::Kind kind) {
        return m_place < m_tokens.size() && m_tokens[m_place].kind == kind ? &m_tokens[m_place++] : nullptr;
    }
    bool nextIs(std::string_view word) {
        const bool is = m_place < m_tokens.size() && m_tokens[m_place].is(word);
        m_place += is;
        return is;
    }

    Status catalog(const TocToken& token) {
        const auto* text = next(TocToken::Kind::Text);
        if (!text) {
            return fail(token, "no number behind it");
        }
        m_sheet.catalogNumber = isCatalogNumber(text->text) ? text->text : "";
        return ok();
    }

    Status isrc(const TocToken& token) {
        const auto* text = next(TocToken::Kind::Text);
        if (!text) {
            return fail(token, "no number behind it");
        }
        m_sheet.tracks.back().isrc = isIsrc(text->text) ? text->text : "";
        return ok();
    }

    // The first language counts.
    Status texts(const TocToken& token) {
        if (!next(TocToken::Kind::Open)) {
            return fail(token, "no { behind it");
        }
        auto& title = m_sheet.tracks.empty() ? m_sheet.title : m_sheet.tracks.back().title;
        auto& performer = m_sheet.tracks.empty() ? m_sheet.performer : m_sheet.tracks.back().performer;
        for (int depth = 1; depth > 0; ++m_place) {
            if (m_place == m_tokens.size()) {
                return fail(token, "its { is never closed");
            }
            const auto& inside = m_tokens[m_place];
            depth += inside.kind == TocToken::Kind::Open;
            depth -= inside.kind == TocToken::Kind::Close;
            const bool valued =
                m_place + 1 < m_tokens.size() && m_tokens[m_place + 1].kind == TocToken::Kind::Text;
            for (auto& [name, text] : {std::pair{"TITLE", &title}, std::pair{"PERFORMER", &performer}}) {
                if (valued && inside.is(name) && text->empty()) {
                    *text = m_tokens[m_place + 1].text;
                }
            }
        }
        return ok();
    }

    Status track(const TocToken& token) {
        if (auto status = endTrack(); !status) {
            return status;
        }
        const auto* mode = next(TocToken::Kind::Word);
        const auto* row = std::find_if(std::begin(tocModes), std::end(tocModes), [mode](const TocMode& each) {
            return mode && mode->text == each.mode;
        });
        if (row == std::end(tocModes)) {
            return fail(mode ? *mode : token, "unknown kind of track");
        }
        const bool isLong = nextIs("RW") || nextIs("RW_RAW");
        if (isLong && row->longFormat.empty()) {
            return fail(token, "sectors of this mode with sub-channels are not read");
        }
        const auto number = static_cast<int>(m_sheet.tracks.size()) + 1;
        if (number > MaxTrackNumber) {
            return fail(token, "more than 99 tracks");
        }
        m_sheet.tracks.push_back(
            {number, *trackFormat(isLong ? row->longFormat : row->format), {}, {}, {}, {}});
        m_trackToken = token;
        m_length = 0;
        m_start.reset();
        return ok();
    }

    // A length: a time, or a number of samples or of a data track's bytes.
    std::optional<uint64_t> length(const std::string& text) const {
        const auto& format = m_sheet.tracks.back().format;
        if (const auto sectors = sectorsOf(text)) {
            return static_cast<uint64_t>(*sectors) * format.sectorSize;
        }
        uint64_t value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || end != text.data() + text.size() || value > MaxBytes) {
            return std::nullopt;
        }
        if (format.content != TrackFormat::Content::Audio) {
            return value;
        }
        // Samples do not count the sub-channels between them.
        const uint64_t bytes = value * SampleBytes;
        return format.sectorSize == SoundSectorBytes ? bytes : bytes / SoundSectorBytes * format.sectorSize;
    }
    std::optional<uint64_t> nextLength() {
        const bool word = m_place < m_tokens.size() && m_tokens[m_place].kind == TocToken::Kind::Word;
        const auto found = word ? length(m_tokens[m_place].text) : std::nullopt;
        m_place += found.has_value();
        return found;
    }

    // Where in the file the sectors begin ("#1234").
    Result<uint64_t> nextOffset() {
        const bool there = m_place < m_tokens.size() && m_tokens[m_place].kind == TocToken::Kind::Word &&
                           m_tokens[m_place].text.front() == '#';
        if (!there) {
            return uint64_t{0};
        }
        const std::string_view text = std::string_view(m_tokens[m_place].text).substr(1);
        uint64_t value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || end != text.data() + text.size() || value > MaxBytes) {
            return fail(m_tokens[m_place], "not a place in the file");
        }
        ++m_place;
        return value;
    }

    Status sound(const TocToken& token) {
        const auto* name = next(TocToken::Kind::Text);
        if (!name) {
            return fail(token, "no file name");
        }
        const bool swap = nextIs("SWAP");
        const auto type = isSoundFile(name->text) ? SheetFileType::SoundFile
                          : swap                  ? SheetFileType::Sectors
                                                  : SheetFileType::SwappedSectors;
        const auto offset = nextOffset();
        if (!offset) {
            return offset.failure();
        }
        const uint64_t begin = nextLength().value_or(0);
        return addFile(token, name->text, type, *offset + begin, nextLength());
    }

    Status data(const TocToken& token) {
        const auto* name = next(TocToken::Kind::Text);
        if (!name) {
            return fail(token, "no file name");
        }
        const auto offset = nextOffset();
        if (!offset) {
            return offset.failure();
        }
        return addFile(token, name->text, SheetFileType::Sectors, *offset, nextLength());
    }

    static bool isSoundFile(const std::string& name) {
        const std::string upper = upperCase(name);
        return upper.ends_with(".WAV") || upper.ends_with(".MP3") || upper.ends_with(".FLAC") ||
               upper.ends_with(".AIFF") || upper.ends_with(".AIF");
    }

    Status addFile(const TocToken& token, const std::string& name, SheetFileType type, uint64_t begin,
                   std::optional<uint64_t> bytes) {
        if (name.empty() || name.find('\0') != std::string::npos) {
            return fail(token, "no file name");
        }
        auto& files = m_sheet.files;
        auto known = std::find_if(files.begin(), files.end(), [&](const SheetFile& each) {
            return each.rawName == name && each.type == type;
        });
        if (known == files.end()) {
            if (files.size() == MaxSheetFiles) {
                return fail(token, "more than " + std::to_string(MaxSheetFiles) + " files");
            }
            known = files.insert(known, {name, name, type});
        }
        const std::optional<uint64_t> end = bytes ? std::optional(begin + *bytes) : std::nullopt;
        return add(token, {static_cast<size_t>(known - files.begin()), begin, end});
    }

    Status add(const TocToken& token, const SheetPiece& piece) {
        auto& pieces = m_sheet.tracks.back().pieces;
        if (++m_pieces > MaxPieces) {
            return fail(token, "more than " + std::to_string(MaxPieces) + " pieces");
        }
        if (piece.end && *piece.end == piece.begin) {
            return ok();
        }
        if (!pieces.empty() && !pieces.back().end) {
            return fail(token, "the piece before it has no length");
        }
        pieces.push_back(piece);
        m_length = piece.end ? m_length + (*piece.end - piece.begin) : m_length;
        return ok();
    }

    Status silence(const TocToken& token) {
        // ZERO may name the mode of its sectors again.
        while (m_place < m_tokens.size() && m_tokens[m_place].kind == TocToken::Kind::Word &&
               (m_tokens[m_place].is("RW") || m_tokens[m_place].is("RW_RAW") ||
                std::any_of(std::begin(tocModes), std::end(tocModes),
                            [&](const TocMode& each) { return m_tokens[m_place].is(each.mode); }))) {
            ++m_place;
        }
        const auto bytes = nextLength();
        if (!bytes || *bytes > MaxBytes) {
            return fail(token, "no length behind it");
        }
        return add(token, {{}, 0, *bytes});
    }

    // Silence that the track before ends with.
    Status pregap(const TocToken& token) {
        const auto bytes = nextLength();
        if (!bytes) {
            return fail(token, "no time behind it");
        }
        return *bytes == 0 ? ok() : giveToTrackBefore({SheetPiece{{}, 0, *bytes}});
    }

    Status start(const TocToken& token) {
        m_start = nextLength().value_or(m_length);
        return ok();
    }

    Status index(const TocToken& token) {
        return nextLength() ? ok() : Status(fail(token, "no time behind it"));
    }

    Status giveToTrackBefore(const std::vector<SheetPiece>& pause) {
        const size_t count = m_sheet.tracks.size();
        const auto isSound = [](const SheetTrack& each) {
            return each.format.content == TrackFormat::Content::Audio;
        };
        if (count < 2 || !isSound(m_sheet.tracks[count - 2]) ||
            m_sheet.tracks[count - 1].format.name != m_sheet.tracks[count - 2].format.name) {
            return ok();
        }
        auto& pieces = m_sheet.tracks[count - 2].pieces;
        for (const auto& piece : pause) {
            const bool goesOn = !pieces.empty() && pieces.back().file == piece.file && piece.file &&
                                pieces.back().end == piece.begin;
            if (goesOn) {
                pieces.back().end = piece.end;
            } else if (pieces.empty() || pieces.back().end) {
                pieces.push_back(piece);
            }
        }
        return ok();
    }

    // What stands before START is the pause.
    std::vector<SheetPiece> takePause() {
        std::vector<SheetPiece> pause;
        auto& pieces = m_sheet.tracks.back().pieces;
        for (uint64_t left = m_start.value_or(0); left > 0 && !pieces.empty();) {
            SheetPiece& first = pieces.front();
            const uint64_t bytes = first.end ? *first.end - first.begin : UINT64_MAX;
            if (bytes <= left) {
                pause.push_back(first);
                pieces.erase(pieces.begin());
                left -= bytes;
                continue;
            }
            pause.push_back({first.file, first.begin, first.begin + left});
            first.begin += left;
            left = 0;
        }
        return pause;
    }

    Status endTrack() {
        if (m_sheet.tracks.empty()) {
            return ok();
        }
        const auto pause = takePause();
        if (m_sheet.tracks.back().pieces.empty()) {
            return fail(m_trackToken, "has no sound and no data");
        }
        if (m_sheet.tracks.size() == 1 && pause.size() == 1 && pause.front().file &&
            *pause.front().end - pause.front().begin >=
                LeastHiddenSectors * m_sheet.tracks.back().format.sectorSize) {
            m_sheet.hidden = pause.front();
        }
        return giveToTrackBefore(pause);
    }

    std::vector<TocToken> m_tokens;
    size_t m_place = 0;
    DiscSheet m_sheet;
    TocToken m_trackToken;
    uint64_t m_length = 0; ///< of the present track so far, in bytes
    std::optional<uint64_t> m_start;
    size_t m_pieces = 0;
};

} // namespace

Result<DiscSheet> parseTocFile(std::string_view text) {
    if (text.size() > MaxSheetBytes) {
        return Error{"longer than " + std::to_string(MaxSheetBytes) + " bytes"};
    }
    auto tokens = tokensOfToc(text);
    if (!tokens) {
        return tokens.failure();
    }
    return TocParser(std::move(*tokens)).parse();
}

} // namespace zm::disc::image
