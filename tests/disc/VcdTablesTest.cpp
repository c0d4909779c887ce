// What the tables of a VCD say of its pictures, entries and lists.
#include "services/disc/medium/VcdTables.h"

#include <gtest/gtest.h>

using namespace zm::disc::medium;
using namespace zm::disc::model;
using namespace std::chrono_literals;

namespace {

std::string tableNumber(uint32_t value, size_t bytes) {
    std::string text;
    for (size_t i = bytes; i > 0; --i) {
        text += static_cast<char>(value >> 8 * (i - 1) & 0xFF);
    }
    return text;
}

/** Everything is there. */
class NamedItems : public VcdItems {
public:
    std::optional<ListItem> track(int number) const override {
        return ListItem{"track " + std::to_string(number), 0, 0ms, false};
    }
    std::optional<ListItem> entry(size_t number) const override {
        return ListItem{"entry " + std::to_string(number), 0, 0ms, false};
    }
    std::optional<ListItem> segment(int number) const override {
        return ListItem{"segment " + std::to_string(number), -1, 0ms, false};
    }
};

/** A disc's description with so many segments of these kinds, the first at the fourth second. */
std::string vcdInfo(const std::string& kinds) {
    std::string info(2048, '\0');
    info.replace(0, 8, "VIDEO_CD");
    info.replace(44, 4, tableNumber(4711, 4));
    info.replace(48, 3, std::string("\x00\x04\x00", 3));
    info.replace(51, 1, "\x08");
    info.replace(54, 2, tableNumber(static_cast<uint32_t>(kinds.size()), 2));
    info.replace(56, kinds.size(), kinds);
    return info;
}

/** A menu with one choice, of which each number has another value. */
std::string vcdMenu(uint32_t wait, uint32_t item) {
    return tableNumber(0x18, 1) + tableNumber(0, 1) + tableNumber(1, 1) + tableNumber(7, 1) +
           tableNumber(0, 2) + tableNumber(0xFFFF, 2) + tableNumber(0xFFFF, 2) + tableNumber(0xFFFF, 2) +
           tableNumber(0, 2) + tableNumber(0xFFFF, 2) + tableNumber(wait, 1) + tableNumber(0x83, 1) +
           tableNumber(item, 2) + tableNumber(0, 2);
}

PlayList firstVcdList(const std::string& list) {
    const auto lists = readPlayLists(tableNumber(0, 4), list, 8, NamedItems()).lists;
    EXPECT_EQ(lists.size(), 1u);
    return lists.empty() ? PlayList{} : lists[0];
}

} // namespace

TEST(VcdTables, SegmentsStandOrMoveAsTheirKindSays) {
    const auto info = readVcdInfo(vcdInfo(std::string("\x04\x0C\x1C\x20\x08", 5)), "");
    ASSERT_TRUE(info);
    EXPECT_EQ(info->listBytes, 4711u);
    EXPECT_EQ(info->unit, 8u);
    ASSERT_EQ(info->segments.size(), 4u) << "one takes two places";
    EXPECT_TRUE(info->segments.at(0).still);
    EXPECT_FALSE(info->segments.at(1).still) << "of 30 pictures a second";
    EXPECT_FALSE(info->segments.at(2).still) << "of 25 pictures a second";
    EXPECT_TRUE(info->segments.at(4).still);
    EXPECT_EQ(info->segments.at(0).sector, 150u);
    EXPECT_EQ(info->segments.at(2).sector, 450u);
    EXPECT_EQ(info->segments.at(1).sectors, 150u);
    EXPECT_EQ(info->segments.at(2).sectors, 300u);
}

TEST(VcdTables, EntriesAreAsManyAsTheTableCounts) {
    const std::string entries = "ENTRYVCD" + tableNumber(0, 2) + tableNumber(2, 2) +
                                tableNumber(0x02000400, 4) + tableNumber(0x12010203, 4) +
                                tableNumber(0x03000500, 4);
    const auto info = readVcdInfo(vcdInfo(""), entries);
    ASSERT_TRUE(info);
    ASSERT_EQ(info->entries.size(), 2u);
    EXPECT_EQ(info->entries[0].track, 2);
    EXPECT_EQ(info->entries[0].sector, 150u);
    EXPECT_EQ(info->entries[1].track, 12);
    EXPECT_EQ(info->entries[1].sector, 62u * 75 + 3 - 150);
    EXPECT_EQ(readVcdInfo(vcdInfo(""), entries.substr(0, 18))->entries.size(), 1u) << "the second is cut off";
}

TEST(VcdTables, AMenuHasNumbersFromTheOneThatItNames) {
    const PlayList menu = firstVcdList(vcdMenu(60, 2));
    EXPECT_EQ(menu.kind, PlayList::Kind::Menu);
    EXPECT_EQ(menu.firstNumber, 7);
    EXPECT_EQ(menu.choices.size(), 1u);
    EXPECT_EQ(menu.choices.at(0), 0u);
    EXPECT_EQ(menu.standard, 0u);
    EXPECT_FALSE(menu.next);
    EXPECT_FALSE(menu.timeout);
    EXPECT_EQ(menu.plays, 3) << "the bit above says something else";
}

TEST(VcdTables, AWaitIsSecondsThenTensThenForEver) {
    EXPECT_EQ(firstVcdList(vcdMenu(0, 2)).wait, 0s);
    EXPECT_EQ(firstVcdList(vcdMenu(60, 2)).wait, 60s);
    EXPECT_EQ(firstVcdList(vcdMenu(61, 2)).wait, 70s);
    EXPECT_EQ(firstVcdList(vcdMenu(254, 2)).wait, 2000s);
    EXPECT_FALSE(firstVcdList(vcdMenu(255, 2)).wait);
}

TEST(VcdTables, NumbersOfItemsNameTracksEntriesAndSegments) {
    const auto name = [](uint32_t item) {
        const auto items = firstVcdList(vcdMenu(0, item)).items;
        return items.empty() ? "nothing" : items[0].path;
    };
    EXPECT_EQ(name(1), "nothing");
    EXPECT_EQ(name(2), "track 2");
    EXPECT_EQ(name(99), "track 99");
    EXPECT_EQ(name(100), "entry 0");
    EXPECT_EQ(name(599), "entry 499");
    EXPECT_EQ(name(600), "nothing");
    EXPECT_EQ(name(999), "nothing");
    EXPECT_EQ(name(1000), "segment 0");
    EXPECT_EQ(name(2979), "segment 1979");
    EXPECT_EQ(name(2980), "nothing");
}

TEST(VcdTables, AListOfItemsSaysHowLongItLasts) {
    const std::string list = tableNumber(0x10, 1) + tableNumber(2, 1) + tableNumber(0, 2) +
                             tableNumber(0xFFFF, 2) + tableNumber(0, 2) + tableNumber(0xFFFF, 2) +
                             tableNumber(45, 2) + tableNumber(5, 1) + tableNumber(0, 1) + tableNumber(2, 2) +
                             tableNumber(1000, 2);
    const PlayList items = firstVcdList(list);
    EXPECT_EQ(items.kind, PlayList::Kind::Items);
    EXPECT_EQ(items.length, 3s);
    EXPECT_EQ(items.wait, 5s);
    EXPECT_EQ(items.next, 0u);
    EXPECT_FALSE(items.previous);
    ASSERT_EQ(items.items.size(), 2u);
    EXPECT_EQ(items.items[1].path, "segment 0");
}
