#pragma once

#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>
#include <system_error>
#include <type_traits>

namespace zm::ctl {

/** The whole of `text` as a number; nothing if it is not a number, as "nan" and "inf" are none, or does not fit. */
template <class Number>
std::optional<Number> parseNumber(std::string_view text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    if constexpr (std::is_floating_point_v<Number>) {
        return std::isfinite(value) ? std::optional(value) : std::nullopt;
    }
    return value;
}

} // namespace zm::ctl
