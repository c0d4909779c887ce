#include "platform/linux/pps/PpsItems.h"

#include <algorithm>

namespace zm {

namespace {

// Cuts the first item off, without its comma. A value that was written as a whole may lack the last comma.
std::string_view takeItem(std::string_view& items) {
    const size_t end = std::min(items.find(','), items.size());
    const std::string_view item = items.substr(0, end);
    items.remove_prefix(std::min(end + 1, items.size()));
    return item;
}

bool contains(std::string_view items, std::string_view item) {
    while (!items.empty()) {
        if (takeItem(items) == item) {
            return true;
        }
    }
    return false;
}

// Adds the items of `from` that `others` does not have.
void addMissing(std::string& result, std::string_view from, std::string_view others) {
    while (!from.empty()) {
        const std::string_view item = takeItem(from);
        if (!item.empty() && !contains(others, item) && !contains(result, item)) {
            result.append(item).append(",");
        }
    }
}

} // namespace

bool areItems(std::string_view items) {
    return items.ends_with(',') && !items.starts_with(',') && items.find(",,") == std::string_view::npos;
}

std::string itemsWith(std::string_view set, std::string_view items) {
    std::string result;
    addMissing(result, set, {});
    addMissing(result, items, {});
    return result;
}

std::string itemsWithout(std::string_view set, std::string_view items) {
    std::string result;
    addMissing(result, set, items);
    return result;
}

} // namespace zm
