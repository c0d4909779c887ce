#include "platform/linux/pps/DataTree.h"
#include "sys/pps.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class DecoderTest : public testing::Test {
protected:
    DecoderTest() { pps_decoder_initialize(&decoder, nullptr); }
    ~DecoderTest() override { pps_decoder_cleanup(&decoder); }
    pps_decoder_error_t json(const std::string& source) {
        return pps_decoder_parse_json_str(&decoder, source.c_str());
    }
    pps_decoder_error_t status() { return pps_decoder_status(&decoder, false); }

    pps_decoder_t decoder{};
    int number = -77;
    const char* text = nullptr;
};

TEST_F(DecoderTest, ParsePushGetsAndPopEndWithoutAnError) {
    ASSERT_EQ(json("{\"repeat\":2,\"name\":\"x\",\"scan\":0}"), PPS_DECODER_OK);
    EXPECT_EQ(pps_decoder_push(&decoder, nullptr), PPS_DECODER_OK);
    EXPECT_EQ(pps_decoder_get_int(&decoder, "scan", &number), PPS_DECODER_OK);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(pps_decoder_get_int(&decoder, "repeat", &number), PPS_DECODER_OK)
        << "the whole container is searched";
    EXPECT_EQ(number, 2);
    EXPECT_EQ(pps_decoder_get_string(&decoder, "name", &text), PPS_DECODER_OK);
    EXPECT_STREQ(text, "x");
    EXPECT_EQ(pps_decoder_pop(&decoder), PPS_DECODER_OK);
    EXPECT_EQ(status(), PPS_DECODER_OK);
    EXPECT_EQ(pps_decoder_pop(&decoder), PPS_DECODER_POP_AT_ROOT);
}

TEST_F(DecoderTest, TheFirstErrorStaysThroughLaterSuccesses) {
    json("{\"a\":1,\"b\":\"text\"}");
    pps_decoder_push(&decoder, nullptr);
    EXPECT_EQ(pps_decoder_get_int(&decoder, "missing", &number), PPS_DECODER_NOT_FOUND);
    EXPECT_EQ(pps_decoder_get_int(&decoder, "b", &number), PPS_DECODER_BAD_TYPE);
    EXPECT_EQ(number, -77) << "a failed get leaves its target alone";
    EXPECT_EQ(pps_decoder_get_int(&decoder, "a", &number), PPS_DECODER_OK);
    EXPECT_EQ(number, 1) << "gets still deliver";
    EXPECT_EQ(status(), PPS_DECODER_NOT_FOUND);
    EXPECT_EQ(pps_decoder_status(&decoder, true), PPS_DECODER_NOT_FOUND);
    EXPECT_EQ(status(), PPS_DECODER_OK);
}

TEST_F(DecoderTest, ANewParseClearsTheStatus) {
    EXPECT_EQ(json("{"), PPS_DECODER_PARSE_ERROR);
    EXPECT_EQ(status(), PPS_DECODER_PARSE_ERROR);
    EXPECT_EQ(pps_decoder_push(&decoder, nullptr), PPS_DECODER_NOT_FOUND);
    EXPECT_EQ(json("{}"), PPS_DECODER_OK);
    EXPECT_EQ(status(), PPS_DECODER_OK);
}

