#include "zmcar/ArgvDecode.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace Oro::ZMCAR {

namespace {

using Params = std::map<std::string, std::string>;

constexpr const char* Blanks = " \t\r\n";

bool isQuote(char c) {
    return c == '"' || c == '\'';
}

bool isKey(const std::string& word) {
    return word.compare(0, 2, "--") == 0;
}

std::string unquoted(const std::string& value) {
    const bool quoted = value.size() >= 2 && isQuote(value.front()) && value.front() == value.back();
    return quoted ? value.substr(1, value.size() - 2) : value;
}

int decode(const std::vector<std::string>& words, Params& params) {
    params.clear();
    for (size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (!isKey(word)) {
            continue;
        }
        const size_t equals = word.find('=');
        const std::string key = word.substr(2, equals == std::string::npos ? equals : equals - 2);
        std::string value;
        if (equals != std::string::npos) {
            value = word.substr(equals + 1);
        } else if (i + 1 < words.size() && !isKey(words[i + 1])) {
            value = words[++i];
        }
        if (!key.empty()) {
            params[key] = unquoted(value);
        }
    }
    return static_cast<int>(params.size());
}

// Where the word at `start` ends. A quote that begins the word or its value holds blanks in, up to the same
// quote in front of a blank or the end; one that is never closed is an ordinary character.
size_t wordEnd(const std::string& text, size_t start) {
    const size_t plainEnd = std::min(text.find_first_of(Blanks, start), text.size());
    size_t value = start;
    if (text.compare(start, 2, "--") == 0) {
        const size_t equals = text.find('=', start);
        if (equals >= plainEnd) {
            return plainEnd;
        }
        value = equals + 1;
    }
    if (value >= text.size() || !isQuote(text[value])) {
        return plainEnd;
    }
    for (size_t i = value + 1; i < text.size(); ++i) {
        const bool last =
            i + 1 == text.size() || std::string_view(Blanks).find(text[i + 1]) != std::string_view::npos;
        if (text[i] == text[value] && last) {
            return i + 1;
        }
    }
    return plainEnd;
}

} // namespace

int ArgvDecode::GetOpt_LongParams(int argc, char** argv, Params& params) {
    std::vector<std::string> words;
    for (int i = 1; i < argc && argv[i]; ++i) {
        words.emplace_back(argv[i]);
    }
    return decode(words, params);
}

int ArgvDecode::GetOpt_LongParams(const std::string& text, Params& params) {
    std::vector<std::string> words;
    for (size_t start = text.find_first_not_of(Blanks); start < text.size();) {
        const size_t end = wordEnd(text, start);
        words.push_back(text.substr(start, end - start));
        start = text.find_first_not_of(Blanks, end);
    }
    return decode(words, params);
}

} // namespace Oro::ZMCAR
