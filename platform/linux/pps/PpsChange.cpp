#include "platform/linux/pps/PpsChange.h"

#include <charconv>
#include <optional>

namespace zm {

namespace {

// Takes a decimal number and the character behind it off the front.
std::optional<uint64_t> takeNumber(std::string_view& text, char end) {
    uint64_t number = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    if (parsed.ec != std::errc() || parsed.ptr == text.data() + text.size() || *parsed.ptr != end) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<size_t>(parsed.ptr - text.data()) + 1);
    return number;
}

} // namespace

std::string PpsChanges::text() const {
    std::string result;
    for (const auto& change : changes) {
        result += change.text;
    }
    return result;
}

std::string PpsChanges::encoded() const {
    std::string result = std::to_string(upTo) + "\n";
    for (const auto& change : changes) {
        result.append(std::to_string(change.number))
            .append(" ")
            .append(std::to_string(change.text.size()))
            .append("\n")
            .append(change.text);
    }
    return result;
}

Result<PpsChanges> PpsChanges::decode(std::string_view encoded) {
    const Error malformed{"malformed answer to a read"};
    const auto upTo = takeNumber(encoded, '\n');
    if (!upTo) {
        return malformed;
    }
    PpsChanges result{{}, *upTo};
    while (!encoded.empty()) {
        const auto number = takeNumber(encoded, ' ');
        const auto size = number ? takeNumber(encoded, '\n') : number;
        if (!size || *size > encoded.size()) {
            return malformed;
        }
        result.changes.push_back({*number, std::string(encoded.substr(0, *size))});
        encoded.remove_prefix(*size);
    }
    return result;
}

} // namespace zm
