// The two resource files hold every page, item, text and picture that the application addresses.

#include "SceneFixture.h"

#include "platform/linux/toolkit/Resource.h"

#include <map>
#include <set>

using namespace zm::test;

namespace {

struct PageItems {
    const char* file;
    int window;
    std::vector<int> items;
};

const std::vector<int> statusItems = {8, 11, 12, 15, 17, 20};
const std::vector<int> sourceItems = {101, 99, 103, 105, 106, 107, 111, 118, 119};
const std::vector<int> listItems = {3,    5,    503,  504,  505,  506,  542,  545,  546,  500, 501,
                                    5002, 2000, 2003, 2071, 2073, 6505, 6545, 6003, 6004, 6005};
const std::vector<int> padItems = {510, 511, 512, 513, 514, 515, 516, 517, 518, 519, 520, 523, 527, 531, 4};

std::vector<PageItems> pages() {
    std::vector<int> folder = listItems;
    folder.insert(folder.end(), {1012, 1013});
    std::vector<int> goTo = padItems;
    goTo.insert(goTo.end(), {3, 5});
    return {
        {"DISC", 1, {3, 5, 7003, 7004}},
        {"DISC",
         6,
         {3, 5, 2061, 2063, 2065, 2067, 2068, 2069, 2075, 6503, 6504, 6508, 6521, 6522, 6523, 6524, 6525}},
        {"DISC", 10, {3, 4, 5, 2103}},
        {"DISC", 17, {}},
        {"DISC", 20, goTo},
        {"DISC", 22, {3, 5, 7034}},
        {"DISC", 24, listItems},
        {"DISC", 25, folder},
        {"DISC", 27, {3, 5, 542, 2000, 2071, 2073, 6505, 6545, 6003, 6004, 6005}},
        {"OVERLAY", 1, {3,    4,    5,    2067, 2068, 2069, 2078, 2152, 2154, 2155, 6503, 6504, 6505, 6506,
                        6507, 5007, 5008, 6521, 6522, 6523, 6524, 6525, 6535, 6551, 6555, 6556, 6557, 6558}},
        {"OVERLAY",
         2,
         {4, 5, 2067, 2068, 2069, 2078, 2152, 2155, 6503, 6504, 6505, 6506, 6521, 6522, 6523, 6524, 6525,
          6551, 6603}},
        {"OVERLAY", 4, {3,    4,    5,    2067, 2068, 2069, 2078, 2152, 2155, 6503, 6504, 6505, 6506,
                        6507, 5007, 5008, 6521, 6522, 6523, 6524, 6525, 6535, 6551, 6558, 6561}},
        {"OVERLAY", 11, {4, 5, 2078, 2152, 2155, 6521, 6522, 6523, 6524, 6571, 6574}},
        {"OVERLAY", 20, padItems},
    };
}

const zm::WindowSpec* find(const zm::Resource& resource, int id) {
    for (const zm::WindowSpec& window : resource.windows) {
        if (window.id == id) {
            return &window;
        }
    }
    return nullptr;
}

TEST(ResourceFiles, everyPageHoldsTheItemsThatTheApplicationAddresses) {
    const std::map<std::string, zm::Resource> files = {{"DISC", readResource("DISC")},
                                                       {"OVERLAY", readResource("OVERLAY")}};
    for (const PageItems& page : pages()) {
        const zm::WindowSpec* window = find(files.at(page.file), page.window);
        ASSERT_TRUE(window) << page.file << " " << page.window;
        std::set<int> present;
        for (const zm::ItemSpec& item : window->items) {
            present.insert(item.id);
        }
        std::vector<int> wanted = page.items;
        if (std::string(page.file) == "DISC" || page.window != 20) {
            wanted.insert(wanted.end(), statusItems.begin(), statusItems.end());
            wanted.insert(wanted.end(), sourceItems.begin(), sourceItems.end());
        }
        for (const int id : wanted) {
            EXPECT_TRUE(present.contains(id)) << page.file << " page " << page.window << " item " << id;
        }
    }
}

TEST(ResourceFiles, everyTextExistsInEveryLanguage) {
    const int ids[] = {30,  33,  34,  70,  71,  72,  107, 110, 112, 113, 114, 129, 133,   154,   155,  156,
                       157, 160, 161, 162, 163, 164, 166, 167, 168, 169, 170, 171, 13007, 13067, 14122};
    for (const char* file : {"DISC", "OVERLAY"}) {
        const zm::Resource resource = readResource(file);
        EXPECT_EQ(resource.languages, (std::vector<std::string>{"en", "de", "zh", "ar"}));
        for (const int id : ids) {
            EXPECT_TRUE(resource.texts.contains(id)) << file << " text " << id;
        }
        for (const auto& [id, versions] : resource.texts) {
            for (const std::string& version : versions) {
                EXPECT_FALSE(version.empty()) << file << " text " << id;
            }
        }
    }
}

TEST(ResourceFiles, everyPictureExists) {
    std::vector<int> ids = {53,  54,  55,  80,  83,  84,  85,  86,  87,  88,  90,  94, 95,
                            125, 133, 134, 137, 138, 139, 140, 143, 161, 162, 165, 166};
    for (int id = 256; id <= 277; ++id) {
        ids.push_back(id);
    }
    for (const char* file : {"DISC", "OVERLAY"}) {
        const zm::Resource resource = readResource(file);
        for (const int id : ids) {
            EXPECT_TRUE(resource.pictures.contains(id)) << file << " picture " << id;
        }
    }
}

TEST(ResourceFiles, bothFilesLoadAsScenes) {
    for (const char* file : {"DISC", "OVERLAY"}) {
        Recorder recorder;
        const auto scene =
            zm::Scene::load(resourceDir + file + ".zmrc_device", fontDir, width, height, recorder);
        EXPECT_TRUE(scene) << scene.error();
    }
}

TEST(ResourceFiles, listControlsAreItem2000OfTheThreeListPages) {
    Stage stage(resourceDir + "DISC.zmrc_device");
    for (const int window : {24, 25, 27}) {
        EXPECT_TRUE(stage.list(window)) << window;
    }
    EXPECT_FALSE(stage.list(6));
}

} // namespace
