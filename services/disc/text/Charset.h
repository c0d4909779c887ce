#pragma once

#include <array>
#include <string>
#include <string_view>

namespace zm::disc::text {

/** The character sets that names and tags of car discs are written in when they are not UTF-8. */
enum class Charset { Gbk, Big5, ShiftJis, EucKr, Cp1251, Latin1 };

inline constexpr size_t CharsetCount = 6;

/**
 * Turns names and tags of unknown character set into UTF-8. Short texts are ambiguous, so every text of a
 * disc is first shown to it with `learn`; what the others look like then decides where one text alone does
 * not. Not thread-safe.
 */
class CharsetRepair {
public:
    /** Takes `bytes` into account; ASCII and UTF-8 tell nothing. */
    void learn(std::string_view bytes);
    /** `bytes` as UTF-8 without control characters. UTF-8 stays as it is; what fits no character set is
     * replaced. */
    std::string toUtf8(std::string_view bytes) const;

private:
    std::array<double, CharsetCount> m_evidence{};
    int m_learned = 0;
};

/** `text`, UTF-8 or not, as valid UTF-8 without control characters and without blanks at its ends. */
std::string cleanText(std::string_view text);

/** How well `bytes`, read as `charset`, looks like human language: points per character; negative if
 * impossible. */
double plausibility(std::string_view bytes, Charset charset);

} // namespace zm::disc::text
