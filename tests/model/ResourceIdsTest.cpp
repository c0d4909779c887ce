#include "BuildPaths.h"
#include "parts/NumberPad.h"
#include "platform/linux/toolkit/Resource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace zm::test {

/** A resource file, the headers that name its numbers (a name for another name comes later), and how the names begin. */
struct Named {
    using Beginnings = std::vector<std::string>;

    std::string file;
    std::vector<std::string> headers;
    Beginnings pages;
    Beginnings items;
    Beginnings texts;
    Beginnings pictures;
};

/** The numbers that the code of a view names are those of its resource file. */
class ResourceIds : public testing::TestWithParam<Named> {
protected:
    static constexpr int FIRST_OF_THE_PAGES = 20001; ///< from here on the application does not know the ids

    ResourceIds() {
        for (const std::string& header : GetParam().headers) {
            readNames(std::string(ZM_SOURCE_DIR) + "/mpu/apps/Platen/" + header);
        }
        auto resource = loadResource(std::string(ZM_SOURCE_DIR) + "/resources/" + GetParam().file, 800, 480);
        if (resource) {
            m_resource = std::move(*resource);
        } else {
            ADD_FAILURE() << resource.error();
        }
    }

    /** Numbers whose name begins with one of the beginnings, and their names. */
    std::map<int, std::string> named(const Named::Beginnings& beginnings) const {
        std::map<int, std::string> found;
        for (const auto& [name, number] : m_names) {
            for (const std::string& beginning : beginnings) {
                if (name.starts_with(beginning)) {
                    found.emplace(number, name);
                }
            }
        }
        return found;
    }
    /** With the pad's digits, of which only the first and the last have a name. */
    std::map<int, std::string> items() const {
        auto found = named(GetParam().items);
        for (int key = GOTO_KEY_1; key <= GOTO_KEY_9; ++key) {
            found.emplace(key, "a digit");
        }
        return found;
    }

    std::set<int> itemsOfTheResource() const {
        std::set<int> ids;
        for (const WindowSpec& window : m_resource.windows) {
            for (const ItemSpec& item : window.items) {
                ids.insert(item.id);
            }
        }
        return ids;
    }

    Resource m_resource;

private:
    void readNames(const std::string& header) {
        std::ifstream file(header);
        ASSERT_TRUE(file) << header;
        const std::regex definition(R"(\b([A-Z][A-Z0-9_]+) = (\w+))");
        for (std::string line; std::getline(file, line);) {
            for (std::sregex_iterator it(line.begin(), line.end(), definition), end; it != end; ++it) {
                const std::string value = (*it)[2];
                if (std::isdigit(static_cast<unsigned char>(value[0]))) {
                    m_names[(*it)[1]] = std::stoi(value);
                } else if (m_names.contains(value)) {
                    m_names[(*it)[1]] = m_names[value];
                }
            }
        }
    }

    std::map<std::string, int> m_names;
};

TEST_P(ResourceIds, EveryNamedPageIsThereAndEveryPageNamed) {
    std::set<int> pages;
    for (const WindowSpec& window : m_resource.windows) {
        pages.insert(window.id);
    }
    std::set<int> names;
    for (const auto& [number, name] : named(GetParam().pages)) {
        names.insert(number);
    }
    EXPECT_THAT(names, testing::ContainerEq(pages));
}

TEST_P(ResourceIds, EveryNamedItemIsOnAPage) {
    const std::set<int> ids = itemsOfTheResource();
    ASSERT_GT(items().size(), 40u);
    for (const auto& [number, name] : items()) {
        EXPECT_TRUE(ids.contains(number)) << name << " = " << number;
    }
}

TEST_P(ResourceIds, EveryItemThatTheApplicationMayKnowIsNamed) {
    const auto names = items();
    for (const int id : itemsOfTheResource()) {
        EXPECT_TRUE(id >= FIRST_OF_THE_PAGES || names.contains(id)) << id;
    }
}

TEST_P(ResourceIds, EveryNamedTextAndPictureIsThere) {
    const auto texts = named(GetParam().texts);
    ASSERT_GE(texts.size(), 5u);
    for (const auto& [number, name] : texts) {
        EXPECT_TRUE(m_resource.texts.contains(number)) << name << " = " << number;
    }
    const auto icons = named(GetParam().pictures);
    ASSERT_GE(icons.size(), 5u);
    for (const auto& [number, name] : icons) {
        EXPECT_TRUE(number == 0 || m_resource.pictures.contains(number)) << name << " = " << number;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Each, ResourceIds,
    testing::Values(
        Named{"DISC.zmrc_device",
              {"parts/NumberPad.h", "parts/SourceGroup.h", "parts/StatusBar.h", "DiscViewItems.h"},
              {"WND_", "GOTO_WINDOW"},
              {"ITEM_", "BTN_", "PARK_CTRL_", "GOTO_KEY_", "GOTO_ITEM_", "OSD_CTRL_SRC_", "OSD_ITEM_"},
              {"TXT_"},
              {"ICON_"}},
        Named{"OVERLAY.zmrc_device",
              {"parts/NumberPad.h", "parts/SourceGroup.h", "parts/StatusBar.h", "DiscViewItems.h",
               "DiscOsdIds.h"},
              {"OSD_WND_", "GOTO_WINDOW"},
              {"OSD_ITEM_", "OSD_CTRL_", "OSD_ITEM_SRC_GROUP", "GOTO_KEY_", "GOTO_ITEM_", "OSD_CTRL_SRC_"},
              {"OSD_TXT_"},
              {"OSD_PIC_"}}),
    [](const auto& named) { return named.param.file.substr(0, named.param.file.find('.')); });

} // namespace zm::test
