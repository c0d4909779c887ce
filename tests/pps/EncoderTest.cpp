#include "sys/pps.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

namespace {

class EncoderTest : public testing::Test {
protected:
    EncoderTest() { pps_encoder_initialize(&encoder, false); }
    ~EncoderTest() override { pps_encoder_cleanup(&encoder); }
    void asJson() {
        pps_encoder_cleanup(&encoder);
        pps_encoder_initialize(&encoder, true);
    }

    pps_encoder_t encoder{};
};

TEST_F(EncoderTest, ACommandIsTheObjectLineAndOneJsonAttribute) {
    pps_encoder_start_object(&encoder, "@control");
    pps_encoder_start_object(&encoder, "zmcmd");
    pps_encoder_add_int(&encoder, "cmd", 1);
    pps_encoder_add_int(&encoder, "param1", 2);
    pps_encoder_add_int(&encoder, "param2", 3);
    pps_encoder_end_object(&encoder);
    EXPECT_EQ(pps_encoder_buffer(&encoder), nullptr) << "an object is open";
    EXPECT_EQ(pps_encoder_end_object(&encoder), PPS_ENCODER_OK);
    const char expected[] = "@control\nzmcmd:json:{\"cmd\":1,\"param1\":2,\"param2\":3}\n";
    ASSERT_STREQ(pps_encoder_buffer(&encoder), expected);
    EXPECT_EQ(pps_encoder_length(&encoder), static_cast<int>(std::strlen(expected)));
}

TEST_F(EncoderTest, EachAttributeTakesTheSimplestEncoding) {
    pps_encoder_start_object(&encoder, "@a");
    pps_encoder_add_string(&encoder, "plain", "a:b \"c\"");
    pps_encoder_add_string(&encoder, "lines", "a\nb\\c\t");
    pps_encoder_add_int(&encoder, "int", -5);
    pps_encoder_add_double(&encoder, "real", 45.6512);
    pps_encoder_add_bool(&encoder, "yes", true);
    pps_encoder_add_bool(&encoder, "no", false);
    pps_encoder_add_null(&encoder, "nothing");
    pps_encoder_add_json(&encoder, "text", "{\"x\":\n[1,2]}");
    pps_encoder_start_array(&encoder, "list");
    pps_encoder_add_int(&encoder, nullptr, 1);
    pps_encoder_add_string(&encoder, nullptr, "q\"\\\n\x01");
    pps_encoder_start_object(&encoder, nullptr);
    pps_encoder_add_null(&encoder, "n");
    pps_encoder_end_object(&encoder);
    pps_encoder_end_array(&encoder);
    pps_encoder_end_object(&encoder);
    ASSERT_STREQ(pps_encoder_buffer(&encoder), "@a\n"
                                               "plain::a:b \"c\"\n"
                                               "lines:c:a\\nb\\\\c\\t\n"
                                               "int:n:-5\n"
                                               "real:n:45.6512\n"
                                               "yes:b:true\n"
                                               "no:b:false\n"
                                               "nothing:json:null\n"
                                               "text:json:{\"x\": [1,2]}\n"
                                               "list:json:[1,\"q\\\"\\\\\\n\\u0001\",{\"n\":null}]\n");
}

TEST_F(EncoderTest, AttributesMayDoWithoutAnObjectLine) {
    pps_encoder_add_string(&encoder, "state", "on");
    EXPECT_STREQ(pps_encoder_buffer(&encoder), "state::on\n");
}

TEST_F(EncoderTest, OneJsonTextIsEncodedWithoutBlanks) {
    asJson();
    pps_encoder_start_object(&encoder, nullptr);
    pps_encoder_add_string(&encoder, "name", "\xe4\xb8\xad\xe6\x96\x87");
    pps_encoder_start_array(&encoder, "empty");
    pps_encoder_end_array(&encoder);
    pps_encoder_end_object(&encoder);
    EXPECT_STREQ(pps_encoder_buffer(&encoder), "{\"name\":\"\xe4\xb8\xad\xe6\x96\x87\",\"empty\":[]}");
}

TEST_F(EncoderTest, BytesThatAreNoUtf8AreReplacedInsideJson) {
    asJson();
    pps_encoder_start_array(&encoder, nullptr);
    pps_encoder_add_string(&encoder, nullptr, "a\xff");
    pps_encoder_end_array(&encoder);
    EXPECT_STREQ(pps_encoder_buffer(&encoder), "[\"a\xef\xbf\xbd\"]");
}

TEST_F(EncoderTest, TheFirstErrorStaysUntilReset) {
    EXPECT_EQ(pps_encoder_end_object(&encoder), PPS_ENCODER_BAD_NESTING);
    EXPECT_EQ(pps_encoder_add_string(&encoder, "x", nullptr), PPS_ENCODER_BAD_NESTING);
    EXPECT_EQ(pps_encoder_start_object(&encoder, "@a"), PPS_ENCODER_BAD_NESTING);
    EXPECT_EQ(pps_encoder_buffer(&encoder), nullptr);
    EXPECT_EQ(pps_encoder_length(&encoder), 0);
    pps_encoder_reset(&encoder);
    EXPECT_EQ(pps_encoder_add_int(&encoder, "x", 1), PPS_ENCODER_OK);
    EXPECT_STREQ(pps_encoder_buffer(&encoder), "x:n:1\n");
}

TEST_F(EncoderTest, WhatCannotBeEncodedSaysWhy) {
    const auto open = [this] {
        pps_encoder_reset(&encoder);
        pps_encoder_start_object(&encoder, "@a");
        return &encoder;
    };
    EXPECT_EQ(pps_encoder_add_string(open(), "x", nullptr), PPS_ENCODER_INVALID_VALUE);
    EXPECT_EQ(pps_encoder_add_string(open(), nullptr, "x"), PPS_ENCODER_MISSING_ATTRIBUTE_NAME);
    EXPECT_EQ(pps_encoder_start_object(open(), nullptr), PPS_ENCODER_MISSING_ATTRIBUTE_NAME);
    EXPECT_EQ(pps_encoder_add_int(open(), "bad name", 1), PPS_ENCODER_INVALID_VALUE);
    EXPECT_EQ(pps_encoder_start_object(open(), "@nested"), PPS_ENCODER_INVALID_VALUE);
    EXPECT_EQ(pps_encoder_add_double(open(), "x", NAN), PPS_ENCODER_INVALID_VALUE);
    EXPECT_EQ(pps_encoder_add_json(open(), "x", "{"), PPS_ENCODER_INVALID_VALUE);
    EXPECT_EQ(pps_encoder_add_json(open(), "x", nullptr), PPS_ENCODER_INVALID_VALUE);
    EXPECT_EQ(pps_encoder_end_array(open()), PPS_ENCODER_BAD_NESTING);
    open();
    pps_encoder_start_object(&encoder, "x");
    EXPECT_EQ(pps_encoder_add_int(&encoder, nullptr, 1), PPS_ENCODER_MISSING_ATTRIBUTE_NAME)
        << "members have names";
    pps_encoder_reset(&encoder);
    EXPECT_EQ(pps_encoder_start_object(&encoder, "@"), PPS_ENCODER_INVALID_VALUE);
    asJson();
    EXPECT_EQ(pps_encoder_add_int(&encoder, nullptr, 1), PPS_ENCODER_BAD_NESTING)
        << "a JSON text is a container";
    pps_encoder_reset(&encoder);
    pps_encoder_start_object(&encoder, nullptr);
    pps_encoder_end_object(&encoder);
    EXPECT_EQ(pps_encoder_start_object(&encoder, nullptr), PPS_ENCODER_BAD_NESTING)
        << "there is one JSON text";
}

TEST_F(EncoderTest, WhatIsEncodedCanBeDecoded) {
    const char* nasty = "quote\" backslash\\ feed\n tab\t \x01 \xd8\xb9";
    pps_encoder_start_object(&encoder, "@a");
    pps_encoder_add_string(&encoder, "plain", nasty);
    pps_encoder_start_object(&encoder, "nested");
    pps_encoder_add_string(&encoder, "text", nasty);
    pps_encoder_end_object(&encoder);
    pps_encoder_end_object(&encoder);
    std::string text = pps_encoder_buffer(&encoder);
    pps_decoder_t decoder{};
    ASSERT_EQ(pps_decoder_initialize(&decoder, text.data()), PPS_DECODER_OK);
    const char* value = nullptr;
    pps_decoder_push(&decoder, nullptr);
    pps_decoder_get_string(&decoder, "plain", &value);
    EXPECT_STREQ(value, nasty);
    pps_decoder_push(&decoder, "nested");
    pps_decoder_get_string(&decoder, "text", &value);
    EXPECT_STREQ(value, nasty);
    EXPECT_EQ(pps_decoder_status(&decoder, false), PPS_DECODER_OK);
    pps_decoder_cleanup(&decoder);
}

} // namespace
