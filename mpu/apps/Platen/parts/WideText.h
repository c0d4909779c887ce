#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>

inline constexpr std::size_t WIDE_TEXT_SIZE =
    260; ///< characters of a display text's buffer, with its end mark

/** One value to format: an integer, a floating-point number or a UTF-8 text. */
class WideArgument {
public:
    enum class Kind { Integer, Number, Text };

    WideArgument(int value) : m_kind(Kind::Integer), m_nInteger(value) {}
    WideArgument(double value) : m_kind(Kind::Number), m_dNumber(value) {}
    WideArgument(const char* text) : m_kind(Kind::Text), m_pText(text ? text : "") {}
    WideArgument(const std::string& text) : WideArgument(text.c_str()) {}

    Kind GetKind() const { return m_kind; }
    int Integer() const { return m_nInteger; }
    double Number() const { return m_dNumber; }
    const char* Text() const { return m_pText; }

private:
    Kind m_kind;
    int m_nInteger = 0;
    double m_dNumber = 0;
    const char* m_pText = "";
};

/**
 * Formats into `buffer` as swprintf does, but independent of the locale and always with a usable result: %s
 * takes UTF-8, what is invalid in it becomes U+FFFD, and a text that is too long is cut to `size` - 1
 * characters. Conversions whose argument is missing or of another kind stand for nothing.
 */
void FormatWide(wchar_t* buffer, std::size_t size, const wchar_t* format,
                std::initializer_list<WideArgument> arguments);

template <std::size_t Size, class... Arguments>
void FormatWide(wchar_t (&buffer)[Size], const wchar_t* format, const Arguments&... arguments) {
    FormatWide(buffer, Size, format, {WideArgument(arguments)...});
}
