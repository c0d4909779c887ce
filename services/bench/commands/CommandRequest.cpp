#include "services/bench/commands/CommandRequest.h"

#include "base/JsonMessage.h"

#include <algorithm>

namespace zm {

std::optional<CommandRequest> parseCommandRequest(std::string_view text) {
    const Json message = parseMessage(text);
    const auto argv = message.find("argv");
    if (!message.is_object() || argv == message.end() || !argv->is_array() ||
        !std::ranges::all_of(*argv, &Json::is_string)) {
        return std::nullopt;
    }
    const auto cwd = message.find("cwd");
    return CommandRequest{argv->get<std::vector<std::string>>(),
                          cwd != message.end() && cwd->is_string() ? cwd->get<std::string>() : std::string()};
}

} // namespace zm