TEST_F(DecoderTest, NumbersBecomeIntegersWhereTheyFit) {
    struct Row {
        const char* json;
        pps_decoder_error_t result;
        int value;
    };
    constexpr Row Rows[] = {
        {"12", PPS_DECODER_OK, 12},
        {"-2147483648", PPS_DECODER_OK, -2147483647 - 1},
        {"2147483647", PPS_DECODER_OK, 2147483647},
        {"12.0", PPS_DECODER_OK, 12},
        {"1e2", PPS_DECODER_OK, 100},
        {"2147483648", PPS_DECODER_CONVERSION_FAILED, -77},
        {"-2147483649", PPS_DECODER_CONVERSION_FAILED, -77},
        {"1e300", PPS_DECODER_CONVERSION_FAILED, -77},
        {"18446744073709551615", PPS_DECODER_CONVERSION_FAILED, -77},
        {"99999999999999999999999999", PPS_DECODER_CONVERSION_FAILED, -77},
        {"\"12\"", PPS_DECODER_BAD_TYPE, -77},
        {"true", PPS_DECODER_BAD_TYPE, -77},
        {"null", PPS_DECODER_BAD_TYPE, -77},
        {"{}", PPS_DECODER_BAD_TYPE, -77},
        {"[]", PPS_DECODER_BAD_TYPE, -77},
    };
    for (const auto& row : Rows) {
        ASSERT_EQ(json(row.json), PPS_DECODER_OK) << row.json;
        number = -77;
        EXPECT_EQ(pps_decoder_get_int(&decoder, nullptr, &number), row.result) << row.json;
        EXPECT_EQ(number, row.value) << row.json;
    }
}

TEST_F(DecoderTest, EachGetTakesItsOwnTypeOnly) {
    json("{\"d\":1.5,\"i\":3,\"b\":true,\"s\":\"t\"}");
    pps_decoder_push(&decoder, nullptr);
    double real = 0;
    bool truth = false;
    EXPECT_EQ(pps_decoder_get_double(&decoder, "d", &real), PPS_DECODER_OK);
    EXPECT_EQ(real, 1.5);
    EXPECT_EQ(pps_decoder_get_double(&decoder, "i", &real), PPS_DECODER_OK);
    EXPECT_EQ(real, 3);
    EXPECT_EQ(pps_decoder_get_bool(&decoder, "b", &truth), PPS_DECODER_OK);
    EXPECT_TRUE(truth);
    EXPECT_EQ(pps_decoder_get_double(&decoder, "s", &real), PPS_DECODER_BAD_TYPE);
    EXPECT_EQ(pps_decoder_get_bool(&decoder, "i", &truth), PPS_DECODER_BAD_TYPE);
    EXPECT_EQ(pps_decoder_get_string(&decoder, "i", &text), PPS_DECODER_BAD_TYPE);
}

TEST_F(DecoderTest, ElementsOfAnArrayComeOneAfterTheOther) {
    json("{\"list\":[1,[2],{\"x\":3},4]}");
    pps_decoder_push(&decoder, nullptr);
    EXPECT_EQ(pps_decoder_push_object(&decoder, "list"), PPS_DECODER_BAD_TYPE);
    ASSERT_EQ(pps_decoder_push_array(&decoder, "list"), PPS_DECODER_OK);
    EXPECT_EQ(pps_decoder_type(&decoder, "."), PPS_TYPE_ARRAY);
    EXPECT_EQ(pps_decoder_get_int(&decoder, nullptr, &number), PPS_DECODER_OK);
    EXPECT_EQ(pps_decoder_type(&decoder, nullptr), PPS_TYPE_ARRAY);
    ASSERT_EQ(pps_decoder_push(&decoder, nullptr), PPS_DECODER_OK);
    EXPECT_EQ(pps_decoder_get_int(&decoder, nullptr, &number), PPS_DECODER_OK);
    EXPECT_EQ(number, 2);
    EXPECT_EQ(pps_decoder_pop(&decoder), PPS_DECODER_OK);
    EXPECT_EQ(pps_decoder_type(&decoder, nullptr), PPS_TYPE_OBJECT) << "pop moves to the next element";
    ASSERT_EQ(pps_decoder_push(&decoder, nullptr), PPS_DECODER_OK);
    pps_decoder_pop(&decoder);
    EXPECT_EQ(pps_decoder_get_int(&decoder, nullptr, &number), PPS_DECODER_OK);
    EXPECT_EQ(number, 4);
    EXPECT_EQ(pps_decoder_type(&decoder, nullptr), PPS_TYPE_NONE) << "past the end";
    EXPECT_EQ(pps_decoder_get_int(&decoder, nullptr, &number), PPS_DECODER_NOT_FOUND);
}

