#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>

namespace zm {

using Json = nlohmann::json;

/** Levels of arrays and objects that a message may have. */
inline constexpr int DeepestMessage = 64;

/**
 * Parses a JSON object. The result is a discarded value if `text` is anything else or nests deeper than
 * DeepestMessage: copying and printing take stack for each level.
 */
Json parseMessage(std::string_view text);

/** Any JSON; discarded if the text is not JSON. */
Json parseJson(std::string_view text);

/** The JSON object that `text` is; an empty object if it is not one. */
Json jsonObject(std::string_view text);

/** JSON as text; what is not UTF-8 in it is replaced. */
std::string jsonText(const Json& value);

} // namespace zm
