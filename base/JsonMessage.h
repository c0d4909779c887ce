#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace zm {

using Json = nlohmann::json;

/** Levels of arrays and objects that a message may have. */
inline constexpr int DeepestMessage = 64;

/**
 * The JSON object that `text` is; discarded if it is none or nested deeper than DeepestMessage, because
 * copying and printing need stack for each level.
 */
Json parseMessage(std::string_view text);

/** JSON as text; what is not UTF-8 in it is replaced. */
std::string jsonText(const Json& value);

} // namespace zm
