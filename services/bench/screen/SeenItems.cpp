#include "services/bench/screen/SeenItems.h"

#include "services/ctl/Names.h"
#include "services/ctl/Numbers.h"

#include <nlohmann/json.hpp>

#include <glib.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <tuple>

namespace zm::bench::screen {

namespace {

std::string folded(const std::string& text) {
    const std::unique_ptr<char, decltype(&g_free)> low(g_utf8_casefold(text.c_str(), -1), g_free);
    return low.get();
}

std::string place(const SeenItem& item) {
    return std::to_string(item.item) + (item.text.empty() ? "" : " \"" + item.text + "\"");
}

std::string none(const std::vector<SeenItem>& items, const std::string& name) {
    std::vector<int> ids;
    std::vector<std::string> texts;
    for (const auto& item : items) {
        if (item.touchable) {
            ids.push_back(item.item);
            if (!item.text.empty()) {
                texts.push_back(item.text);
            }
        }
    }
    if (const auto id = ctl::parseNumber<int>(name)) {
        return ctl::unknownNumber("item to touch on this page with id", *id, ids);
    }
    return texts.empty()
               ? "nothing on this page that can be touched has a text; \"zmctl screen --text\" lists the ids"
               : ctl::unknownWord("item to touch on this page called", name, texts);
}

} // namespace

std::vector<SeenItem> seenItems(const Json& answer) {
    std::vector<SeenItem> items;
    for (const auto& entry : answer.at("seen")) {
        const auto& rect = entry.at("rect");
        const bool touchable = entry.contains("touch");
        items.push_back({entry.at("view"), entry.at("window"), entry.at("item"), entry.at("kind"),
                         entry.at("text"), entry.at("enabled"), touchable,
                         rect.at(0).get<int>() + rect.at(2).get<int>() / 2,
                         rect.at(1).get<int>() + rect.at(3).get<int>() / 2});
    }
    std::stable_sort(items.begin(), items.end(), [](const SeenItem& a, const SeenItem& b) {
        return std::tie(a.view, a.window, a.y, a.x) < std::tie(b.view, b.window, b.y, b.x);
    });
    return items;
}

std::string seenText(const std::vector<SeenItem>& items) {
    constexpr size_t idColumn = 7;
    std::string text;
    const SeenItem* before = nullptr;
    for (const auto& item : items) {
        if (!before || before->view != item.view || before->window != item.window) {
            text += item.view + " " + std::to_string(item.window) + "\n";
        }
        std::string id = std::to_string(item.item);
        id.resize(std::max(idColumn, id.size() + 1), ' ');
        text += "  " + id + (item.text.empty() ? "(" + item.kind + ")" : item.text) + "\n";
        before = &item;
    }
    return text;
}

Result<SeenItem> findSeen(const std::vector<SeenItem>& items, const std::string& name) {
    const auto id = ctl::parseNumber<int>(name);
    const std::string low = folded(name);
    const std::function<bool(const SeenItem&)> ways[] = {
        [&](const SeenItem& item) { return item.text == name; },
        [&](const SeenItem& item) { return id && item.item == *id; },
        [&](const SeenItem& item) { return folded(item.text) == low; },
        [&](const SeenItem& item) {
            return !low.empty() && folded(item.text).find(low) != std::string::npos;
        },
    };
    const SeenItem* untouchable = nullptr;
    for (const auto& fits : ways) {
        std::vector<const SeenItem*> found;
        for (const auto& item : items) {
            if (fits(item)) {
                item.touchable ? found.push_back(&item) : void(untouchable = &item);
            }
        }
        if (found.size() > 1) {
            std::string places;
            for (const auto* each : found) {
                places += "\n  " + place(*each);
            }
            return Error{"\"" + name + "\" fits several:" + places};
        }
        if (found.size() == 1) {
            return found[0]->enabled ? Result<SeenItem>(*found[0])
                                     : Result<SeenItem>(Error{place(*found[0]) + " is disabled at present"});
        }
    }
    return Error{untouchable ? place(*untouchable) + " is only shown, it cannot be touched"
                             : none(items, name)};
}

} // namespace zm::bench::screen
