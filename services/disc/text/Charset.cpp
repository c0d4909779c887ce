#include "services/disc/text/Charset.h"

#include "services/disc/text/CommonCharacters.h"

#include <glib.h>
#include <uchardet/uchardet.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <unordered_set>
#include <vector>

namespace zm::disc::text {

namespace {

using CharacterSet = std::unordered_set<char32_t>;

// Points for one decoded character, found by the first row whose range holds it.
struct Range {
    char32_t first;
    char32_t last;
    double points;
};

struct CharsetRow {
    Charset charset;
    const char* iconvName;
    const char* detectorName; ///< as uchardet calls it
    const std::u32string_view* common;
    std::vector<Range> ranges;
};

constexpr double CommonPoints = 3.0;
constexpr double OddPoints = -3.0;
// What the statistical detector's opinion is worth, in characters of ordinary text.
constexpr double DetectorPoints = 1.0;
// Texts of a disc that are looked at before its character set counts as known.
constexpr int LearnedTexts = 200;

// Ranges that are rare in names in that language are left out and count as odd.
const std::vector<CharsetRow>& rows() {
    static const std::vector<CharsetRow> table{
        {Charset::Gbk,
         "GBK",
         "GB18030",
         &commonSimplified,
         {{0x4E00, 0x9FA5, 1.0},
          {0x3000, 0x3017, 0.5},
          {0xFF01, 0xFF5E, 0.5},
          {0x2014, 0x2026, 0.5},
          {0xB7, 0xB7, 0.5}}},
        {Charset::Big5,
         "BIG5",
         "BIG5",
         &commonTraditional,
         {{0x4E00, 0x9FA5, 1.0}, {0x3000, 0x3017, 0.5}, {0xFF01, 0xFF5E, 0.5}, {0x2014, 0x2026, 0.5}}},
        {Charset::ShiftJis,
         "CP932",
         "SHIFT_JIS",
         &commonKanji,
         {{0x3041, 0x30FE, 2.5}, {0x4E00, 0x9FA5, 1.0}, {0x3000, 0x3017, 0.5}, {0xFF01, 0xFF5E, 0.5}}},
        {Charset::EucKr, "CP949", "EUC-KR", &commonHangul, {{0xAC00, 0xD7A3, 1.2}, {0x4E00, 0x9FA5, -1.0}}},
        {Charset::Cp1251,
         "CP1251",
         "WINDOWS-1251",
         nullptr,
         {{0x0410, 0x044F, 1.0},
          {0x0401, 0x0401, 1.0},
          {0x0451, 0x0451, 1.0},
          {0xAB, 0xBB, 0.2},
          {0x2013, 0x2122, 0.2}}},
        {Charset::Latin1,
         "CP1252",
         "WINDOWS-1252",
         nullptr,
         {{0xC0, 0xFF, 1.0},
          {0x2013, 0x201E, 0.5},
          {0xB4, 0xB4, 0.3},
          {0xA1, 0xA1, 0.3},
          {0xBF, 0xBF, 0.3},
          {0x0152, 0x0178, 0.5},
          {0xB0, 0xB0, 0.2},
          {0xBA, 0xBA, 0.2},
          {0xAA, 0xAB, 0.2},
          {0xBB, 0xBB, 0.2}}},
    };
    return table;
}

const CharsetRow& rowOf(Charset charset) {
    return rows()[static_cast<size_t>(charset)];
}

bool isAscii(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isUtf8(std::string_view bytes) {
    return g_utf8_validate(bytes.data(), static_cast<gssize>(bytes.size()), nullptr);
}

std::optional<std::string> convert(std::string_view bytes, const char* charset) {
    gsize written = 0;
    std::unique_ptr<char, void (*)(void*)> text(g_convert(bytes.data(), static_cast<gssize>(bytes.size()),
                                                          "UTF-8", charset, nullptr, &written, nullptr),
                                                g_free);
    if (!text) {
        return std::nullopt;
    }
    return std::string(text.get(), written);
}

std::u32string toCharacters(const std::string& utf8) {
    glong count = 0;
    std::unique_ptr<gunichar, void (*)(void*)> characters(
        g_utf8_to_ucs4_fast(utf8.data(), static_cast<glong>(utf8.size()), &count), g_free);
    return {characters.get(), characters.get() + count};
}

const CharacterSet& commonSet(const CharsetRow& row) {
    static const auto sets = [] {
        std::array<CharacterSet, CharsetCount> filled;
        for (const auto& each : rows()) {
            if (each.common) {
                filled[static_cast<size_t>(each.charset)].insert(each.common->begin(), each.common->end());
            }
        }
        return filled;
    }();
    return sets[static_cast<size_t>(row.charset)];
}

double pointsOf(const CharsetRow& row, char32_t character) {
    if (commonSet(row).count(character)) {
        return CommonPoints;
    }
    for (const auto& range : row.ranges) {
        if (character >= range.first && character <= range.last) {
            return range.points;
        }
    }
    return OddPoints;
}

bool isLatinLetter(char32_t c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isCyrillic(char32_t c) {
    return g_unichar_get_script(c) == G_UNICODE_SCRIPT_CYRILLIC;
}

// Letters that no Cyrillic word begins with: hard and soft sign, yery.
bool neverFirst(char32_t c) {
    const char32_t lower = g_unichar_tolower(c);
    return lower >= 0x044A && lower <= 0x044C;
}

// Cyrillic words are whole words of Cyrillic letters, with a capital in front only or capitals throughout.
double cyrillicHabits(const std::u32string& text) {
    double points = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool here = isCyrillic(text[i]);
        const bool before = i > 0 && isCyrillic(text[i - 1]);
        if (here && !before) {
            points -= neverFirst(text[i]) ? 4.0 : 0.0;
        }
        if (here && before) {
            const bool rises = g_unichar_isupper(text[i]) && g_unichar_islower(text[i - 1]);
            const bool falls = g_unichar_islower(text[i]) && i > 1 && g_unichar_isupper(text[i - 1]) &&
                               g_unichar_isupper(text[i - 2]);
            points += rises ? -6.0 : falls ? -3.0 : 0.5;
        }
        const bool mixed =
            i > 0 && ((here && isLatinLetter(text[i - 1])) || (before && isLatinLetter(text[i])));
        points -= mixed ? 3.0 : 0.0;
    }
    return points;
}

// Accented letters of western languages are few and stand between plain ones.
double accentHabits(const std::u32string& text) {
    double points = 0;
    const auto isAccented = [](char32_t c) { return c >= 0xC0 && c <= 0x178; };
    for (size_t i = 0; i < text.size(); ++i) {
        if (!isAccented(text[i])) {
            continue;
        }
        const bool plainBefore = i > 0 && isLatinLetter(text[i - 1]);
        const bool plainAfter = i + 1 < text.size() && isLatinLetter(text[i + 1]);
        const bool accentedBefore = i > 0 && isAccented(text[i - 1]);
        points += plainBefore || plainAfter ? 1.5 : -0.5;
        points -= accentedBefore ? 2.0 : 0.0;
        points -= plainBefore && g_unichar_isupper(text[i]) && g_unichar_islower(text[i - 1]) ? 2.0 : 0.0;
        points -= text[i] == 0xD7 || text[i] == 0xF7 ? 3.0 : 0.0;
    }
    return points;
}

struct HabitRow {
    Charset charset;
    double (*points)(const std::u32string&);
};
constexpr HabitRow habits[] = {{Charset::Cp1251, cyrillicHabits}, {Charset::Latin1, accentHabits}};

// All points of a text, or nothing if it cannot be in that character set.
std::optional<double> pointsOfText(std::string_view bytes, Charset charset) {
    const auto& row = rowOf(charset);
    const auto utf8 = convert(bytes, row.iconvName);
    if (!utf8) {
        return std::nullopt;
    }
    const auto text = toCharacters(*utf8);
    double points = 0;
    for (const char32_t character : text) {
        points += character < 0x80 ? 0.0 : pointsOf(row, character);
    }
    for (const auto& habit : habits) {
        points += habit.charset == charset ? habit.points(text) : 0.0;
    }
    return points;
}

std::string detectorOpinion(std::string_view bytes) {
    std::unique_ptr<uchardet, void (*)(uchardet_t)> detector(uchardet_new(), uchardet_delete);
    if (uchardet_handle_data(detector.get(), bytes.data(), bytes.size()) != 0) {
        return {};
    }
    uchardet_data_end(detector.get());
    return uchardet_get_charset(detector.get());
}

size_t countHighBytes(std::string_view bytes) {
    return static_cast<size_t>(std::count_if(bytes.begin(), bytes.end(),
                                             [](char c) { return static_cast<unsigned char>(c) >= 0x80; }));
}

} // namespace

double plausibility(std::string_view bytes, Charset charset) {
    const auto points = pointsOfText(bytes, charset);
    // Per high byte, so that readings with two bytes a character and with one are comparable.
    return points ? *points / static_cast<double>(std::max<size_t>(1, countHighBytes(bytes))) : -100.0;
}

void CharsetRepair::learn(std::string_view bytes) {
    if (m_learned == LearnedTexts || isAscii(bytes) || isUtf8(bytes)) {
        return;
    }
    ++m_learned;
    const std::string opinion = detectorOpinion(bytes);
    for (const auto& row : rows()) {
        const double own = plausibility(bytes, row.charset);
        const double detected = opinion == row.detectorName ? DetectorPoints : 0.0;
        // One impossible text must not rule a character set out for the whole disc.
        m_evidence[static_cast<size_t>(row.charset)] += std::max(own, -5.0) + detected;
    }
}

std::string CharsetRepair::toUtf8(std::string_view bytes) const {
    if (isAscii(bytes) || isUtf8(bytes)) {
        return cleanText(bytes);
    }
    const double strongest = *std::max_element(m_evidence.begin(), m_evidence.end());
    const CharsetRow* best = nullptr;
    double bestPoints = -50.0;
    for (const auto& row : rows()) {
        // The rest of the disc decides between readings that are nearly as plausible as each other.
        const double prior = strongest > 0 ? m_evidence[static_cast<size_t>(row.charset)] / strongest : 0.0;
        const double points = plausibility(bytes, row.charset) + std::clamp(prior, -1.0, 1.0);
        if (points > bestPoints) {
            best = &row;
            bestPoints = points;
        }
    }
    const auto text = best ? convert(bytes, best->iconvName) : std::nullopt;
    return cleanText(text ? *text : bytes);
}

std::string cleanText(std::string_view text) {
    std::unique_ptr<char, void (*)(void*)> valid(
        g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())), g_free);
    std::string clean;
    for (const char* at = valid.get(); *at; at = g_utf8_next_char(at)) {
        const gunichar character = g_utf8_get_char(at);
        if (!g_unichar_iscntrl(character)) {
            clean.append(at, static_cast<const char*>(g_utf8_next_char(at)));
        }
    }
    const auto first = clean.find_first_not_of(' ');
    if (first == std::string::npos) {
        return {};
    }
    return clean.substr(first, clean.find_last_not_of(' ') - first + 1);
}

} // namespace zm::disc::text
