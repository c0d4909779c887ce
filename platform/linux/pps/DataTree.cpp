#include "platform/linux/pps/DataTree.h"

#include <nlohmann/json.hpp>

namespace zm {

namespace {

// Builds the tree from the parser's events. The parser keeps no call stack, and the depth is limited here, so
// that no text can exhaust the stack.
class TreeBuilder : public nlohmann::json_sax<nlohmann::json> {
public:
    TreeBuilder(DataNode& parent, std::string_view name) : m_key(name) { m_open.push_back(&parent); }

    bool null() override { return add(PPS_TYPE_NULL) != nullptr; }
    bool boolean(bool value) override {
        add(PPS_TYPE_BOOL)->truth = value;
        return true;
    }
    bool number_integer(number_integer_t value) override {
        add(PPS_TYPE_NUMBER)->number = static_cast<double>(value);
        return true;
    }
    bool number_unsigned(number_unsigned_t value) override {
        add(PPS_TYPE_NUMBER)->number = static_cast<double>(value);
        return true;
    }
    bool number_float(number_float_t value, const string_t&) override {
        add(PPS_TYPE_NUMBER)->number = value;
        return true;
    }
    bool string(string_t& value) override {
        add(PPS_TYPE_STRING)->text = std::move(value);
        return true;
    }
    bool binary(binary_t&) override { return false; }
    bool start_object(size_t) override { return open(PPS_TYPE_OBJECT); }
    bool key(string_t& value) override {
        m_key = std::move(value);
        return true;
    }
    bool end_object() override { return close(); }
    bool start_array(size_t) override { return open(PPS_TYPE_ARRAY); }
    bool end_array() override { return close(); }
    bool parse_error(size_t, const std::string&, const nlohmann::detail::exception&) override {
        return false;
    }

private:
    DataNode* add(pps_node_type_t type) {
        // Only members have names; the key of the last member must not stick to the elements of an array.
        auto& node =
            m_open.back()->add(type, m_open.back()->type == PPS_TYPE_ARRAY ? std::string_view() : m_key);
        return &node;
    }
    bool open(pps_node_type_t type) {
        if (m_open.size() > DeepestNesting) {
            return false;
        }
        m_open.push_back(add(type));
        return true;
    }
    bool close() {
        m_open.pop_back();
        return true;
    }

    std::vector<DataNode*> m_open;
    std::string m_key;
};

} // namespace

DataNode* DataNode::find(std::string_view childName) const {
    for (const auto& child : children) {
        if (child->name == childName) {
            return child.get();
        }
    }
    return nullptr;
}

DataNode& DataNode::add(pps_node_type_t childType, std::string_view childName) {
    children.push_back(std::make_unique<DataNode>());
    children.back()->type = childType;
    children.back()->name = childName;
    return *children.back();
}

bool addJson(DataNode& parent, std::string_view name, std::string_view json) {
    const size_t before = parent.children.size();
    TreeBuilder builder(parent, name);
    // The parser takes a NUL for the end of the text, whatever follows.
    if (json.find('\0') == json.npos && nlohmann::json::sax_parse(json.begin(), json.end(), &builder)) {
        return true;
    }
    parent.children.resize(before);
    return false;
}

} // namespace zm
