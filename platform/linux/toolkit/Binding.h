#pragma once

#include <string>
#include <tuple>

namespace zm {

/** Where a page looks for a value that somebody else publishes: an attribute, or a member of one that is a JSON object. */
struct Binding {
    std::string object; ///< without "/pps/"
    std::string attribute;
    std::string member; ///< empty: the attribute itself
    bool operator==(const Binding&) const = default;
    bool operator<(const Binding& other) const {
        return std::tie(object, attribute, member) < std::tie(other.object, other.attribute, other.member);
    }
    bool empty() const { return object.empty(); }
};

/** What a page makes of such a value. */
enum class BoundAs { Picture, Color, Word };

} // namespace zm