TEST_F(DecoderTest, OfSeveralMembersOfOneNameTheFirstCounts) {
    json("{\"a\":1,\"a\":2}");
    pps_decoder_push(&decoder, nullptr);
    pps_decoder_get_int(&decoder, "a", &number);
    EXPECT_EQ(number, 1);
}

TEST_F(DecoderTest, TextsGivenOutAreTheDecodersOwnAndTheCallersStaysAsItWas) {
    const std::string source = "{\"src\":\"zmdisc\"}";
    const std::string before = source;
    json(source);
    pps_decoder_push(&decoder, nullptr);
    pps_decoder_get_string(&decoder, "src", &text);
    EXPECT_EQ(source, before);
    EXPECT_TRUE(text < source.data() || text >= source.data() + source.size());
    EXPECT_STREQ(text, "zmdisc");
}

TEST_F(DecoderTest, WhatIsNoJsonIsAParseError) {
    for (const char* bad : {"", " ", "{", "{\"a\":}", "{\"a\":1}x", "[1,]", "nul", "{\"a\":\"\xff\"}", "'a'",
                            "1e999", "// c\n1"}) {
        EXPECT_EQ(json(bad), PPS_DECODER_PARSE_ERROR) << bad;
    }
    EXPECT_EQ(pps_decoder_parse_json_str(&decoder, nullptr), PPS_DECODER_PARSE_ERROR);
}

