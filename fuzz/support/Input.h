#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zm::fuzz {

/** The input as text. */
inline std::string_view asText(const uint8_t* data, size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/** Takes the part in front of the next `separator` off `text`; all of it if there is none. */
inline std::string_view takePart(std::string_view& text, char separator) {
    const auto part = text.substr(0, text.find(separator));
    text.remove_prefix(part.size() < text.size() ? part.size() + 1 : part.size());
    return part;
}

} // namespace zm::fuzz
