#include "platform/linux/toolkit/ResourceReader.h"

#include "platform/linux/toolkit/ResourceHint.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace zm {

namespace {

constexpr std::array<MemberName, 10> sectionNames = {{{"include"},
                                                      {"languages"},
                                                      {"themes"},
                                                      {"styles"},
                                                      {"motion"},
                                                      {"glyphs"},
                                                      {"pictures"},
                                                      {"texts"},
                                                      {"parts"},
                                                      {"windows"}}};

std::string folderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "" : path.substr(0, slash + 1);
}

} // namespace

void ResourceReader::fail(const Node& node, const std::string& expected) const {
    failFound(node, node.shown(), expected);
}

void ResourceReader::failFound(const Node& node, const std::string& found,
                               const std::string& expected) const {
    throw ResourceFault(m_files.at(static_cast<size_t>(node.file)) + ":" + std::to_string(node.line) +
                        ": found " + found + ", expected " + expected);
}

const Node& ResourceReader::object(const Node& node, std::span<const MemberName> names) const {
    std::string known;
    std::vector<std::string> all;
    for (const MemberName& member : names) {
        all.emplace_back(member.name);
        known += (known.empty() ? "" : ", ") + all.back();
    }
    if (node.kind != Node::Kind::Object) {
        fail(node, "an object with " + known);
    }
    for (const auto& [name, value] : node.members) {
        if (std::find(all.begin(), all.end(), name) == all.end()) {
            failFound(value, "the name \"" + name + "\"", "one of " + known + didYouMean(name, all));
        }
    }
    for (const MemberName& member : names) {
        if (member.required && !node.find(member.name)) {
            failFound(node, "no \"" + std::string(member.name) + "\"", "it in this object");
        }
    }
    return node;
}

const Node& ResourceReader::objectOf(const Node& node, const std::string& what) const {
    if (node.kind != Node::Kind::Object) {
        fail(node, "an object of " + what);
    }
    return node;
}

const Node* ResourceReader::section(const char* name) const {
    const Node* found = m_sections.find(name);
    return found ? &objectOf(*found, name) : nullptr;
}

const Node& ResourceReader::array(const Node& node, const std::string& what) const {
    if (node.kind != Node::Kind::Array) {
        fail(node, "a list of " + what);
    }
    return node;
}

int ResourceReader::integer(const Node& node, int least, int most, const std::string& what) const {
    if (node.kind != Node::Kind::Number || node.number != std::floor(node.number) || node.number < least ||
        node.number > most) {
        fail(node, what + ", a whole number from " + std::to_string(least) + " to " + std::to_string(most));
    }
    return static_cast<int>(node.number);
}

bool ResourceReader::boolean(const Node& node) const {
    if (node.kind != Node::Kind::Bool) {
        fail(node, "true or false");
    }
    return node.boolean;
}

const std::string& ResourceReader::string(const Node& node, const std::string& what) const {
    if (node.kind != Node::Kind::String) {
        fail(node, what);
    }
    return node.text;
}

int ResourceReader::idOf(const std::string& name, const Node& node, const std::string& what) const {
    char* end = nullptr;
    const long id = std::strtol(name.c_str(), &end, 10);
    if (name.empty() || *end != '\0' || id < 0 || id > 99999) {
        failFound(node, "the name \"" + name + "\"", what + ", a number from 0 to 99999 in quotes");
    }
    return static_cast<int>(id);
}

Rect ResourceReader::rect(const Node& node) const {
    if (node.kind != Node::Kind::Array || node.items.size() != 4) {
        fail(node, "a rectangle [x, y, width, height]");
    }
    const auto coordinate = [&](size_t i) { return integer(node.items[i], -4096, 4096, "a coordinate"); };
    const Rect area{coordinate(0), coordinate(1), coordinate(2), coordinate(3)};
    if (area.empty()) {
        failFound(node, "an empty rectangle", "width and height above 0");
    }
    if (area.intersected(m_screen) != area) {
        const auto number = [](int value) { return std::to_string(value); };
        failFound(node,
                  "the rectangle [" + number(area.x) + ", " + number(area.y) + ", " + number(area.w) + ", " +
                      number(area.h) + "]",
                  "one inside " + std::to_string(m_screen.w) + " x " + std::to_string(m_screen.h) +
                      " pixels");
    }
    return area;
}

void ResourceReader::readFile(const std::string& path, const Node* includedBy) {
    if (!m_included.insert(path).second) {
        failFound(*includedBy, "\"" + path + "\" a second time", "each file to be included once");
    }
    std::ifstream stream(path, std::ios::binary);
    std::stringstream content;
    content << stream.rdbuf();
    if (!stream.is_open() || stream.bad() || std::filesystem::is_directory(path)) {
        const std::string missing = "a file that cannot be read: " + path;
        if (includedBy) {
            failFound(*includedBy, missing, "a file name relative to this file");
        }
        throw ResourceFault(path + ": cannot be read, expected a resource file");
    }
    const int file = static_cast<int>(m_files.size());
    m_files.push_back(path);
    Node root;
    TextFault fault;
    if (!parseResourceText(content.str(), file, root, fault)) {
        throw ResourceFault(path + ":" + std::to_string(fault.line) + ": " + fault.message);
    }
    object(root, sectionNames);
    if (const Node* includes = root.find("include")) {
        for (const Node& name : array(*includes, "file names").items) {
            readFile(folderOf(path) + string(name, "a file name"), &name);
        }
    }
    for (auto& [name, section] : root.members) {
        const Node* present = m_sections.find(name);
        if (name == "include" || !present) {
            m_sections.set(name, std::move(section));
        } else if (section.kind == Node::Kind::Object && present->kind == Node::Kind::Object) {
            Node joined = *present;
            for (auto& [key, value] : section.members) {
                if (joined.find(key)) {
                    failFound(value, "\"" + key + "\" a second time", "it once among the " + name);
                }
                joined.members.emplace_back(key, std::move(value));
            }
            m_sections.set(name, std::move(joined));
        } else {
            failFound(section, "a second section \"" + name + "\"", "it once");
        }
    }
}

void ResourceReader::read(const std::string& file) {
    readFile(file, nullptr);
    m_resource.files = m_files;
    m_sections.line = 1;
    readSections();
}

void ResourceReader::readSections() {
    for (const char* section : {"languages", "themes", "styles", "windows"}) {
        if (!m_sections.find(section)) {
            failFound(m_sections, "no section \"" + std::string(section) + "\"",
                      "it here or in an included file");
        }
    }
    readLanguages();
    readThemes();
    readTexts();
    readPictures();
    readStyles();
    readMotion();
    readWindows();
}

Result<Resource> loadResource(const std::string& file, int width, int height) {
    try {
        Resource resource;
        ResourceReader(resource, width, height).read(file);
        return resource;
    } catch (const ResourceFault& fault) {
        return Error{fault.what()};
    }
}

} // namespace zm
