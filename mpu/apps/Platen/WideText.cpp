#include "WideText.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cwchar>

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

/** One conversion of a number, from its % to its letter; those of this program are plain characters. */
std::wstring FormatNumber(const std::wstring& conversion, const WideArgument& argument) {
    const std::string format(conversion.begin(), conversion.end());
    char text[400]; // the longest number printed with "%f" has 309 digits before the point
    const int length = argument.GetKind() == WideArgument::Kind::Integer
                           ? std::snprintf(text, sizeof text, format.c_str(), argument.Integer())
                           : std::snprintf(text, sizeof text, format.c_str(), argument.Number());
    return length > 0 ? WideFromUtf8(text) : std::wstring();
}

constexpr WideArgument::Kind KindOf(wchar_t letter) {
    if (letter == L's') {
        return WideArgument::Kind::Text;
    }
    return letter == L'f' ? WideArgument::Kind::Number : WideArgument::Kind::Integer;
}

} // namespace

std::wstring WideFromUtf8(const char* text) {
    std::wstring wide;
    while (*text) {
        wide += TakeCharacter(text);
    }
    return wide;
}

void FormatWide(wchar_t* buffer, std::size_t size, const wchar_t* format,
                std::initializer_list<WideArgument> arguments) {
    std::wstring text;
    const WideArgument* argument = arguments.begin();
    while (*format) {
        if (*format != L'%') {
            text += *format++;
            continue;
        }
        std::size_t length = std::wcscspn(format, L"dxsf");
        if (!format[length]) {
            break;
        }
        const std::wstring conversion(format, ++length);
        format += length;
        if (argument == arguments.end()) {
            continue;
        }
        if (argument->GetKind() == KindOf(conversion.back())) {
            text += conversion.back() == L's' ? WideFromUtf8(argument->Text())
                                              : FormatNumber(conversion, *argument);
        }
        ++argument;
    }
    const std::size_t count = std::min(text.size(), size - 1);
    std::wmemcpy(buffer, text.data(), count);
    buffer[count] = L'\0';
}
