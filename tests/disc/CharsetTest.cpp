#include "services/disc/text/Charset.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <memory>

using namespace zm::disc::text;

namespace {

std::string encode(const std::string& utf8, const char* charset) {
    gsize size = 0;
    std::unique_ptr<char, void (*)(void*)> bytes(
        g_convert(utf8.data(), static_cast<gssize>(utf8.size()), charset, "UTF-8", nullptr, &size, nullptr),
        g_free);
    EXPECT_TRUE(bytes) << utf8 << " in " << charset;
    return bytes ? std::string(bytes.get(), size) : std::string();
}

struct Sample {
    const char* charset;
    const char* text;
};

std::ostream& operator<<(std::ostream& out, const Sample& sample) {
    return out << sample.charset << " " << sample.text;
}

class CharsetOfOneText : public testing::TestWithParam<Sample> {};

} // namespace

TEST_P(CharsetOfOneText, IsRecognised) {
    const auto [charset, text] = GetParam();
    CharsetRepair repair;
    const std::string bytes = encode(text, charset);
    repair.learn(bytes);
    EXPECT_EQ(repair.toUtf8(bytes), text);
}

INSTANTIATE_TEST_SUITE_P(
    Names, CharsetOfOneText,
    testing::Values(
        Sample{"GBK", "月亮代表我的心"}, Sample{"GBK", "我的祖国"}, Sample{"GBK", "周杰伦 - 七里香.mp3"},
        Sample{"GBK", "甜蜜蜜"}, Sample{"GBK", "爱情买卖"}, Sample{"GBK", "01 童年.mp3"},
        Sample{"BIG5", "愛的代價"}, Sample{"BIG5", "鄧麗君 - 甜蜜蜜"}, Sample{"BIG5", "聽海"},
        Sample{"BIG5", "我們的歌"}, Sample{"CP932", "さくら"}, Sample{"CP932", "世界に一つだけの花"},
        Sample{"CP932", "夜空ノムコウ"}, Sample{"CP932", "君の名は。"}, Sample{"CP949", "사랑해요"},
        Sample{"CP949", "아리랑"}, Sample{"CP949", "비와 당신"}, Sample{"CP1251", "Катюша"},
        Sample{"CP1251", "Подмосковные вечера"}, Sample{"CP1251", "Кино - Группа крови"},
        Sample{"CP1251", "КАТЮША"}, Sample{"GBK", "红蜻蜓"}, Sample{"GBK", "茉莉花"}, Sample{"GBK", "梁祝"},
        Sample{"BIG5", "望春風"}, Sample{"BIG5", "雨夜花"}, Sample{"CP949", "강남스타일"},
        Sample{"CP932", "春よ、来い"},

        Sample{"CP1252", "Für Elise"}, Sample{"CP1252", "Édith Piaf - La vie en rose"},
        Sample{"CP1252", "Señorita"}, Sample{"CP1252", "Smörgåsbord"}, Sample{"CP1252", "Père Noël"}));

TEST(CharsetRepair, Utf8AndAsciiStayAsTheyAre) {
    CharsetRepair repair;
    for (const char* text : {"plain", "Überfahrt", "晨光", "Катюша", "طريق"}) {
        EXPECT_EQ(repair.toUtf8(text), text);
    }
}

TEST(CharsetRepair, TheRestOfTheDiscDecidesForAShortName) {
    // These two bytes are a word in several character sets.
    const std::string bytes = encode("雨", "GBK");
    CharsetRepair chinese;
    for (const char* name : {"月亮代表我的心", "我的祖国", "甜蜜蜜", "爱情买卖"}) {
        chinese.learn(encode(name, "GBK"));
    }
    EXPECT_EQ(chinese.toUtf8(bytes), "雨");

    CharsetRepair russian;
    for (const char* name : {"Катюша", "Подмосковные вечера", "Группа крови", "Звезда по имени Солнце"}) {
        russian.learn(encode(name, "CP1251"));
    }
    EXPECT_EQ(russian.toUtf8(encode("Он", "CP1251")), "Он");
}

TEST(CharsetRepair, BytesOfNoCharacterSetBecomeReadableText) {
    CharsetRepair repair;
    const std::string text = repair.toUtf8("\xFF\xFE\x81\x8D name");
    EXPECT_TRUE(g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr));
    EXPECT_NE(text.find("name"), std::string::npos);
}

TEST(CharsetRepair, EveryByteSequenceGivesValidText) {
    CharsetRepair repair;
    unsigned state = 1;
    for (int round = 0; round < 500; ++round) {
        std::string bytes;
        for (int i = 0; i < round % 20; ++i) {
            state = state * 1103515245u + 12345u;
            bytes.push_back(static_cast<char>(state >> 16));
        }
        repair.learn(bytes);
        const std::string text = repair.toUtf8(bytes);
        ASSERT_TRUE(g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr));
        ASSERT_EQ(text.find('\n'), std::string::npos);
    }
}

TEST(CleanText, DropsControlCharactersAndBlanksAtTheEnds) {
    EXPECT_EQ(cleanText("  a\tb\nc\x7F  "), "abc");
    EXPECT_EQ(cleanText("   "), "");
    EXPECT_EQ(cleanText(""), "");
    EXPECT_EQ(cleanText("two words"), "two words");
}
