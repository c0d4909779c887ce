#pragma once

#include "base/Result.h"

#include <list>
#include <map>
#include <string>
#include <string_view>

namespace zm {

/** The attributes of one object, in the order in which they were first written. */
class PpsObject {
public:
    explicit PpsObject(std::string leaf) : m_leaf(std::move(leaf)) {}

    const std::string& leaf() const { return m_leaf; }
    /** Size of `text()`. */
    size_t size() const { return m_size + m_leaf.size() + m_qualifier.size() + 2; }
    /** The whole object: its "@name" line and a line for each attribute. */
    std::string text() const;

    /**
     * Merges `text` into the object, all lines or none, and returns what readers of changes are told: "@name"
     * and a line for each change, empty when nothing was said. The object line is optional, and its name does
     * not matter. "[i]a::x," adds items to a set, "[-i]a::x," takes them out; readers are told the whole set. The
     * error names the first faulty line, or the limit of 32 KB.
     */
    Result<std::string> merge(std::string_view text);
    /** Deletes all attributes. */
    void clear();

private:
    struct Attribute {
        std::string name;
        std::string encoding;
        std::string value;
        bool nonpersistent = false;

        /** With qualifier and line feed. */
        std::string line() const;
    };
    using Attributes = std::list<Attribute>;

    void set(const struct PpsLine& line, std::string& change);
    void erase(std::string_view name, std::string& change);
    Attribute& attribute(std::string_view name);

    std::string m_leaf;
    std::string m_qualifier;
    Attributes m_attributes;
    std::map<std::string, Attributes::iterator, std::less<>> m_index;
    size_t m_size = 0;
};

} // namespace zm
