#include "base/JsonMessage.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace zm {

namespace {

// How deep the text nests; means nothing for a text that is not JSON.
int nesting(std::string_view text) {
    int level = 0;
    int deepest = 0;
    bool quoted = false;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quoted) {
            i += c == '\\';
            quoted = c != '"';
        } else if (c == '[' || c == '{') {
            deepest = std::max(deepest, ++level);
        } else if (c == ']' || c == '}') {
            --level;
        } else {
            quoted = c == '"';
        }
    }
    return deepest;
}

} // namespace

Json parseMessage(std::string_view text) {
    // The parser takes a NUL for the end of the text, whatever follows.
    const bool refused = nesting(text) > DeepestMessage || text.find('\0') != text.npos;
    Json message = refused ? Json() : parseJson(text);
    return message.is_object() ? message : Json(Json::value_t::discarded);
}

Json parseJson(std::string_view text) {
    return Json::parse(text, nullptr, false);
}

Json jsonObject(std::string_view text) {
    Json json = parseJson(text);
    return json.is_object() ? json : Json::object();
}

std::string jsonText(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace zm
