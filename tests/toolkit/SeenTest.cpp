// What the pages say of themselves to those who look for words and touch what they find.

#include "SceneFixture.h"

#include "platform/linux/toolkit/FontBook.h"

using namespace zm::test;
using nlohmann::json;
using testing::ElementsAre;
using zm::Rect;

namespace {

class Seen : public testing::Test {
protected:
    std::vector<json> entries(int id) const {
        std::vector<json> found;
        for (const json& entry : stage.scene->describeSeen()) {
            if (entry.at("item") == id) {
                found.push_back(entry);
            }
        }
        return found;
    }

    Stage stage{resourceDir + "DISC.zmrc_device"};
};

TEST_F(Seen, aKeyIsTouchedInItsMiddle) {
    stage.scene->showWindow(6, true);
    const auto found = entries(6521);
    ASSERT_EQ(found.size(), 1u);
    const Rect box = stage.rect(6, 6521);
    EXPECT_EQ(found[0].at("touch"), json({box.x + box.w / 2, box.y + box.h / 2}));
    EXPECT_EQ(found[0].at("rect"), json({box.x, box.y, box.w, box.h}));
}

TEST_F(Seen, ofAListOnlyTheRowsInView) {
    CUI_BtList& list = *stage.list(24);
    stage.fill(list, 20);
    list.SetTopIndex(3, 1, 0, 0, 0);
    stage.scene->showWindow(24, true);
    std::vector<std::string> texts;
    const Rect box = stage.rect(24, 2000);
    for (const json& entry : entries(2000)) {
        texts.push_back(entry.at("text"));
        ASSERT_TRUE(entry.contains("touch")) << texts.back();
        EXPECT_EQ(entry.at("touch").at(0), box.x + box.w / 2);
        EXPECT_TRUE(box.contains(entry.at("touch").at(0), entry.at("touch").at(1)));
    }
    EXPECT_THAT(texts, ElementsAre("4  Song", "5  Song", "6  Song", "7  Song", "8  Song"));
}

TEST(Drawable, cutsATextOnlyWhereItIsTooLong) {
    const std::string whole = std::string(598, 'a') + "\u00E4";
    EXPECT_EQ(zm::drawable(whole), whole);
    EXPECT_EQ(zm::drawable(whole + "b"), std::string(598, 'a')) << "and never within a letter";
}

} // namespace
