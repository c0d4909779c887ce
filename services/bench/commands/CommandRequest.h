#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zm {

/** A command as zmctl and the page send it: {"argv":["word",...],"cwd":"/folder of the caller"}. */
struct CommandRequest {
    std::vector<std::string> words;
    std::string cwd; ///< empty if it was not sent
};

/** Nothing if `text` is no such object. */
std::optional<CommandRequest> parseCommandRequest(std::string_view text);

} // namespace zm
