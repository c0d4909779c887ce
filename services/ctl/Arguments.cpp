#include "services/ctl/Arguments.h"

#include "services/ctl/Numbers.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <utility>

namespace zm::ctl {

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
    const auto value = text ? parseNumber<int>(*text) : std::nullopt;
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
    const auto value = parseNumber<double>(*text);
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
    const auto value = parseNumber<int>(word());
    if (!value) {
        refuse();
    }
    return value.value_or(0);
}

int Arguments::number(std::string_view what, std::span<const NamedNumber> names) {
    if (!more()) {
        return number();
    }
    const std::string text = word();
    for (const auto& row : names) {
        if (row.name == text) {
            return row.number;
        }
    }
    const auto value = parseNumber<int>(text);
    if (!value) {
        refuse(unknownWord(what, text, namesOf(names)));
    }
    return value.value_or(0);
}

void Arguments::refuse(const std::string& why) {
    m_good = false;
    if (m_why.empty()) {
        m_why = why;
    }
}

std::vector<std::string> Arguments::rest() {
    if (m_words.empty()) {
        refuse();
    }
    return std::exchange(m_words, {});
}

} // namespace zm::ctl
