#pragma once

#include <compare>
#include <string>

namespace zm {

/** Where a page looks for a value that somebody else publishes: an attribute, or a member of one that is a JSON object. */
struct Binding {
    std::string object; ///< without "/pps/"
    std::string attribute;
    std::string member; ///< empty: the attribute itself
    auto operator<=>(const Binding&) const = default;
    bool empty() const { return object.empty(); }
};

/** What a page makes of such a value. */
enum class BoundAs { Picture, Color, Word };

} // namespace zm