TEST_F(DecoderTest, SixtyFourLevelsAreTakenAndOneMoreIsNot) {
    const auto nested = [](size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    EXPECT_EQ(json(nested(64)), PPS_DECODER_OK);
    EXPECT_EQ(json(nested(65)), PPS_DECODER_PARSE_ERROR);
}

TEST_F(DecoderTest, AHundredThousandBracketsAreAnErrorAndNoCrash) {
    EXPECT_EQ(json(std::string(100000, '[')), PPS_DECODER_PARSE_ERROR);
    EXPECT_EQ(json(std::string(100000, '[') + std::string(100000, ']')), PPS_DECODER_PARSE_ERROR);
    std::string objects;
    for (int i = 0; i < 100000; ++i) {
        objects += "{\"a\":";
    }
    EXPECT_EQ(json(objects), PPS_DECODER_PARSE_ERROR);
    std::string attribute = "@a\nx:json:" + std::string(100000, '[') + "\n";
    EXPECT_EQ(pps_decoder_parse_pps_str(&decoder, attribute.data()), PPS_DECODER_PARSE_ERROR);
}

TEST_F(DecoderTest, ANulDoesNotEndAJsonText) {
    zm::DataNode root;
    for (const std::string& source :
         {std::string("123\0", 4), std::string("{}\0x", 4), std::string("\0", 1)}) {
        EXPECT_FALSE(zm::addJson(root, "a", source)) << source.size();
        EXPECT_TRUE(root.children.empty());
    }
    EXPECT_TRUE(zm::addJson(root, "a", "123"));
}

TEST_F(DecoderTest, PpsTextBecomesObjectsWithTypedAttributes) {
    std::string source = "@gps\ncity::Ottawa\nspeed:n:12\nlines:c:a\\nb\\x41\\101\\\\\non:b:true\n"
                         "position:json:{\"x\":[1,2]}\nraw:b64:AAAA\n-old\ncity::Paris\n";
    ASSERT_EQ(pps_decoder_parse_pps_str(&decoder, source.data()), PPS_DECODER_OK);
    ASSERT_EQ(pps_decoder_push(&decoder, "@gps"), PPS_DECODER_OK);
    EXPECT_EQ(pps_decoder_get_string(&decoder, "city", &text), PPS_DECODER_OK);
    EXPECT_STREQ(text, "Paris") << "the latest value counts";
    EXPECT_EQ(pps_decoder_get_int(&decoder, "city", &number), PPS_DECODER_BAD_TYPE);
    EXPECT_EQ(pps_decoder_get_int(&decoder, "speed", &number), PPS_DECODER_OK);
    EXPECT_EQ(number, 12);
    EXPECT_EQ(pps_decoder_get_string(&decoder, "lines", &text), PPS_DECODER_OK);
    EXPECT_STREQ(text, "a\nbAA\\");
    bool truth = false;
    EXPECT_EQ(pps_decoder_get_bool(&decoder, "on", &truth), PPS_DECODER_OK);
    EXPECT_TRUE(truth);
    EXPECT_EQ(pps_decoder_type(&decoder, "raw"), PPS_TYPE_UNKNOWN);
    EXPECT_EQ(pps_decoder_get_int(&decoder, "old", &number), PPS_DECODER_DELETED);
    ASSERT_EQ(pps_decoder_push(&decoder, "position"), PPS_DECODER_OK);
    EXPECT_EQ(pps_decoder_push_array(&decoder, "x"), PPS_DECODER_OK);
}

TEST_F(DecoderTest, EscapesEndWhereTheirDigitsEnd) {
    const std::pair<const char*, const char*> Rows[] = {{"\\x414", "A4"}, {"\\1014", "A4"}, {"\\608", "08"},
                                                        {"\\7z", "\az"},  {"\\xg", "xg"},   {"\\8", "8"},
                                                        {"\\", "\\"},     {"\\0601", "01"}};
    for (const auto& [escaped, plain] : Rows) {
        std::string source = "@o\na:c:" + std::string(escaped) + "\n";
        ASSERT_EQ(pps_decoder_parse_pps_str(&decoder, source.data()), PPS_DECODER_OK) << escaped;
        ASSERT_EQ(pps_decoder_push(&decoder, "@o"), PPS_DECODER_OK);
        EXPECT_EQ(pps_decoder_get_string(&decoder, "a", &text), PPS_DECODER_OK);
        EXPECT_STREQ(text, plain) << escaped;
    }
}

TEST_F(DecoderTest, ATextAfterABadOneIsParsedAlone) {
    std::string bad = "@a\nx::1\nno attribute\n";
    EXPECT_EQ(pps_decoder_parse_pps_str(&decoder, bad.data()), PPS_DECODER_PARSE_ERROR);
    EXPECT_NE(pps_decoder_push(&decoder, "@a"), PPS_DECODER_OK) << "nothing of a bad text is left";
}

TEST_F(DecoderTest, PpsTextWithAFaultIsAParseError) {
    for (const char* bad : {"@a\nx\n", "@a\nx::1", "@a\nx:n:text\n", "@a\nx:n:true\n", "@a\nx:n:\"1\"\n",
                            "@a\nx:n:\n", "@a\nx:b:yes\n", "@a\nx:json:{\n"}) {
        std::string source = bad;
        EXPECT_EQ(pps_decoder_parse_pps_str(&decoder, source.data()), PPS_DECODER_PARSE_ERROR) << bad;
    }
}

TEST_F(DecoderTest, ADeletedObjectCannotBeEntered) {
    std::string source = "@a\nx::1\n-@a\n";
    ASSERT_EQ(pps_decoder_parse_pps_str(&decoder, source.data()), PPS_DECODER_OK);
    EXPECT_EQ(pps_decoder_push(&decoder, "a"), PPS_DECODER_DELETED);
}

TEST(DecoderLifeTest, InitialisingParsesATextAndCleaningUpTwiceIsHarmless) {
    std::string source = "@a\nx::1\n";
    pps_decoder_t decoder{};
    EXPECT_EQ(pps_decoder_initialize(&decoder, source.data()), PPS_DECODER_OK);
    EXPECT_EQ(pps_decoder_push(&decoder, nullptr), PPS_DECODER_OK);
    pps_decoder_cleanup(&decoder);
    pps_decoder_cleanup(&decoder);
    EXPECT_NE(pps_decoder_push(&decoder, nullptr), PPS_DECODER_OK);
    EXPECT_EQ(pps_decoder_type(&decoder, nullptr), PPS_TYPE_NONE);
}

} // namespace
