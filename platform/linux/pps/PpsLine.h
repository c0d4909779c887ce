#pragma once

#include <optional>
#include <string_view>

namespace zm {

/** What one line of PPS text says. */
enum class PpsLineKind {
    Object,           ///< "@name"
    ObjectCreated,    ///< "+@name"
    ObjectDeleted,    ///< "-@name"
    ObjectTruncated,  ///< "#@name"
    ObjectOverflowed, ///< "|@name"
    ObjectPurged,     ///< "*@name"
    Attribute,        ///< "name:encoding:value"
    AttributeDeleted  ///< "-name"
};

/** One parsed line; the views point into it. Options are bits of pps_options_t. */
struct PpsLine {
    PpsLineKind kind = PpsLineKind::Object;
    int options = 0;
    int optionMask = 0;
    std::string_view name;
    std::string_view encoding;
    std::string_view value;
};

/** Parses one line without its line feed; nothing if it is malformed. */
std::optional<PpsLine> parsePpsLine(std::string_view line);

/** Letters, digits, "_" and ".", the first a letter or "_". */
bool isAttributeName(std::string_view name);
/** Not empty, at most 255 bytes, none of "@", "?", "/", line feed and NUL in it. */
bool isObjectName(std::string_view name);

} // namespace zm
