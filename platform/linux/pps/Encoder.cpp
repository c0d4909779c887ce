#include "platform/linux/pps/DataTree.h"
#include "platform/linux/pps/PpsLine.h"
#include "sys/pps.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <cmath>
#include <string>
#include <vector>

namespace {

enum class Container { PpsObject, JsonObject, JsonArray };

struct Open {
    Container container;
    bool empty;
};

std::string quoted(const char* text) {
    // Bytes that are not UTF-8 are replaced: a reader would refuse the whole text for them.
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

// The text of a "c" value: one line, as a C string literal would hold it.
std::string escaped(std::string_view text) {
    constexpr std::pair<char, const char*> Escapes[] = {
        {'\\', "\\\\"}, {'\n', "\\n"}, {'\r', "\\r"}, {'\t', "\\t"}};
    std::string result;
    for (char c : text) {
        const char* replacement = nullptr;
        for (const auto& [plain, escape] : Escapes) {
            replacement = c == plain ? escape : replacement;
        }
        replacement ? result.append(replacement) : result.append(1, c);
    }
    return result;
}

} // namespace

struct pps_encoder_state {
    bool json = false;
    std::string text;
    std::vector<Open> open;
    pps_encoder_error_t status = PPS_ENCODER_OK;

    // The first error stays until reset.
    pps_encoder_error_t fail(pps_encoder_error_t error) {
        status = status == PPS_ENCODER_OK ? error : status;
        return status;
    }
    // Inside one attribute's JSON value (or the one JSON text), as opposed to among the lines of PPS text.
    bool insideJson() const {
        return json || (!open.empty() && open.back().container != Container::PpsObject);
    }

    // Writes what stands before a value: comma and member name, or attribute name and encoding.
    pps_encoder_error_t beginValue(const char* name, const char* encoding) {
        if (!insideJson()) {
            if (!name) {
                return fail(PPS_ENCODER_MISSING_ATTRIBUTE_NAME);
            }
            if (!zm::isAttributeName(name)) {
                return fail(PPS_ENCODER_INVALID_VALUE);
            }
            text.append(name).append(":").append(encoding).append(":");
            return PPS_ENCODER_OK;
        }
        if (open.empty()) {
            return text.empty() ? PPS_ENCODER_OK : fail(PPS_ENCODER_BAD_NESTING);
        }
        const bool member = open.back().container == Container::JsonObject;
        if (member && !name) {
            return fail(PPS_ENCODER_MISSING_ATTRIBUTE_NAME);
        }
        if (!open.back().empty) {
            text += ',';
        }
        open.back().empty = false;
        if (member) {
            text.append(quoted(name)).append(":");
        }
        return PPS_ENCODER_OK;
    }
    void endValue() {
        if (!insideJson()) {
            text += '\n';
        }
    }

    pps_encoder_error_t add(const char* name, const char* encoding, std::string_view value) {
        if (status != PPS_ENCODER_OK) {
            return status;
        }
        if (json && open.empty()) {
            return fail(PPS_ENCODER_BAD_NESTING);
        }
        if (beginValue(name, encoding) == PPS_ENCODER_OK) {
            text.append(value);
            endValue();
        }
        return status;
    }

    pps_encoder_error_t start(const char* name, Container container) {
        if (status != PPS_ENCODER_OK) {
            return status;
        }
        if (!json && open.empty() && container == Container::JsonObject && name && *name == '@') {
            if (!zm::isObjectName(name + 1)) {
                return fail(PPS_ENCODER_INVALID_VALUE);
            }
            text.append(name).append("\n");
            open.push_back({Container::PpsObject, true});
            return PPS_ENCODER_OK;
        }
        if (beginValue(name, "json") == PPS_ENCODER_OK) {
            text += container == Container::JsonObject ? '{' : '[';
            open.push_back({container, true});
        }
        return status;
    }

    pps_encoder_error_t end(Container container) {
        if (status != PPS_ENCODER_OK) {
            return status;
        }
        const bool object = container == Container::JsonObject;
        if (open.empty() || object == (open.back().container == Container::JsonArray)) {
            return fail(PPS_ENCODER_BAD_NESTING);
        }
        const bool line = open.back().container == Container::PpsObject;
        open.pop_back();
        if (!line) {
            text += object ? '}' : ']';
            endValue();
        }
        return PPS_ENCODER_OK;
    }

    bool complete() const { return status == PPS_ENCODER_OK && open.empty(); }
};

void pps_encoder_initialize(pps_encoder_t* encoder, bool encodeJSON) {
    encoder->state = new pps_encoder_state;
    encoder->state->json = encodeJSON;
}

void pps_encoder_reset(pps_encoder_t* encoder) {
    const bool json = encoder->state->json;
    *encoder->state = {};
    encoder->state->json = json;
}

void pps_encoder_cleanup(pps_encoder_t* encoder) {
    delete encoder->state;
    encoder->state = nullptr;
}

pps_encoder_error_t pps_encoder_start_object(pps_encoder_t* encoder, const char* name) {
    return encoder->state->start(name, Container::JsonObject);
}

pps_encoder_error_t pps_encoder_end_object(pps_encoder_t* encoder) {
    return encoder->state->end(Container::JsonObject);
}

pps_encoder_error_t pps_encoder_start_array(pps_encoder_t* encoder, const char* name) {
    return encoder->state->start(name, Container::JsonArray);
}

pps_encoder_error_t pps_encoder_end_array(pps_encoder_t* encoder) {
    return encoder->state->end(Container::JsonArray);
}

pps_encoder_error_t pps_encoder_add_int(pps_encoder_t* encoder, const char* name, int value) {
    return encoder->state->add(name, "n", std::to_string(value));
}

pps_encoder_error_t pps_encoder_add_double(pps_encoder_t* encoder, const char* name, double value) {
    if (!std::isfinite(value)) {
        return encoder->state->fail(PPS_ENCODER_INVALID_VALUE);
    }
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    return encoder->state->add(name, "n", {digits, end});
}

pps_encoder_error_t pps_encoder_add_bool(pps_encoder_t* encoder, const char* name, bool value) {
    return encoder->state->add(name, "b", value ? "true" : "false");
}

pps_encoder_error_t pps_encoder_add_string(pps_encoder_t* encoder, const char* name, const char* value) {
    auto& state = *encoder->state;
    if (!value) {
        return state.fail(PPS_ENCODER_INVALID_VALUE);
    }
    if (state.insideJson()) {
        return state.add(name, "json", quoted(value));
    }
    const std::string_view text = value;
    return text.find('\n') == text.npos ? state.add(name, "", text) : state.add(name, "c", escaped(text));
}

pps_encoder_error_t pps_encoder_add_null(pps_encoder_t* encoder, const char* name) {
    return encoder->state->add(name, "json", "null");
}

pps_encoder_error_t pps_encoder_add_json(pps_encoder_t* encoder, const char* name, const char* json) {
    zm::DataNode scratch;
    if (!json || !zm::addJson(scratch, "", json)) {
        return encoder->state->fail(PPS_ENCODER_INVALID_VALUE);
    }
    // A line feed can only stand between the tokens of valid JSON, but would end the attribute's line.
    std::string line = json;
    for (char& c : line) {
        c = c == '\n' || c == '\r' ? ' ' : c;
    }
    return encoder->state->add(name, "json", line);
}

const char* pps_encoder_buffer(pps_encoder_t* encoder) {
    return encoder->state->complete() ? encoder->state->text.c_str() : nullptr;
}

int pps_encoder_length(pps_encoder_t* encoder) {
    return encoder->state->complete() ? static_cast<int>(encoder->state->text.size()) : 0;
}
