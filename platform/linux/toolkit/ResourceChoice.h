#pragma once

#include "platform/linux/toolkit/ResourceReader.h"

namespace zm {

/** The value of one of several names; a fault lists them all. */
template <class T, size_t N>
T ResourceReader::choice(const Node& node, const std::array<std::pair<const char*, T>, N>& choices) const {
    std::string known;
    for (const auto& [name, value] : choices) {
        if (node.kind == Node::Kind::String && node.text == name) {
            return value;
        }
        known += (known.empty() ? "" : ", ") + std::string(name);
    }
    fail(node, "one of " + known);
}

} // namespace zm
