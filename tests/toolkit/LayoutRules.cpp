#include "LayoutRules.h"

#include <algorithm>
#include <array>
#include <set>

namespace zm::test {

using namespace zm;

namespace {

constexpr int play = 6522;
constexpr int pause = 6523;
constexpr int musicPage = 6;
constexpr int groupGap = 24;
constexpr int wantedRow = 60;
constexpr int ownTexts = 20000; ///< from here on texts belong to the pages alone
constexpr double largerBy = 1.25;
constexpr std::array playerKeys = {6521, 6522, 6523, 6524};

bool isPlayerKey(const ItemSpec& item) {
    return std::find(playerKeys.begin(), playerKeys.end(), item.id) != playerKeys.end();
}

const Style& styleOf(const Resource& resource, const ItemSpec& item) {
    return resource.styles[static_cast<size_t>(item.style)];
}

std::string place(const WindowSpec& window, const ItemSpec& item) {
    return "window " + std::to_string(window.id) + " item " + std::to_string(item.id) + ": ";
}

int area(const ItemSpec& item) {
    return item.rect.w * item.rect.h;
}

/** Keys that stand beside each other; drawn ones only. */
bool inOneRank(const Resource& resource, const ItemSpec& one, const ItemSpec& other) {
    return other.touch && other.kind == ItemKind::Button && other.parent == one.parent &&
           styleOf(resource, other).name != "none" && other.rect.y < one.rect.y + one.rect.h &&
           one.rect.y < other.rect.y + other.rect.h;
}

int gap(const Rect& a, const Rect& b) {
    return std::max(a.x - b.x - b.w, b.x - a.x - a.w);
}

} // namespace

Findings primaryActions(const Resource& resource) {
    Findings findings;
    for (const WindowSpec& window : resource.windows) {
        for (const ItemSpec& item : window.items) {
            if (item.id != play && item.id != pause) {
                continue;
            }
            if (styleOf(resource, item).look(LookState::Normal).fill == noColor) {
                findings.push_back(place(window, item) + "not filled");
            }
            for (const ItemSpec& other : window.items) {
                const bool itself = other.id == play || other.id == pause;
                if (!itself && inOneRank(resource, item, other) && area(item) < largerBy * area(other)) {
                    findings.push_back(place(window, item) + "not larger than " + std::to_string(other.id));
                }
                if (!itself && inOneRank(resource, item, other) &&
                    styleOf(resource, other).look(LookState::Normal).fill != noColor) {
                    findings.push_back(place(window, other) + "filled beside the primary action");
                }
            }
        }
    }
    return findings;
}

Findings groupDistances(const Resource& resource) {
    Findings findings;
    for (const WindowSpec& window : resource.windows) {
        if (window.id != musicPage) {
            continue;
        }
        for (const ItemSpec& key : window.items) {
            for (const ItemSpec& other : window.items) {
                if (isPlayerKey(key) && !isPlayerKey(other) && inOneRank(resource, key, other) &&
                    gap(key.rect, other.rect) < groupGap) {
                    findings.push_back(place(window, key) + "too near to the group of " +
                                       std::to_string(other.id));
                }
            }
        }
    }
    return findings;
}

Findings rowHeights(const Resource& resource) {
    Findings findings;
    for (const WindowSpec& window : resource.windows) {
        for (const ItemSpec& item : window.items) {
            const Style& style = styleOf(resource, item);
            const int row = item.kind == ItemKind::List ? item.rect.h / style.rows - style.rowGap : wantedRow;
            if (row != wantedRow) {
                findings.push_back(place(window, item) + "rows of " + std::to_string(row));
            }
        }
    }
    return findings;
}

Findings messageHeights(const Resource& resource) {
    Findings findings;
    const ItemSpec* first = nullptr;
    for (const WindowSpec& window : resource.windows) {
        for (const ItemSpec& item : window.items) {
            if (styleOf(resource, item).name != "message") {
                continue;
            }
            first = first ? first : &item;
            if (item.rect.y != first->rect.y || item.rect.h != first->rect.h) {
                findings.push_back(place(window, item) + "a message at another height");
            }
        }
    }
    return findings;
}

Findings unusedTexts(const std::vector<Resource>& resources) {
    std::set<int> used;
    std::set<int> known;
    for (const Resource& resource : resources) {
        for (const auto& [id, versions] : resource.texts) {
            known.insert(id);
        }
        for (const WindowSpec& window : resource.windows) {
            for (const ItemSpec& item : window.items) {
                used.insert(item.textId);
            }
        }
    }
    Findings findings;
    for (const int id : known) {
        if (id > ownTexts && !used.contains(id)) {
            findings.push_back("text " + std::to_string(id) + " is on no page");
        }
    }
    return findings;
}

Findings motionTimes(const Resource& resource) {
    constexpr int shortestMs = 150;
    constexpr int longestMs = 250;
    Findings findings;
    const MotionTimes& times = resource.motion;
    for (const auto& [name, ms] : {std::pair{"page", times.page}, std::pair{"popup", times.popup},
                                   std::pair{"overlay", times.overlay}, std::pair{"press", times.press}}) {
        if (ms < shortestMs || ms > longestMs) {
            findings.push_back("motion " + std::string(name) + ": " + std::to_string(ms) + " ms");
        }
    }
    return findings;
}

} // namespace zm::test
