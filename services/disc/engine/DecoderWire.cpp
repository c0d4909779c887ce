#include "services/disc/engine/DecoderWire.h"

#include "base/JsonMessage.h"

#include <nlohmann/json.hpp>

namespace zm::disc::engine::wire {

std::string textOf(const Json& json) {
    return jsonText(json);
}

Json objectOf(const std::string& text) {
    return jsonObject(text);
}

int64_t numberOf(const Json& json, const char* name) {
    const auto member = json.find(name);
    return member != json.end() && member->is_number_integer() ? member->get<int64_t>() : 0;
}

std::string stringOf(const Json& json, const char* name) {
    const auto member = json.find(name);
    return member != json.end() && member->is_string() ? member->get<std::string>() : std::string();
}

} // namespace zm::disc::engine::wire
