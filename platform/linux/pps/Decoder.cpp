#include "platform/linux/pps/DataTree.h"
#include "sys/pps.h"

#include <charconv>
#include <climits>
#include <cmath>
#include <cstring>
#include <new>

using zm::DataNode;

namespace {

struct Level {
    DataNode* container;
    size_t position;
};

} // namespace

// Above the parsed value lies a virtual root, the first level; it is never left.
struct pps_decoder_state {
    DataNode root;
    std::vector<Level> levels;
    pps_decoder_error_t status = PPS_DECODER_OK;

    pps_decoder_state() { reset(); }
    void reset() {
        root = DataNode();
        root.type = PPS_TYPE_OBJECT;
        levels.assign(1, {&root, 0});
        status = PPS_DECODER_OK;
    }
    // The first error stays until it is cleared.
    pps_decoder_error_t finish(pps_decoder_error_t result) {
        if (status == PPS_DECODER_OK) {
            status = result;
        }
        return result;
    }
};

namespace {

constexpr pps_decoder_error_t NoDecoder = PPS_DECODER_NOT_FOUND;

// Position of the wanted element in the current container; its number of children if there is none.
size_t locate(const Level& level, const char* name) {
    const auto& children = level.container->children;
    if (!name) {
        return std::min(level.position, children.size());
    }
    for (size_t i = 0; i < children.size(); ++i) {
        // The name of an object may be asked for with and without its sign.
        if (children[i]->name == name || (*name == '@' && children[i]->name == name + 1)) {
            return i;
        }
    }
    return children.size();
}

bool meansContainer(const char* name) {
    return name && std::strcmp(name, ".") == 0;
}

// Finds the element and gives what `use` makes of it; `use` gets the decoder's state, the element and the
// number of its place.
template <class Use>
pps_decoder_error_t withElement(pps_decoder_t* decoder, const char* name, Use use) {
    if (!decoder->state) {
        return NoDecoder;
    }
    auto& state = *decoder->state;
    if (meansContainer(name)) {
        return state.finish(PPS_DECODER_BAD_TYPE);
    }
    const Level& level = state.levels.back();
    const size_t index = locate(level, name);
    if (index == level.container->children.size()) {
        return state.finish(PPS_DECODER_NOT_FOUND);
    }
    DataNode& node = *level.container->children[index];
    return state.finish(node.type == PPS_TYPE_DELETED ? PPS_DECODER_DELETED : use(state, node, index));
}

// Lets `take` read the element and moves on behind it if that succeeded.
template <class Take>
pps_decoder_error_t get(pps_decoder_t* decoder, const char* name, Take take) {
    return withElement(decoder, name, [&](pps_decoder_state& state, const DataNode& node, size_t index) {
        const auto result = take(node);
        if (result == PPS_DECODER_OK) {
            state.levels.back().position = index + 1;
        }
        return result;
    });
}

template <class Accept>
pps_decoder_error_t push(pps_decoder_t* decoder, const char* name, Accept accept) {
    return withElement(decoder, name, [&](pps_decoder_state& state, DataNode& node, size_t index) {
        if (!accept(node.type)) {
            return PPS_DECODER_BAD_TYPE;
        }
        state.levels.back().position = index;
        state.levels.push_back({&node, 0});
        return PPS_DECODER_OK;
    });
}

bool isContainer(pps_node_type_t type) {
    return type == PPS_TYPE_OBJECT || type == PPS_TYPE_ARRAY;
}

// The text behind encoding "c": undoes what a C string literal escapes.
std::string unescaped(const char* text) {
    constexpr std::pair<char, char> Escapes[] = {{'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'a', '\a'},
                                                 {'b', '\b'}, {'f', '\f'}, {'v', '\v'}};
    std::string result;
    for (; *text; ++text) {
        if (*text != '\\' || !text[1]) {
            result += *text;
            continue;
        }
        ++text;
        if (*text == 'x' || (*text >= '0' && *text <= '7')) {
            const bool hex = *text == 'x';
            const char* digits = hex ? text + 1 : text;
            unsigned value = 0;
            const auto parsed =
                std::from_chars(digits, digits + strnlen(digits, hex ? 2 : 3), value, hex ? 16 : 8);
            if (parsed.ptr != digits) {
                result += static_cast<char>(value);
                text = parsed.ptr - 1;
                continue;
            }
        }
        char plain = *text;
        for (const auto& [letter, meaning] : Escapes) {
            plain = *text == letter ? meaning : plain;
        }
        result += plain;
    }
    return result;
}

bool isNumber(std::string_view text) {
    return !text.empty() && (text.front() == '-' || (text.front() >= '0' && text.front() <= '9'));
}

// One attribute of a PPS text becomes a node typed by its encoding; false if encoding and value disagree.
bool addAttribute(DataNode& parent, const pps_attrib_t& info) {
    const std::string_view encoding = info.encoding;
    const std::string_view value = info.value;
    if (encoding == "json") {
        return addJson(parent, info.attr_name, value);
    }
    if (encoding == "n") {
        return isNumber(value) && addJson(parent, info.attr_name, value);
    }
    if (encoding == "b") {
        parent.add(PPS_TYPE_BOOL, info.attr_name).truth = value == "true";
        return value == "true" || value == "false";
    }
    if (encoding.empty() || encoding == "c") {
        parent.add(PPS_TYPE_STRING, info.attr_name).text =
            encoding.empty() ? info.value : unescaped(info.value);
        return true;
    }
    parent.add(PPS_TYPE_UNKNOWN, info.attr_name).text = value;
    return true;
}

bool parsePps(DataNode& root, char* text) {
    DataNode* object = &root;
    pps_attrib_t info{};
    for (;;) {
        switch (ppsparse(&text, nullptr, nullptr, &info, 0)) {
        case PPS_END:
            return (info.flags & PPS_INCOMPLETE) == 0;
        case PPS_ERROR:
            return false;
        case PPS_ATTRIBUTE:
        case PPS_ATTRIBUTE_DELETED: {
            // Only the latest of several values counts.
            std::erase_if(object->children, [&](const auto& child) { return child->name == info.attr_name; });
            if (info.flags & PPS_DELETED) {
                object->add(PPS_TYPE_DELETED, info.attr_name);
            } else if (!addAttribute(*object, info)) {
                return false;
            }
            break;
        }
        default:
            object = root.find(info.obj_name);
            if (!object) {
                object = &root.add(PPS_TYPE_OBJECT, info.obj_name);
            }
            if (info.flags & (PPS_DELETED | PPS_TRUNCATED)) {
                object->children.clear();
            }
            object->type = info.flags & PPS_DELETED ? PPS_TYPE_DELETED : PPS_TYPE_OBJECT;
        }
    }
}

} // namespace

pps_decoder_error_t pps_decoder_initialize(pps_decoder_t* decoder, char* str) {
    decoder->state = new (std::nothrow) pps_decoder_state;
    if (!decoder->state) {
        return PPS_DECODER_NO_MEM;
    }
    return str ? pps_decoder_parse_pps_str(decoder, str) : PPS_DECODER_OK;
}

pps_decoder_error_t pps_decoder_parse_pps_str(pps_decoder_t* decoder, char* str) {
    if (!decoder->state) {
        return NoDecoder;
    }
    auto& state = *decoder->state;
    state.reset();
    if (!str || !parsePps(state.root, str)) {
        state.reset();
        return state.finish(PPS_DECODER_PARSE_ERROR);
    }
    return PPS_DECODER_OK;
}

pps_decoder_error_t pps_decoder_parse_json_str(pps_decoder_t* decoder, const char* str) {
    if (!decoder->state) {
        return NoDecoder;
    }
    auto& state = *decoder->state;
    state.reset();
    return state.finish(str && zm::addJson(state.root, "", str) ? PPS_DECODER_OK : PPS_DECODER_PARSE_ERROR);
}

pps_decoder_error_t pps_decoder_push(pps_decoder_t* decoder, const char* name) {
    return push(decoder, name, isContainer);
}

pps_decoder_error_t pps_decoder_push_object(pps_decoder_t* decoder, const char* name) {
    return push(decoder, name, [](pps_node_type_t type) { return type == PPS_TYPE_OBJECT; });
}

pps_decoder_error_t pps_decoder_push_array(pps_decoder_t* decoder, const char* name) {
    return push(decoder, name, [](pps_node_type_t type) { return type == PPS_TYPE_ARRAY; });
}

pps_decoder_error_t pps_decoder_pop(pps_decoder_t* decoder) {
    if (!decoder->state) {
        return NoDecoder;
    }
    auto& state = *decoder->state;
    if (state.levels.size() == 1) {
        return state.finish(PPS_DECODER_POP_AT_ROOT);
    }
    state.levels.pop_back();
    ++state.levels.back().position;
    return PPS_DECODER_OK;
}

pps_decoder_error_t pps_decoder_get_int(pps_decoder_t* decoder, const char* name, int* value) {
    return get(decoder, name, [value](const DataNode& node) {
        if (node.type != PPS_TYPE_NUMBER) {
            return PPS_DECODER_BAD_TYPE;
        }
        // Compared in doubles, which hold every int exactly: a conversion out of range would be undefined.
        const double number = std::trunc(node.number);
        if (number < INT_MIN || number > INT_MAX) {
            return PPS_DECODER_CONVERSION_FAILED;
        }
        *value = static_cast<int>(number);
        return PPS_DECODER_OK;
    });
}

pps_decoder_error_t pps_decoder_get_double(pps_decoder_t* decoder, const char* name, double* value) {
    return get(decoder, name, [value](const DataNode& node) {
        if (node.type != PPS_TYPE_NUMBER) {
            return PPS_DECODER_BAD_TYPE;
        }
        *value = node.number;
        return PPS_DECODER_OK;
    });
}

pps_decoder_error_t pps_decoder_get_bool(pps_decoder_t* decoder, const char* name, bool* value) {
    return get(decoder, name, [value](const DataNode& node) {
        if (node.type != PPS_TYPE_BOOL) {
            return PPS_DECODER_BAD_TYPE;
        }
        *value = node.truth;
        return PPS_DECODER_OK;
    });
}

pps_decoder_error_t pps_decoder_get_string(pps_decoder_t* decoder, const char* name, const char** value) {
    return get(decoder, name, [value](const DataNode& node) {
        if (node.type != PPS_TYPE_STRING) {
            return PPS_DECODER_BAD_TYPE;
        }
        *value = node.text.c_str();
        return PPS_DECODER_OK;
    });
}

pps_node_type_t pps_decoder_type(pps_decoder_t* decoder, const char* name) {
    if (!decoder->state) {
        return PPS_TYPE_NONE;
    }
    const Level& level = decoder->state->levels.back();
    if (meansContainer(name)) {
        return level.container->type;
    }
    const size_t index = locate(level, name);
    return index == level.container->children.size() ? PPS_TYPE_NONE : level.container->children[index]->type;
}

pps_decoder_error_t pps_decoder_status(pps_decoder_t* decoder, bool clear) {
    if (!decoder->state) {
        return NoDecoder;
    }
    const auto result = decoder->state->status;
    if (clear) {
        decoder->state->status = PPS_DECODER_OK;
    }
    return result;
}

void pps_decoder_cleanup(pps_decoder_t* decoder) {
    delete decoder->state;
    decoder->state = nullptr;
}
