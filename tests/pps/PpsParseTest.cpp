#include "sys/pps.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Parsed {
    pps_status_t status;
    pps_attrib_t info;
};

// Parses the first line of a text that lives as long as the test.
class PpsParse : public testing::Test {
protected:
    Parsed first(std::string line) {
        text = std::move(line);
        position = text.data();
        return next();
    }
    Parsed next() {
        Parsed result{PPS_END, info};
        result.status = ppsparse(&position, objects, attributes, &info, 0);
        result.info = info;
        return result;
    }

    static constexpr const char* objects[] = {"status", "control", nullptr};
    static constexpr const char* attributes[] = {"discstate", "msgtip", nullptr};
    std::string text;
    char* position = nullptr;
    pps_attrib_t info{};
};

TEST_F(PpsParse, AnAttributeLineIsSplitAtItsFirstTwoColons) {
    const auto parsed = first("msgtip:json:{\"a\":\"b:c\"}\n");
    EXPECT_EQ(parsed.status, PPS_ATTRIBUTE);
    EXPECT_STREQ(parsed.info.attr_name, "msgtip");
    EXPECT_EQ(parsed.info.attr_index, 1);
    EXPECT_STREQ(parsed.info.encoding, "json");
    EXPECT_STREQ(parsed.info.value, "{\"a\":\"b:c\"}");
    EXPECT_EQ(parsed.info.line, text.data());
    EXPECT_EQ(next().status, PPS_END);
}

TEST_F(PpsParse, ThePlainEncodingIsAnEmptyText) {
    const auto parsed = first("x::\n");
    EXPECT_STREQ(parsed.info.encoding, "");
    EXPECT_STREQ(parsed.info.value, "");
    EXPECT_EQ(parsed.info.attr_index, -1);
}

TEST_F(PpsParse, ObjectLinesGiveNameIndexStatusAndFlag) {
    struct Row {
        const char* line;
        pps_status_t status;
        int flags;
        int index;
    };
    constexpr Row Rows[] = {
        {"@control\n", PPS_OBJECT, 0, 1},
        {"@other\n", PPS_OBJECT, 0, -1},
        {"+@status\n", PPS_OBJECT_CREATED, PPS_CREATED, 0},
        {"-@status\n", PPS_OBJECT_DELETED, PPS_DELETED, 0},
        {"#@status\n", PPS_OBJECT_TRUNCATED, PPS_TRUNCATED, 0},
        {"|@status\n", PPS_OBJECT_OVERFLOWED, PPS_OVERFLOWED, 0},
        {"*@status\n", PPS_OBJECT, PPS_PURGED, 0},
    };
    for (const auto& row : Rows) {
        const auto parsed = first(row.line);
        EXPECT_EQ(parsed.status, row.status) << row.line;
        EXPECT_EQ(parsed.info.flags, row.flags) << row.line;
        EXPECT_EQ(parsed.info.obj_index, row.index) << row.line;
        EXPECT_EQ(parsed.info.attr_name, nullptr) << row.line;
    }
    EXPECT_STREQ(info.obj_name, "status");
}

TEST_F(PpsParse, TheObjectStaysUntilTheNextObjectLine) {
    first("@status\na::1\n@control\nb::2\n");
    EXPECT_STREQ(next().info.obj_name, "status");
    next();
    const auto last = next();
    EXPECT_STREQ(last.info.obj_name, "control");
    EXPECT_EQ(last.info.obj_index, 1);
}

TEST_F(PpsParse, ADeletedAttributeHasEmptyTextsInsteadOfNullPointers) {
    const auto parsed = first("-discstate\n");
    EXPECT_EQ(parsed.status, PPS_ATTRIBUTE_DELETED);
    EXPECT_EQ(parsed.info.flags, PPS_DELETED);
    EXPECT_EQ(parsed.info.attr_index, 0);
    EXPECT_STREQ(parsed.info.attr_name, "discstate");
    EXPECT_STREQ(parsed.info.encoding, "");
    EXPECT_STREQ(parsed.info.value, "");
}

TEST_F(PpsParse, QualifiersTellWhatIsSetAndWhatIsNamed) {
    auto parsed = first("[n]x::1\n");
    EXPECT_EQ(parsed.info.options, PPS_NOPERSIST);
    EXPECT_EQ(parsed.info.option_mask, PPS_NOPERSIST);
    parsed = first("[-n,i]x::1\n");
    EXPECT_EQ(parsed.info.options, PPS_ITEM);
    EXPECT_EQ(parsed.info.option_mask, PPS_NOPERSIST | PPS_ITEM);
    parsed = first("x::1\n");
    EXPECT_EQ(parsed.info.option_mask, 0);
}

TEST_F(PpsParse, AnInvalidLineIsAnErrorAndTheNextOneIsParsed) {
    EXPECT_EQ(first("no attribute\nx::1\n").status, PPS_ERROR);
    EXPECT_EQ(next().status, PPS_ATTRIBUTE);
}

TEST_F(PpsParse, AnIncompleteLineEndsTheTextAndIsLeftAlone) {
    const auto parsed = first("x::1");
    EXPECT_EQ(parsed.status, PPS_END);
    EXPECT_EQ(parsed.info.flags, PPS_INCOMPLETE);
    EXPECT_STREQ(position, "x::1");
    EXPECT_EQ(first("").status, PPS_END);
    EXPECT_EQ(info.flags, 0);
}

TEST_F(PpsParse, WhatALineDoesNotHaveIsNotTheLineBefore) {
    first("msgtip:n:1\n@status\n");
    EXPECT_EQ(info.attr_index, 1);
    const auto object = next();
    EXPECT_EQ(object.status, PPS_OBJECT);
    EXPECT_EQ(object.info.attr_name, nullptr);
    EXPECT_EQ(object.info.attr_index, -1);
    EXPECT_EQ(object.info.encoding, nullptr);
    EXPECT_EQ(object.info.value, nullptr);
    first("[n]msgtip:n:1\n");
    EXPECT_EQ(next().status, PPS_END);
    EXPECT_EQ(info.options, 0);
    EXPECT_EQ(info.option_mask, 0);
}

TEST_F(PpsParse, NameListsMayBeMissing) {
    std::string line = "@a\nx::1\n";
    char* at = line.data();
    ASSERT_EQ(ppsparse(&at, nullptr, nullptr, &info, 0), PPS_OBJECT);
    EXPECT_EQ(info.obj_index, -1);
    ASSERT_EQ(ppsparse(&at, nullptr, nullptr, &info, 0), PPS_ATTRIBUTE);
    EXPECT_EQ(info.attr_index, -1);
}

} // namespace
