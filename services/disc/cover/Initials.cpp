#include "services/disc/cover/Initials.h"

#include <glib.h>

#include <cstdint>
#include <iterator>
#include <memory>
#include <vector>

namespace zm::disc::cover {

namespace {

using Characters = std::vector<gunichar>;

constexpr size_t MostDigits = 2;
constexpr gunichar Note = 0x266A;

// Calm and dark enough for white letters, by day and by night.
constexpr const char* tileColors[] = {"2F5D8A", "3B6352", "7A4B2A", "6B3F6E", "8A3A45", "2A6068",
                                      "5A5628", "4A4E8C", "80501C", "3F6038", "7B3F5E", "41566B"};

// Words of letters and digits; digits are words of their own.
std::vector<Characters> wordsOf(const std::string& title) {
    const std::unique_ptr<char, decltype(&g_free)> text(
        g_utf8_normalize(title.c_str(), static_cast<gssize>(title.size()), G_NORMALIZE_NFC), g_free);
    std::vector<Characters> words;
    gunichar before = ' ';
    for (const char* at = text ? text.get() : ""; *at; at = g_utf8_next_char(at)) {
        const gunichar character = g_utf8_get_char(at);
        if (g_unichar_isalnum(character)) {
            if (!g_unichar_isalnum(before) || g_unichar_isdigit(before) != g_unichar_isdigit(character)) {
                words.emplace_back();
            }
            words.back().push_back(character);
        }
        // Marks and apostrophes belong to their word.
        before = g_unichar_ismark(character) || character == '\'' || character == 0x2019 ? before : character;
    }
    return words;
}

bool hasCapitals(gunichar character) {
    return g_unichar_toupper(character) != g_unichar_tolower(character);
}

Characters initialOf(const Characters& word) {
    if (!g_unichar_isdigit(word.front())) {
        return {g_unichar_toupper(word.front())};
    }
    Characters digits;
    for (const gunichar digit : word) {
        if (digits.size() < MostDigits && (g_unichar_digit_value(digit) > 0 || !digits.empty())) {
            digits.push_back(digit);
        }
    }
    return digits.empty() ? Characters{word.front()} : digits;
}

} // namespace

std::string initialsOf(const std::string& title) {
    const auto words = wordsOf(title);
    Characters letters = words.empty() ? Characters{Note} : initialOf(words[0]);
    const auto stands = [](gunichar character) {
        return hasCapitals(character) || g_unichar_isdigit(character);
    };
    if (words.size() > 1 && letters.size() == 1 && stands(letters[0]) && stands(words[1][0])) {
        const Characters second = initialOf(words[1]);
        letters.insert(letters.end(), second.begin(), second.end());
    }
    std::string text;
    for (const gunichar letter : letters) {
        char bytes[6];
        text.append(bytes, static_cast<size_t>(g_unichar_to_utf8(letter, bytes)));
    }
    return text;
}

std::string tileColor(const std::string& text) {
    uint32_t hash = 2166136261u; // the same on every machine, so that an album has its colour in every car
    for (const char each : text) {
        hash = (hash ^ static_cast<unsigned char>(each)) * 16777619u;
    }
    return tileColors[(hash ^ (hash >> 16)) % std::size(tileColors)];
}

} // namespace zm::disc::cover
