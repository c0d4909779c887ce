#include "services/bench/commands/Request.h"

#include "base/JsonMessage.h"
#include "services/ctl/ControlVersion.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace zm::bench::commands {

namespace {

constexpr const char* Form = R"({"v":1,"argv":["word",...],"cwd":"/folder"})";

Status checkMembers(const Json& message) {
    // First: what another version has besides is none of this one's business.
    if (const auto version = message.find("v"); version != message.end() && *version != ctl::ControlVersion) {
        return Error{"version " + jsonText(*version) +
                     " of the control protocol is not known; this bench speaks " +
                     std::to_string(ctl::ControlVersion)};
    }
    for (const auto& [name, value] : message.items()) {
        if (name != "v" && name != "argv" && name != "cwd") {
            return Error{"a command has no member " + jsonText(name) + "; it is " + Form};
        }
    }
    const auto argv = message.find("argv");
    if (argv == message.end() || !argv->is_array() || !std::ranges::all_of(*argv, &Json::is_string)) {
        return Error{std::string("\"argv\" is no list of texts; a command is ") + Form};
    }
    const auto cwd = message.find("cwd");
    return cwd == message.end() || cwd->is_string()
               ? ok()
               : Status(Error{std::string("\"cwd\" is no text; a command is ") + Form});
}

} // namespace

Result<Request> parseRequest(std::string_view text) {
    const Json message = parseMessage(text);
    if (!message.is_object()) {
        return Error{std::string("a command is ") + Form};
    }
    if (const auto good = checkMembers(message); !good) {
        return good.failure();
    }
    return Request{message["argv"].get<std::vector<std::string>>(), message.value("cwd", "")};
}

} // namespace zm::bench::commands
