#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

/** A command as zmctl and the page send it: {"argv":["word",...],"cwd":"/folder of the caller"}. */
struct CommandRequest {
    std::vector<std::string> words;
    std::string cwd; ///< empty if it was not sent
};

/** Nothing if `text` is no such object. */
std::optional<CommandRequest> parseCommandRequest(std::string_view text);

} // namespace zm
