#include "platform/linux/toolkit/ResourceText.h"

#include "platform/linux/toolkit/ResourceHint.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <optional>

namespace zm {

namespace {

constexpr size_t maximumDepth = 32;
constexpr size_t shownLength = 40;

/** Hands the text to the parser and remembers on which line the last visible character stood. */
struct LineCounter {
    int line = 1;
    int lastVisibleLine = 1;

    void pass(char character) {
        if (character == '\n') {
            ++line;
        } else if (character != ' ' && character != '\t' && character != '\r') {
            lastVisibleLine = line;
        }
    }
};

class CountingIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountingIterator(const char* position, LineCounter* counter) : m_position(position), m_counter(counter) {}
    reference operator*() const { return *m_position; }
    CountingIterator& operator++() {
        m_counter->pass(*m_position);
        ++m_position;
        return *this;
    }
    CountingIterator operator++(int) {
        CountingIterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const CountingIterator& other) const { return m_position == other.m_position; }

private:
    const char* m_position;
    LineCounter* m_counter;
};

/** Builds the tree from the parser's events. */
class TreeBuilder {
public:
    TreeBuilder(Node& root, const LineCounter& lines, int file)
        : m_root(root), m_lines(lines), m_file(file) {}

    bool null() { return place(Node::Kind::Null) != nullptr; }
    bool boolean(bool value) {
        Node* node = place(Node::Kind::Bool);
        return node && (node->boolean = value, true);
    }
    bool number_integer(nlohmann::json::number_integer_t value) { return number(static_cast<double>(value)); }
    bool number_unsigned(nlohmann::json::number_unsigned_t value) {
        return number(static_cast<double>(value));
    }
    bool number_float(nlohmann::json::number_float_t value, const std::string&) { return number(value); }
    bool string(std::string& value) {
        Node* node = place(Node::Kind::String);
        return node && (node->text = std::move(value), true);
    }
    bool binary(nlohmann::json::binary_t&) { return false; }
    bool start_object(size_t) { return open(Node::Kind::Object); }
    bool start_array(size_t) { return open(Node::Kind::Array); }
    bool end_object() { return close(); }
    bool end_array() { return close(); }
    bool key(std::string& name) {
        if (m_open.back()->find(name)) {
            return fail("found the name \"" + name + "\" twice in one object, expected it once");
        }
        m_key = std::move(name);
        return true;
    }
    bool parse_error(size_t, const std::string& lastToken, const nlohmann::detail::exception& exception) {
        return fail(syntaxFault(exception.what(), lastToken));
    }

    std::optional<TextFault> fault;

private:
    bool number(double value) {
        Node* node = place(Node::Kind::Number);
        return node && (node->number = value, true);
    }
    bool fail(std::string message) {
        fault = TextFault{m_lines.lastVisibleLine, std::move(message)};
        return false;
    }
    Node* place(Node::Kind kind) {
        Node* node = &m_root;
        if (!m_open.empty() && m_open.back()->kind == Node::Kind::Array) {
            node = &m_open.back()->items.emplace_back();
        } else if (!m_open.empty()) {
            node = &m_open.back()->members.emplace_back(m_key, Node{}).value;
        }
        node->kind = kind;
        node->line = m_lines.lastVisibleLine;
        node->file = m_file;
        return node;
    }
    bool open(Node::Kind kind) {
        if (m_open.size() == maximumDepth) {
            return fail("found nesting deeper than 32 levels, expected less");
        }
        m_open.push_back(place(kind));
        return true;
    }
    bool close() {
        m_open.pop_back();
        return true;
    }

    Node& m_root;
    const LineCounter& m_lines;
    int m_file;
    std::vector<Node*> m_open;
    std::string m_key;
};

} // namespace

const Node* Node::find(std::string_view name) const {
    for (const auto& [key, value] : members) {
        if (key == name) {
            return &value;
        }
    }
    return nullptr;
}

std::vector<std::string> Node::names() const {
    std::vector<std::string> result;
    for (const Member& member : members) {
        result.push_back(member.name);
    }
    return result;
}

void Node::set(const std::string& name, Node value) {
    for (auto& [key, present] : members) {
        if (key == name) {
            present = std::move(value);
            return;
        }
    }
    members.emplace_back(name, std::move(value));
}

std::string Node::shown() const {
    switch (kind) {
    case Kind::Null:
        return "null";
    case Kind::Bool:
        return boolean ? "true" : "false";
    case Kind::Number: {
        char buffer[32];
        std::snprintf(buffer, sizeof buffer, "%.10g", number);
        return buffer;
    }
    case Kind::String:
        return "\"" + (text.size() > shownLength ? text.substr(0, shownLength) + "..." : text) + "\"";
    case Kind::Array:
        return "a list of " + std::to_string(items.size());
    case Kind::Object:
        return "an object";
    }
    return {};
}

bool parseResourceText(std::string_view text, int file, Node& root, TextFault& fault) {
    LineCounter lines;
    TreeBuilder builder(root, lines, file);
    const CountingIterator first(text.data(), &lines);
    const CountingIterator last(text.data() + text.size(), &lines);
    nlohmann::detail::input_format_t format = nlohmann::detail::input_format_t::json;
    const bool good = nlohmann::json::sax_parse(first, last, &builder, format, true, true);
    if (!good) {
        fault = builder.fault.value_or(TextFault{lines.lastVisibleLine, "found something that is no JSON"});
    }
    return good;
}

} // namespace zm
