#include "services/disc/image/SheetText.h"

#include "services/disc/image/TrackFormat.h"
#include "services/disc/text/Charset.h"

#include <algorithm>
#include <charconv>

namespace zm::disc::image {

namespace {

constexpr size_t MaxLineBytes = 1000;
constexpr size_t CulpritBytes = 60;
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
constexpr size_t CatalogDigits = 13;
constexpr size_t IsrcLetters = 12;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace

std::string_view trim(std::string_view text) {
    const auto first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

std::string upperCase(std::string_view word) {
    std::string result(word);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return result;
}

SplitText splitWord(std::string_view text) {
    const auto end = std::min(text.find_first_of(Blanks), text.size());
    return {text.substr(0, end), trim(text.substr(end))};
}

std::string unquoted(std::string_view text) {
    if (!text.empty() && text.front() == '"') {
        text.remove_prefix(1);
        const auto close = text.rfind('"');
        text = text.substr(0, close);
    }
    return std::string(trim(text));
}

std::optional<int> wholeNumber(std::string_view text, int largest) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole && value >= 0 && value <= largest ? std::optional(value) : std::nullopt;
}

std::optional<int> sectorsOf(std::string_view time) {
    const auto first = std::min(time.find(':'), time.size());
    const auto second = std::min(time.find(':', std::min(first + 1, time.size())), time.size());
    if (second == time.size()) {
        return std::nullopt;
    }
    const auto minutes = wholeNumber(time.substr(0, first), 99);
    const auto seconds = wholeNumber(time.substr(first + 1, second - first - 1), 59);
    const auto frames = wholeNumber(time.substr(second + 1), SectorsPerSecond - 1);
    if (!minutes || !seconds || !frames) {
        return std::nullopt;
    }
    return (*minutes * 60 + *seconds) * SectorsPerSecond + *frames;
}

bool isCatalogNumber(std::string_view text) {
    return text.size() == CatalogDigits && std::all_of(text.begin(), text.end(), isDigit);
}

bool isIsrc(std::string_view text) {
    return text.size() == IsrcLetters &&
           std::all_of(text.begin(), text.end(), [](char c) { return isDigit(c) || (c >= 'A' && c <= 'Z'); });
}

Error lineError(int line, std::string_view culprit, const std::string& what) {
    const std::string shown = culprit.empty() ? "" : text::cleanText(culprit.substr(0, CulpritBytes));
    return Error{"line " + std::to_string(line) + ": " + (shown.empty() ? "" : shown + ": ") + what};
}

Status forEachLine(std::string_view text, const std::function<Status(int, std::string_view)>& take) {
    if (text.substr(0, ByteOrderMark.size()) == ByteOrderMark) {
        text.remove_prefix(ByteOrderMark.size());
    }
    for (int number = 1; !text.empty(); ++number) {
        const auto end = std::min(text.find_first_of("\r\n"), text.size());
        if (end > MaxLineBytes) {
            return lineError(number, {}, "longer than " + std::to_string(MaxLineBytes) + " bytes");
        }
        if (auto status = take(number, trim(text.substr(0, end))); !status) {
            return status;
        }
        const bool pair = text.substr(end, 2) == "\r\n";
        text.remove_prefix(std::min(text.size(), end + (pair ? 2 : 1)));
    }
    return ok();
}

} // namespace zm::disc::image
