#pragma once

#include "sys/pps.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zm {

/** One value of a decoded text: a container with its children or a scalar. */
struct DataNode {
    pps_node_type_t type = PPS_TYPE_NULL;
    std::string name;
    std::string text;   ///< of a string
    double number = 0;  ///< of a number: of an integer exact up to 53 bits
    bool truth = false; ///< of a Boolean
    std::vector<std::unique_ptr<DataNode>> children;

    /** The first child called `name`; null without one. */
    DataNode* find(std::string_view childName) const;
    DataNode& add(pps_node_type_t childType, std::string_view childName);
};

/** Deepest nesting of arrays and objects that a text may have. */
constexpr int DeepestNesting = 64;

/** Adds the value of the JSON text to `parent` as a child called `name`; false (and no child) if it is not
 * JSON. */
bool addJson(DataNode& parent, std::string_view name, std::string_view json);

} // namespace zm
