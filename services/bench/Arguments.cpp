#include "services/bench/Arguments.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <utility>

namespace zm {

namespace {

template <class Number>
std::optional<Number> parse(const std::string& text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

} // namespace

bool Arguments::flag(std::string_view name) {
    auto found = std::find(m_words.begin(), m_words.end(), name);
    if (found == m_words.end()) {
        return false;
    }
    m_words.erase(found);
    return true;
}

std::optional<std::string> Arguments::option(std::string_view name) {
    auto found = std::find(m_words.begin(), m_words.end(), name);
    if (found == m_words.end()) {
        return std::nullopt;
    }
    if (found + 1 == m_words.end()) {
        refuse();
        return std::nullopt;
    }
    std::string value = *(found + 1);
    m_words.erase(found, found + 2);
    return value;
}

std::optional<int> Arguments::number(std::string_view name, int least) {
    const auto text = option(name);
    const auto value = text ? parse<int>(*text) : std::nullopt;
    if (text && (!value || *value < least)) {
        refuse();
    }
    return value;
}

std::optional<int> Arguments::seconds(std::string_view name) {
    const auto text = option(name);
    if (!text) {
        return std::nullopt;
    }
    const auto value = parse<double>(*text);
    if (!value || !(*value >= 0) || *value * 1000 > INT_MAX) {
        refuse();
        return std::nullopt;
    }
    return static_cast<int>(std::lround(*value * 1000));
}

std::string Arguments::word() {
    if (m_words.empty()) {
        refuse();
        return {};
    }
    std::string first = std::move(m_words.front());
    m_words.erase(m_words.begin());
    return first;
}

int Arguments::number() {
    const auto value = parse<int>(word());
    if (!value) {
        refuse();
    }
    return value.value_or(0);
}

std::vector<std::string> Arguments::rest() {
    if (m_words.empty()) {
        refuse();
    }
    return std::exchange(m_words, {});
}

} // namespace zm
