#pragma once

#include "platform/linux/toolkit/Resource.h"
#include "platform/linux/toolkit/ResourceText.h"

#include <initializer_list>
#include <set>
#include <span>
#include <stdexcept>

namespace zm {

/** Ends the reading of a resource with its message; never leaves loadResource. */
struct ResourceFault : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct MemberName {
    const char* name;
    bool required = false;
};

/** Takes typed values out of the nodes of a resource; every fault is reported with file and line. */
class ResourceReader {
public:
    ResourceReader(Resource& resource, int width, int height)
        : m_resource(resource), m_screen{0, 0, width, height} {}

    /** Reads the file and what it includes, then interprets the sections. */
    void read(const std::string& file);

private:
    [[noreturn]] void fail(const Node& node, const std::string& expected) const;
    [[noreturn]] void failFound(const Node& node, const std::string& found,
                                const std::string& expected) const;

    const Node& object(const Node& node, std::span<const MemberName> names) const;
    /** An object whose names are free. */
    const Node& objectOf(const Node& node, const std::string& what) const;
    /** A section, which is such an object, or null. */
    const Node* section(const char* name) const;
    const Node& array(const Node& node, const std::string& what) const;
    int integer(const Node& node, int least, int most, const std::string& what) const;
    bool boolean(const Node& node) const;
    const std::string& string(const Node& node, const std::string& what) const;
    int idOf(const std::string& name, const Node& node, const std::string& what) const;
    template <class T, size_t N>
    T choice(const Node& node, const std::array<std::pair<const char*, T>, N>& choices) const;
    Rect rect(const Node& node) const;

    void readFile(const std::string& path, const Node* includedBy);
    void readSections();
    void readLanguages();
    void readThemes();
    void readTheme(const std::string& name, const Node& node, bool first);
    Color color(const Node& node) const;
    void readTexts();
    void readPictures();
    Picture::Layer pictureLayer(const Node& node) const;
    std::string glyph(const Node& node) const;

    void readMotion();

    void readStyles();
    void readStyle(const std::string& name, const Node& node);
    void readLook(const Node& node, std::span<const LookState> states, Style& style);
    int colorIndex(const Node& node) const;
    int styleIndex(const Node& node) const;

    void readWindows();
    void readWindow(const Node& node);
    void expand(const Node& items, std::vector<Node>& out, int depth) const;
    void expandPart(const Node& use, std::vector<Node>& out, int depth) const;
    void applyChange(const Node& change, std::vector<Node>& out) const;
    ItemSpec item(const Node& node) const;
    void itemContent(const Node& node, ItemSpec& item) const;
    int picture(const Node& node) const;
    int textId(const Node& node) const;
    Binding binding(const Node& node,
                    const char* expected = "an object's name, an attribute and a member") const;
    void checkContent(const Node& node, ItemKind kind) const;
    void checkParts() const;
    void checkParents(const WindowSpec& window, const std::vector<Node>& nodes) const;

    Resource& m_resource;
    Rect m_screen;
    std::vector<std::string> m_files;
    Node m_sections; ///< sections of all files joined: "texts" of two files become one object
    std::set<std::string> m_included;
    mutable int m_partsUsed = 0; ///< limits what parts inside parts can grow to
};

} // namespace zm
