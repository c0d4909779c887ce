#include "BuildPaths.h"
#include "parts/NumberPad.h"
#include "platform/linux/toolkit/Resource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>

namespace zm::test {

/** The numbers that the main view's code names are those of its resource file. */
class ResourceIds : public testing::Test {
protected:
    static constexpr int FIRST_OF_THE_PAGES = 20001; ///< from here on the application does not know the ids
    static constexpr const char* HEADERS[] = {"DiscViewItems.h", "parts/NumberPad.h", "parts/SourceGroup.h",
                                              "parts/StatusBar.h"};

    ResourceIds() {
        for (const char* header : HEADERS) {
            readNames(std::string(ZM_SOURCE_DIR) + "/mpu/apps/Platen/" + header);
        }
        auto resource = loadResource(std::string(ZM_SOURCE_DIR) + "/resources/DISC.zmrc_device", 800, 480);
        if (resource) {
            m_resource = std::move(*resource);
        } else {
            ADD_FAILURE() << resource.error();
        }
    }

    /** Numbers whose name begins with one of the beginnings, and their names. */
    std::map<int, std::string> named(std::initializer_list<const char*> beginnings) const {
        std::map<int, std::string> found;
        for (const auto& [name, number] : m_names) {
            for (const char* beginning : beginnings) {
                if (name.starts_with(beginning)) {
                    found.emplace(number, name);
                }
            }
        }
        return found;
    }
    std::map<int, std::string> items() const {
        return named({"ITEM_", "BTN_", "PARK_CTRL_", "GOTO_KEY_", "GOTO_ITEM_", "SRC_CTRL_", "OSD_ITEM_"});
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
        const std::regex definition(R"(\b([A-Z][A-Z0-9_]+) = (\d+))");
        for (std::string line; std::getline(file, line);) {
            for (std::sregex_iterator it(line.begin(), line.end(), definition), end; it != end; ++it) {
                m_names[(*it)[1]] = std::stoi((*it)[2]);
            }
        }
    }

    std::map<std::string, int> m_names;
};

TEST_F(ResourceIds, EveryNamedPageIsThereAndEveryPageNamed) {
    std::set<int> pages;
    for (const WindowSpec& window : m_resource.windows) {
        pages.insert(window.id);
    }
    std::set<int> names;
    for (const auto& [number, name] : named({"WND_", "GOTO_WINDOW"})) {
        names.insert(number);
    }
    EXPECT_THAT(names, testing::ContainerEq(pages));
}

TEST_F(ResourceIds, EveryNamedItemIsOnAPage) {
    const std::set<int> ids = itemsOfTheResource();
    ASSERT_GT(items().size(), 60u);
    for (const auto& [number, name] : items()) {
        EXPECT_TRUE(ids.contains(number)) << name << " = " << number;
    }
}

TEST_F(ResourceIds, EveryItemThatTheApplicationMayKnowIsNamed) {
    auto names = items();
    for (int key = GOTO_KEY_1; key <= GOTO_KEY_9; ++key) {
        names.emplace(key, "a digit");
    }
    for (const int id : itemsOfTheResource()) {
        EXPECT_TRUE(id >= FIRST_OF_THE_PAGES || names.contains(id)) << id;
    }
}

TEST_F(ResourceIds, EveryNamedTextAndPictureIsThere) {
    const auto texts = named({"TXT_"});
    ASSERT_GE(texts.size(), 10u);
    for (const auto& [number, name] : texts) {
        EXPECT_TRUE(m_resource.texts.contains(number)) << name << " = " << number;
    }
    const auto icons = named({"ICON_"});
    ASSERT_GE(icons.size(), 15u);
    for (const auto& [number, name] : icons) {
        EXPECT_TRUE(number == 0 || m_resource.pictures.contains(number)) << name << " = " << number;
    }
}

} // namespace zm::test
