// What stands in the place of a list's rows: seen exactly while there are none.
#include "SceneFixture.h"

namespace zm::test {

namespace {

constexpr int tracksPage = 27;
constexpr int sentence = 20146;

class EmptyList : public testing::Test {
protected:
    EmptyList() {
        stage.scene->showWindow(tracksPage, true);
        stage.paint();
    }
    bool sentenceSeen() const {
        bool seen = false;
        for (const auto& entry : stage.scene->describeSeen()) {
            seen = seen || entry.at("item") == sentence;
        }
        return seen;
    }
    /** The page as it would be drawn all anew. */
    std::vector<uint8_t> allAnew() {
        stage.paint();
        const auto drawn = stage.pixels;
        stage.scene->invalidate();
        stage.paint();
        return std::exchange(stage.pixels, drawn);
    }

    Stage stage{resourceDir + "DISC.zmrc_device"};
    CUI_BtList* list = stage.list(tracksPage);
};

TEST_F(EmptyList, saysSoUntilTheFirstRowIsThere) {
    EXPECT_TRUE(sentenceSeen());
    const auto empty = stage.pixels;
    stage.fill(*list, 1);
    EXPECT_FALSE(sentenceSeen());
    EXPECT_EQ(stage.item(tracksPage, sentence)["visible"], false);
    EXPECT_EQ(stage.pixels, empty) << "before it is painted";
    EXPECT_EQ(allAnew(), stage.pixels) << "and nothing of the sentence is left";
    EXPECT_NE(stage.pixels, empty);
    stage.fill(*list, 2);
    EXPECT_FALSE(sentenceSeen());
}

TEST_F(EmptyList, saysSoAgainWhenItsRowsAreTaken) {
    const auto empty = stage.pixels;
    stage.fill(*list, 7);
    stage.paint();
    list->DeleteAllItems();
    EXPECT_TRUE(sentenceSeen());
    stage.paint();
    EXPECT_EQ(stage.pixels, empty);
}

TEST_F(EmptyList, staysAsItIsWhereThePageIsNotSeen) {
    stage.scene->showWindow(6, true);
    stage.paint();
    stage.fill(*list, 3);
    EXPECT_TRUE(stage.paint().empty());
    stage.scene->showWindow(tracksPage, true);
    EXPECT_FALSE(sentenceSeen());
}

TEST_F(EmptyList, asAFileThatIsReadAgainSays) {
    const TemporaryFolder changed;
    const std::string pages = changed.path() + "/pages/";
    std::filesystem::copy(resourceDir, pages, std::filesystem::copy_options::recursive);
    const std::string file = pages + "DISC.zmrc_device";
    std::string whole;
    {
        std::ifstream stream(file);
        whole.assign(std::istreambuf_iterator<char>(stream), {});
    }
    const size_t from = whole.find("                {\"id\": 20146");
    ASSERT_NE(from, std::string::npos);
    std::string without = whole;
    without.erase(from, whole.find("                {\"id\": 20147", from) - from);
    std::ofstream(file) << without;
    Stage edited(file);
    edited.scene->showWindow(tracksPage, true);
    edited.fill(*edited.list(tracksPage), 2);
    std::ofstream(file) << whole;
    const auto status = edited.scene->reload();
    ASSERT_TRUE(status) << status.error();
    EXPECT_EQ(edited.item(tracksPage, sentence)["visible"], false) << "it comes to a list that has rows";
    edited.list(tracksPage)->DeleteAllItems();
    EXPECT_EQ(edited.item(tracksPage, sentence)["visible"], true);
}

} // namespace

} // namespace zm::test
