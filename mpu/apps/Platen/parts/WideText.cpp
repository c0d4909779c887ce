#include "parts/WideText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace {

constexpr wchar_t REPLACEMENT = 0xFFFD;

/** What a lead byte says: how many bytes follow and which second bytes are legal (shortest form, no
 * surrogates). */
struct LeadRow {
    uint8_t first;
    uint8_t last;
    int following;
    uint8_t payload;
    uint8_t secondFirst;
    uint8_t secondLast;
};

constexpr LeadRow LEADS[] = {
    {0x00, 0x7F, 0, 0x7F, 0x80, 0xBF}, {0xC2, 0xDF, 1, 0x1F, 0x80, 0xBF}, {0xE0, 0xE0, 2, 0x0F, 0xA0, 0xBF},
    {0xE1, 0xEC, 2, 0x0F, 0x80, 0xBF}, {0xED, 0xED, 2, 0x0F, 0x80, 0x9F}, {0xEE, 0xEF, 2, 0x0F, 0x80, 0xBF},
    {0xF0, 0xF0, 3, 0x07, 0x90, 0xBF}, {0xF1, 0xF3, 3, 0x07, 0x80, 0xBF}, {0xF4, 0xF4, 3, 0x07, 0x80, 0x8F},
};

/** Takes one character off `text`, or the longest start of an invalid one. */
wchar_t TakeCharacter(const char*& text) {
    const auto lead = static_cast<uint8_t>(*text++);
    const LeadRow* row = std::find_if(std::begin(LEADS), std::end(LEADS), [lead](const LeadRow& candidate) {
        return lead >= candidate.first && lead <= candidate.last;
    });
    if (row == std::end(LEADS)) {
        return REPLACEMENT;
    }
    uint32_t character = lead & row->payload;
    for (int i = 0; i < row->following; ++i) {
        const auto byte = static_cast<uint8_t>(*text);
        const uint8_t lowest = i == 0 ? row->secondFirst : 0x80;
        const uint8_t highest = i == 0 ? row->secondLast : 0xBF;
        if (byte < lowest || byte > highest) {
            return REPLACEMENT;
        }
        character = character << 6 | (byte & 0x3F);
        ++text;
    }
    return static_cast<wchar_t>(character);
}

/** Writes into a buffer and drops what no longer fits. */
class Writer {
public:
    Writer(wchar_t* buffer, std::size_t size) : m_pAt(buffer), m_pLast(buffer + size - 1) {}
    ~Writer() { *m_pAt = L'\0'; }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void Put(wchar_t character) {
        if (m_pAt < m_pLast) {
            *m_pAt++ = character;
        }
    }
    void PutText(const char* text) {
        const std::size_t length = std::strlen(text);
        uint8_t all = 0;
        for (std::size_t i = 0; i < length; ++i) {
            all |= static_cast<uint8_t>(text[i]);
        }
        if (all <= LEADS[0].last) { // nearly every text: long lists are formatted row by row
            const std::size_t fitting = std::min(length, static_cast<std::size_t>(m_pLast - m_pAt));
            std::copy(text, text + fitting, m_pAt);
            m_pAt += fitting;
            return;
        }
        while (*text && m_pAt < m_pLast) {
            *m_pAt++ = TakeCharacter(text);
        }
    }
    /** `conversion` is that of a number, from its % to its letter. */
    void PutNumber(const char* conversion, const WideArgument& argument) {
        char text[400]; // the longest number printed with "%f" has 309 digits before the point
        if (argument.GetKind() == WideArgument::Kind::Integer && conversion[1] == 'd') {
            *std::to_chars(text, std::end(text), argument.Integer()).ptr = '\0';
            PutText(text);
            return;
        }
        const int length = argument.GetKind() == WideArgument::Kind::Integer
                               ? std::snprintf(text, sizeof text, conversion, argument.Integer())
                               : std::snprintf(text, sizeof text, conversion, argument.Number());
        if (length > 0) {
            PutText(text);
        }
    }

private:
    wchar_t* m_pAt;
    wchar_t* m_pLast; ///< of the end mark at the latest
};

constexpr std::size_t CONVERSION_SIZE = 16; ///< those of this program have six characters at most

/** Reads one conversion, plain characters all; false if it does not end or is too long. */
bool TakeConversion(const wchar_t*& format, char (&conversion)[CONVERSION_SIZE]) {
    for (std::size_t length = 0; length + 1 < CONVERSION_SIZE && format[length];) {
        conversion[length] = static_cast<char>(format[length]);
        const char last = conversion[length++];
        if (last == 'd' || last == 'x' || last == 's' || last == 'f') {
            conversion[length] = '\0';
            format += length;
            return true;
        }
    }
    return false;
}

constexpr WideArgument::Kind KindOf(char letter) {
    if (letter == 's') {
        return WideArgument::Kind::Text;
    }
    return letter == 'f' ? WideArgument::Kind::Number : WideArgument::Kind::Integer;
}

} // namespace

void FormatWide(wchar_t* buffer, std::size_t size, const wchar_t* format,
                std::initializer_list<WideArgument> arguments) {
    Writer writer(buffer, size);
    const WideArgument* argument = arguments.begin();
    while (*format) {
        if (*format != L'%') {
            writer.Put(*format++);
            continue;
        }
        char conversion[CONVERSION_SIZE];
        if (!TakeConversion(format, conversion)) {
            break;
        }
        if (argument == arguments.end()) {
            continue;
        }
        const WideArgument::Kind kind = KindOf(conversion[std::strlen(conversion) - 1]);
        if (argument->GetKind() == kind && kind == WideArgument::Kind::Text) {
            writer.PutText(argument->Text());
        } else if (argument->GetKind() == kind) {
            writer.PutNumber(conversion, *argument);
        }
        ++argument;
    }
}
