#pragma once

#include "base/Rect.h"

#include <nlohmann/json_fwd.hpp>

#include <map>
#include <string>
#include <vector>

namespace zm::test {

class Unit;
using Json = nlohmann::json;

struct Row {
    std::string text;
    std::map<int, int> icons; ///< by slot
    int icon(int slot) const {
        auto found = icons.find(slot);
        return found == icons.end() ? 0 : found->second;
    }
};

/** One item of a page as the application left it. */
struct Item {
    std::string kind; ///< empty: there is no such item
    bool visible = false;
    bool enabled = false;
    std::string text;
    int textId = 0;
    std::map<int, int> icons; ///< by button state
    int state = 0;
    int progress = 0;
    Rect rect;
    std::vector<Row> rows; ///< of a list
    int current = -1;
    int top = 0;

    int icon(int buttonState = 4) const {
        auto found = icons.find(buttonState);
        return found == icons.end() ? 0 : found->second;
    }
    std::vector<std::string> rowTexts() const;
};

/** One view as `screen` describes it; each call asks anew. */
class View {
public:
    View(const Unit& unit, std::string name) : m_unit(unit), m_name(std::move(name)) {}

    /** The topmost shown page; 0 if none. */
    int window() const;
    /** Shown pages, bottom first. */
    std::vector<int> shown() const;
    /** What the application last asked for. */
    bool visible() const;
    /** A missing item is a test failure. */
    Item item(int window, int item) const;
    bool hasItem(int window, int item) const;
    Json describe() const;
    const std::string& name() const { return m_name; }

private:
    Json window(int window) const;

    const Unit& m_unit;
    std::string m_name;
};

} // namespace zm::test
