#include "services/disc/text/NaturalOrder.h"

#include <glib.h>

#include <algorithm>

namespace zm::disc::text {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Takes a run of digits off `text`, without its leading zeros.
std::string_view takeNumber(std::string_view& text) {
    const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
    std::string_view run(text.begin(), end);
    text.remove_prefix(run.size());
    run.remove_prefix(std::min(run.find_first_not_of('0'), run.size()));
    return run;
}

// Numbers may be of any length, so they are compared as texts.
int compareNumbers(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return a.size() < b.size() ? -1 : 1;
    }
    return a.compare(b);
}

// Takes one character off `text`, folded to lower case.
gunichar takeFolded(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80) {
        text.remove_prefix(1);
        return static_cast<gunichar>(g_ascii_tolower(static_cast<char>(lead)));
    }
    const gunichar character = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
    if (character >= 0x80000000u) { // not UTF-8
        text.remove_prefix(1);
        return lead;
    }
    text.remove_prefix(static_cast<size_t>(g_unichar_to_utf8(character, nullptr)));
    return g_unichar_tolower(character);
}

} // namespace

int compareNatural(std::string_view a, std::string_view b) {
    std::string_view restA = a;
    std::string_view restB = b;
    while (!restA.empty() && !restB.empty()) {
        if (isDigit(restA.front()) && isDigit(restB.front())) {
            const auto numberA = takeNumber(restA);
            const auto numberB = takeNumber(restB);
            if (const int order = compareNumbers(numberA, numberB)) {
                return order;
            }
            continue;
        }
        const gunichar charA = takeFolded(restA);
        const gunichar charB = takeFolded(restB);
        if (charA != charB) {
            return charA < charB ? -1 : 1;
        }
    }
    if (restA.empty() != restB.empty()) {
        return restA.empty() ? -1 : 1;
    }
    return a.compare(b);
}

} // namespace zm::disc::text
