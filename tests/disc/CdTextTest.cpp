// Texts of CD-TEXT in the character set that its packs name.
#include "services/disc/image/CdText.h"
#include "services/disc/image/DiscSheet.h"

#include <gtest/gtest.h>

using namespace zm::disc::image;

namespace {

/** Packs of one type whose texts lie one behind the other. */
std::string cdTextPacks(unsigned char type, unsigned char block, std::string texts) {
    std::string packs;
    texts.resize((texts.size() + 11) / 12 * 12);
    for (size_t at = 0; at < texts.size(); at += 12) {
        std::string pack{static_cast<char>(type), '\0', static_cast<char>(at / 12), static_cast<char>(block)};
        pack += texts.substr(at, 12);
        const uint16_t sum = cdTextSum(pack);
        packs += pack + static_cast<char>(sum >> 8) + static_cast<char>(sum & 0xFF);
    }
    return packs;
}

DiscSheet sheetOfTwo() {
    DiscSheet sheet;
    for (const int number : {1, 2}) {
        sheet.tracks.push_back({number, *trackFormat("AUDIO"), {}, {}, {}, {}});
    }
    return sheet;
}

constexpr const char* sungTitle = "\x8D\xF7\x82\xCC\x96\xD8\x82\xCC\x89\xBA\x82\xC5";
constexpr const char* sungLine =
    "\x82\xA0\x82\xC8\x82\xBD\x82\xF0\x91\xD2\x82\xC1\x82\xC4\x82\xA2\x82\xDC\x82\xB5\x82\xBD";
constexpr unsigned char TwoByteBlock = 0x80;

} // namespace

TEST(CdText, SumsAreThoseOfTheStandard) {
    // A register of 16 bits, x^16 + x^12 + x^5 + 1, inverted.
    EXPECT_EQ(cdTextSum(std::string("123456789", 9)), static_cast<uint16_t>(~0x31C3));
    EXPECT_EQ(cdTextSum(std::string(16, '\0')), 0xFFFF);
}

TEST(CdText, TextsOfTwoBytesAreReadInTheCharacterSetOfTheDisc) {
    const std::string end(2, '\0');
    const std::string titles = std::string(sungTitle) + end + sungLine + end + sungTitle + sungLine + end;
    DiscSheet sheet = sheetOfTwo();
    const std::string sizes = cdTextPacks(0x8F, 0, std::string("\x80\x01\x02", 3));
    const auto added = addCdText(sheet, sizes + cdTextPacks(0x80, TwoByteBlock, titles));
    ASSERT_TRUE(added) << added.error();
    EXPECT_EQ(sheet.title, "桜の木の下で");
    EXPECT_EQ(sheet.tracks[0].title, "あなたを待っていました");
    EXPECT_EQ(sheet.tracks[1].title, "桜の木の下であなたを待っていました");
}

TEST(CdText, WithoutASetItIsLatin) {
    DiscSheet sheet = sheetOfTwo();
    ASSERT_TRUE(addCdText(sheet, cdTextPacks(0x80, 0, std::string("Disc\0Caf\xE9\0\t\0", 12))));
    EXPECT_EQ(sheet.title, "Disc");
    EXPECT_EQ(sheet.tracks[0].title, "Café");
    EXPECT_EQ(sheet.tracks[1].title, "Café") << "a tab stands for the text before";
}
