#include "tests/support/Screen.h"

#include "tests/support/Harness.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

namespace zm::test {

namespace {

std::map<int, int> numberMap(const Json& object) {
    std::map<int, int> result;
    for (const auto& [key, value] : object.items()) {
        result[std::stoi(key)] = value;
    }
    return result;
}

Item readItem(const Json& json) {
    Item item;
    item.kind = json.value("kind", "");
    item.visible = json.value("visible", false);
    item.enabled = json.value("enabled", false);
    item.text = json.value("text", "");
    item.textId = json.value("textId", 0);
    item.icons = numberMap(json.value("icons", Json::object()));
    item.state = json.value("state", 0);
    item.progress = json.value("progress", 0);
    if (json.contains("rect")) {
        const auto& rect = json["rect"];
        item.rect = {rect[0], rect[1], rect[2], rect[3]};
    }
    for (const auto& row : json.value("rows", Json::array())) {
        item.rows.push_back({row.value("text", ""), numberMap(row.value("icons", Json::object()))});
    }
    item.current = json.value("current", -1);
    item.top = json.value("top", 0);
    return item;
}

} // namespace

std::vector<std::string> Item::rowTexts() const {
    std::vector<std::string> result;
    for (const auto& row : rows) {
        result.push_back(row.text);
    }
    return result;
}

Json View::describe() const {
    return Json::parse(m_unit.must({"screen", m_name})).value(m_name, Json::object());
}

int View::window() const {
    return describe().value("window", 0);
}

std::vector<int> View::shown() const {
    return describe().value("shown", std::vector<int>());
}

bool View::visible() const {
    return describe().value("visible", false);
}

Json View::window(int window) const {
    const Json answer = Json::parse(m_unit.must({"screen", m_name, std::to_string(window)}));
    const auto pointer = Json::json_pointer("/" + m_name + "/windows/" + std::to_string(window) + "/items");
    return answer.contains(pointer) ? answer[pointer] : Json::object();
}

bool View::hasItem(int windowId, int itemId) const {
    return window(windowId).contains(std::to_string(itemId));
}

Item View::item(int windowId, int itemId) const {
    const Json items = window(windowId);
    auto found = items.find(std::to_string(itemId));
    if (found == items.end()) {
        ADD_FAILURE() << "view " << m_name << ": page " << windowId << " has no item " << itemId;
        return {};
    }
    return readItem(*found);
}

} // namespace zm::test
