// Windows and items of a resource. Shared parts are expanded and changed as nodes, before anything is
// interpreted, so that faults name the line where a value stands.

#include "platform/linux/toolkit/ResourceChoice.h"
#include "platform/linux/toolkit/ResourceHint.h"
#include "platform/linux/toolkit/ResourceReader.h"

#include <algorithm>

namespace zm {

namespace {

constexpr int maximumPartDepth = 8;
constexpr int mostPartsUsed = 5000;
constexpr int highestId = 99999;

constexpr std::array<std::pair<const char*, ItemKind>, itemKinds> kinds = {
    {{"text", ItemKind::Text},
     {"icon", ItemKind::Icon},
     {"button", ItemKind::Button},
     {"progress", ItemKind::Progress},
     {"animation", ItemKind::Animation},
     {"list", ItemKind::List},
     {"panel", ItemKind::Panel}}};
constexpr std::array<std::pair<const char*, int>, 2> startStates = {
    {{"normal", StateNormal}, {"selected", StateSelected}}};
constexpr std::array<std::pair<const char*, Anchor>, 5> anchors = {{{"spread", Anchor::Spread},
                                                                    {"left", Anchor::Left},
                                                                    {"right", Anchor::Right},
                                                                    {"center", Anchor::Center},
                                                                    {"stretch", Anchor::Stretch}}};
constexpr std::array<std::pair<const char*, bool>, 2> touchModes = {{{"all", true}, {"items", false}}};
constexpr std::array<std::pair<const char*, int>, 4> iconStates = {
    {{"pressed", StatePressed}, {"normal", StateNormal}, {"selected", StateSelected}, {"all", StateAll}}};

constexpr std::array<MemberName, 9> windowNames = {{{"id", true},
                                                    {"name"},
                                                    {"background"},
                                                    {"tint"},
                                                    {"theme"},
                                                    {"stacked"},
                                                    {"returns"},
                                                    {"touch"},
                                                    {"items", true}}};
constexpr std::array<MemberName, 5> useNames = {{{"use", true}, {"at"}, {"in"}, {"without"}, {"only"}}};
constexpr std::array<MemberName, 23> itemNames = {
    {{"id", true}, {"kind", true},    {"rect", true}, {"style", true}, {"in"},    {"text"},    {"icon"},
     {"icons"},    {"pictureOfText"}, {"bound"},      {"movesWhile"},  {"state"}, {"visible"}, {"enabled"},
     {"touch"},    {"whenText"},      {"anchor"},     {"mirrors"},     {"total"}, {"elapsed"}, {"whileEmpty"},
     {"value"},    {"pictureOfValue"}}};

/** A change names the item and any of the others. */
constexpr std::array<MemberName, itemNames.size()> changeNames = [] {
    std::array<MemberName, itemNames.size()> names = itemNames;
    for (MemberName& member : names) {
        member.required = false;
    }
    names[0] = {"change", true};
    return names;
}();

bool hasId(const Node& item, double id) {
    const Node* own = item.find("id");
    return own && own->kind == Node::Kind::Number && own->number == id;
}

bool contains(const Node* ids, const Node& item) {
    return ids && std::any_of(ids->items.begin(), ids->items.end(),
                              [&](const Node& id) { return hasId(item, id.number); });
}

void shift(Node& item, double dx, double dy) {
    for (auto& [name, value] : item.members) {
        if (name == "rect" && value.items.size() == 4) {
            value.items[0].number += dx;
            value.items[1].number += dy;
        }
    }
}

} // namespace

void ResourceReader::expand(const Node& items, std::vector<Node>& out, int depth) const {
    for (const Node& node : array(items, "items").items) {
        if (node.find("use")) {
            expandPart(node, out, depth);
        } else if (node.find("change")) {
            applyChange(node, out);
        } else {
            object(node, itemNames);
            out.push_back(node);
        }
    }
}

void ResourceReader::expandPart(const Node& use, std::vector<Node>& out, int depth) const {
    object(use, useNames);
    const Node& name = *use.find("use");
    const std::string& partName = string(name, "the name of a part");
    const Node* parts = section("parts");
    const Node* part = parts ? parts->find(partName) : nullptr;
    if (!part) {
        fail(name, "the name of a part from the section \"parts\"" +
                       (parts ? didYouMean(partName, parts->names()) : ""));
    }
    if (depth == maximumPartDepth || ++m_partsUsed > mostPartsUsed) {
        fail(name, "parts that do not use themselves");
    }
    std::vector<Node> items;
    expand(*part, items, depth + 1);
    for (const char* list : {"without", "only"}) {
        if (const Node* ids = use.find(list)) {
            for (const Node& id : array(*ids, "item ids").items) {
                integer(id, 1, highestId, "an item id");
                if (std::none_of(items.begin(), items.end(),
                                 [&](const Node& item) { return hasId(item, id.number); })) {
                    fail(id, "the id of an item of the part \"" + partName + "\"");
                }
            }
        }
    }
    const Node* at = use.find("at");
    if (at && (at->kind != Node::Kind::Array || at->items.size() != 2)) {
        fail(*at, "an offset [x, y]");
    }
    const Node* only = use.find("only");
    for (Node& item : items) {
        if (contains(use.find("without"), item) || (only && !contains(only, item))) {
            continue;
        }
        if (at) {
            shift(item, integer(at->items[0], -4096, 4096, "an offset"),
                  integer(at->items[1], -4096, 4096, "an offset"));
        }
        if (const Node* parent = use.find("in"); parent && !item.find("in")) {
            item.set("in", *parent);
        }
        out.push_back(std::move(item));
    }
}

void ResourceReader::applyChange(const Node& change, std::vector<Node>& out) const {
    object(change, changeNames);
    const Node& id = *change.find("change");
    integer(id, 1, highestId, "an item id");
    const auto found =
        std::find_if(out.begin(), out.end(), [&](const Node& item) { return hasId(item, id.number); });
    if (found == out.end()) {
        fail(id, "the id of an item that stands above in this list");
    }
    for (const auto& [name, value] : change.members) {
        if (name != "change") {
            found->set(name, value);
        }
    }
}

int ResourceReader::picture(const Node& node) const {
    const int id = integer(node, 0, highestId, "a picture id");
    if (id != 0 && !m_resource.pictures.contains(id)) {
        fail(node, "the id of a picture from the section \"pictures\"");
    }
    return id;
}

int ResourceReader::textId(const Node& node) const {
    const int id = integer(node, 1, highestId, "a text id");
    if (!m_resource.texts.contains(id)) {
        fail(node, "the id of a text from the section \"texts\"");
    }
    return id;
}

Binding ResourceReader::binding(const Node& node, const char* expected) const {
    if (node.kind != Node::Kind::Array || node.items.size() != 3) {
        fail(node, expected);
    }
    for (const Node& name : node.items) {
        if (string(name, expected).empty()) {
            fail(name, expected);
        }
    }
    return {node.items[0].text, node.items[1].text, node.items[2].text};
}

void ResourceReader::itemContent(const Node& node, ItemSpec& item) const {
    if (const Node* text = node.find("text")) {
        if (text->kind == Node::Kind::Number) {
            item.textId = textId(*text);
        } else {
            item.text = string(*text, "a text id or a text");
        }
    }
    if (const Node* icon = node.find("icon")) {
        item.icons[StateAll] = picture(*icon);
    }
    if (const Node* icons = node.find("icons")) {
        static constexpr std::array<MemberName, 4> names = {{{"pressed"}, {"normal"}, {"selected"}, {"all"}}};
        object(*icons, names);
        for (const auto& [name, state] : iconStates) {
            if (const Node* icon = icons->find(name)) {
                item.icons[state] = picture(*icon);
            }
        }
    }
    if (const Node* bound = node.find("bound")) {
        item.bound = binding(*bound);
    }
    const Node* chooser = node.find("value");
    const Node* byValue = node.find("pictureOfValue");
    if (chooser && byValue) {
        item.value = binding(*chooser);
        for (const auto& [text, id] : objectOf(*byValue, "picture ids by value").members) {
            item.pictureOfValue[text] = picture(id);
        }
    } else if (chooser || byValue) {
        failFound(chooser ? *chooser : *byValue, chooser ? "\"value\" alone" : "\"pictureOfValue\" alone",
                  "\"value\" together with \"pictureOfValue\"");
    }
    if (const Node* moves = node.find("movesWhile")) {
        if (item.kind != ItemKind::List) {
            failFound(*moves, "\"movesWhile\" for what is no list", "it for a list only");
        }
        const Binding names = binding(*moves, "an object's name, an attribute and the value it then has");
        item.movesWhile = {names.object, names.attribute, ""};
        item.movesValue = names.member;
    }
    if (const Node* pictures = node.find("pictureOfText")) {
        for (const auto& [text, value] : objectOf(*pictures, "picture ids by text").members) {
            item.pictureOfText[text] = picture(value);
        }
    }
}

ItemSpec ResourceReader::item(const Node& node) const {
    ItemSpec item;
    item.id = integer(*node.find("id"), 1, highestId, "an item id");
    item.kind = choice(*node.find("kind"), kinds);
    item.rect = rect(*node.find("rect"));
    item.style = styleIndex(*node.find("style"));
    item.touch =
        item.kind == ItemKind::Button || item.kind == ItemKind::List || item.kind == ItemKind::Progress;
    checkContent(node, item.kind);
    itemContent(node, item);
    if (const Node* parent = node.find("in")) {
        item.parent = integer(*parent, 1, highestId, "an item id");
    }
    if (const Node* texts = node.find("whenText")) {
        for (const Node& text : array(*texts, "text ids").items) {
            item.whenText.push_back(textId(text));
        }
        if (item.parent == 0) {
            failFound(*texts, "\"whenText\" without \"in\"", "the item whose text is meant");
        }
        item.visible = false;
    }
    if (const Node* empty = node.find("whileEmpty")) {
        item.whileEmpty = boolean(*empty);
    }
    if (const Node* anchor = node.find("anchor")) {
        item.anchor = choice(*anchor, anchors);
    }
    if (const Node* mirrors = node.find("mirrors")) {
        item.mirrors = boolean(*mirrors);
    }
    if (const Node* total = node.find("total")) {
        item.total = integer(*total, 1, highestId, "an item id");
    }
    if (const Node* elapsed = node.find("elapsed")) {
        item.elapsed = integer(*elapsed, 1, highestId, "an item id");
        if (item.total == 0 || item.kind != ItemKind::Text) {
            failFound(*elapsed, "\"elapsed\" alone or not for a text",
                      "a text with \"total\" and \"elapsed\"");
        }
    }
    if (const Node* state = node.find("state")) {
        item.state = choice(*state, startStates);
    }
    if (const Node* visible = node.find("visible")) {
        item.visible = boolean(*visible);
    }
    if (const Node* enabled = node.find("enabled")) {
        item.enabled = boolean(*enabled);
    }
    if (const Node* touch = node.find("touch")) {
        item.touch = boolean(*touch);
    }
    return item;
}

void ResourceReader::checkContent(const Node& node, ItemKind kind) const {
    if (kind == ItemKind::Text || kind == ItemKind::Icon || kind == ItemKind::Button) {
        return;
    }
    for (const char* name :
         {"text", "icon", "icons", "pictureOfText", "bound", "state", "value", "pictureOfValue"}) {
        if (const Node* value = node.find(name)) {
            failFound(*value,
                      "\"" + std::string(name) + "\" for a " + itemKindNames[static_cast<size_t>(kind)],
                      "it for a text, icon or button only");
        }
    }
}

void ResourceReader::checkParts() const {
    const Node* parts = section("parts");
    if (!parts) {
        return;
    }
    for (const auto& [name, part] : parts->members) {
        std::vector<Node> items;
        expand(part, items, 1);
        for (const Node& node : items) {
            item(node);
        }
    }
}

void ResourceReader::checkParents(const WindowSpec& window, const std::vector<Node>& nodes) const {
    std::set<int> above;
    for (size_t i = 0; i < window.items.size(); ++i) {
        const ItemSpec& item = window.items[i];
        if (item.parent != 0 && !above.contains(item.parent)) {
            fail(*nodes[i].find("in"), "the id of an item that stands above in this window");
        }
        const auto isItsList = [&](const ItemSpec& each) {
            return each.id == item.parent && each.kind == ItemKind::List;
        };
        if (item.whileEmpty && std::none_of(window.items.begin(), window.items.end(), isItsList)) {
            failFound(*nodes[i].find("whileEmpty"), "\"whileEmpty\" for what is not \"in\" a list",
                      "the list whose rows are meant");
        }
        for (const auto& [name, other] :
             {std::pair{"total", item.total}, std::pair{"elapsed", item.elapsed}}) {
            if (other != 0 &&
                std::none_of(window.items.begin(), window.items.end(), [id = other](const ItemSpec& each) {
                    return each.id == id && each.kind == ItemKind::Text;
                })) {
                fail(*nodes[i].find(name), "the id of a text of this window");
            }
        }
        if (!above.insert(item.id).second) {
            failFound(*nodes[i].find("id"), "item " + std::to_string(item.id) + " a second time",
                      "it once in window " + std::to_string(window.id));
        }
    }
}

void ResourceReader::readWindow(const Node& node) {
    object(node, windowNames);
    WindowSpec window;
    window.id = integer(*node.find("id"), 1, highestId, "a window id");
    for (const WindowSpec& other : m_resource.windows) {
        if (other.id == window.id) {
            failFound(*node.find("id"), "window " + std::to_string(window.id) + " a second time", "it once");
        }
    }
    if (const Node* name = node.find("name")) {
        window.name = string(*name, "a name");
    }
    if (const Node* background = node.find("background")) {
        window.background = colorIndex(*background);
    }
    if (const Node* theme = node.find("theme")) {
        window.theme = string(*theme, "the name of a theme");
        if (!m_resource.themes.contains(window.theme)) {
            fail(*theme, "the name of a theme from the section \"themes\"");
        }
    }
    if (const Node* tint = node.find("tint")) {
        if (window.background == noColor) {
            failFound(*tint, "\"tint\" without \"background\"", "a background that takes it on");
        }
        window.tint = binding(*tint);
    }
    if (const Node* stacked = node.find("stacked")) {
        window.stacked = boolean(*stacked);
    }
    if (const Node* returns = node.find("returns")) {
        window.returns = boolean(*returns);
    }
    if (const Node* touch = node.find("touch")) {
        window.touchAll = choice(*touch, touchModes);
    }
    std::vector<Node> items;
    expand(*node.find("items"), items, 0);
    for (const Node& itemNode : items) {
        window.items.push_back(item(itemNode));
    }
    checkParents(window, items);
    m_resource.windows.push_back(std::move(window));
}

void ResourceReader::readWindows() {
    checkParts();
    const Node& windows = array(*m_sections.find("windows"), "windows");
    if (windows.items.empty()) {
        failFound(windows, "no window", "at least one");
    }
    for (const Node& window : windows.items) {
        readWindow(window);
    }
}

} // namespace zm
