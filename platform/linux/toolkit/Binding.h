#pragma once

#include <compare>
#include <string>

namespace zm {

/** Where a page looks for a value that somebody else publishes: a member of an attribute that is a JSON object. */
struct Binding {
    std::string object; ///< without "/pps/"
    std::string attribute;
    std::string member;
    auto operator<=>(const Binding&) const = default;
    bool empty() const { return object.empty(); }
};

/** What a page makes of such a value. */
enum class BoundAs { Picture, Color };

} // namespace zm
