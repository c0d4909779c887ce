#include "services/bench/unit/PpsText.h"

#include "platform/linux/pps/PpsLine.h"

namespace zm::bench::unit {

namespace {

// "@name", also with a qualifier, begins a delta; "+@name" and its kin are notices about the whole object.
bool isObjectLine(std::string_view line) {
    const auto parsed = parsePpsLine(line);
    return parsed && parsed->kind != PpsLineKind::Attribute && parsed->kind != PpsLineKind::AttributeDeleted;
}

} // namespace

std::vector<std::vector<std::string>> ppsDeltas(std::string_view text) {
    std::vector<std::vector<std::string>> deltas;
    bool open = false;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const auto line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (isObjectLine(line)) {
            open = false;
        } else if (!line.empty()) {
            if (!open) {
                deltas.emplace_back();
                open = true;
            }
            deltas.back().emplace_back(line);
        }
    }
    return deltas;
}

bool ppsValue(std::string_view line, std::string_view name, std::string& value) {
    // Qualifiers such as "[n]" stand before the name.
    if (line.starts_with('[')) {
        line.remove_prefix(std::min(line.find(']') + 1, line.size()));
    }
    if (!line.starts_with(name) || line.substr(name.size(), 1) != ":") {
        return false;
    }
    const auto second = line.find(':', name.size() + 1);
    if (second == std::string_view::npos) {
        return false;
    }
    value = line.substr(second + 1);
    return true;
}

} // namespace zm::bench::unit
