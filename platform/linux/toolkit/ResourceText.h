#pragma once

#include "base/Result.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zm {

/** One value of a resource text (JSON with comments) that knows where it stands. */
struct Node {
    enum class Kind { Null, Bool, Number, String, Array, Object };
    struct Member;

    Kind kind = Kind::Null;
    int line = 0;
    int file = 0; ///< index into the loader's list of files
    bool boolean = false;
    double number = 0;
    std::string text;
    std::vector<Node> items;     ///< of an array
    std::vector<Member> members; ///< of an object, in the order of the text

    const Node* find(std::string_view name) const;
    /** Names of the members. */
    std::vector<std::string> names() const;
    /** Sets a member, replacing one of the same name. */
    void set(const std::string& name, Node value);
    /** For messages: the value as it stands in the text, shortened ("\"butn\"", "12", "a list"). */
    std::string shown() const;
};

struct Node::Member {
    Member(std::string memberName, Node memberValue)
        : name(std::move(memberName)), value(std::move(memberValue)) {}
    std::string name;
    Node value;
};

/** Where the text of a resource is wrong. */
struct TextFault {
    int line;
    std::string message; ///< what was found and what was expected
};

/**
 * Parses JSON with comments. A name that stands twice in one object is a fault, so is nesting deeper than 32
 * levels. Returns false and fills `fault` when the text is wrong.
 */
bool parseResourceText(std::string_view text, int file, Node& root, TextFault& fault);

} // namespace zm
