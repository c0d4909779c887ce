#include "tests/pps/PpsFixture.h"

namespace zm {

TEST_F(PpsTest, ANewObjectIsReadAsItsNameAlone) {
    auto file = open("/pps/zelmar/disc/status?delta");
    EXPECT_EQ(read(file), "@status\n");
    EXPECT_EQ(read(file), "");
}

TEST_F(PpsTest, AWriteMergesAndKeepsTheOrderOfFirstWriting) {
    auto writer = open("/pps/zelmar/disc/status");
    EXPECT_EQ(write(writer, "a::1\nb:n:2\n"), "");
    EXPECT_EQ(write(writer, "c:json:{\"x\":\":\"}\na::3"), "");
    EXPECT_EQ(read(writer), "@status\na::3\nb:n:2\nc:json:{\"x\":\":\"}\n");
}

TEST_F(PpsTest, ADeltaReaderGetsEveryChangeInOrderAlsoEqualAndOverwrittenOnes) {
    auto reader = open("/pps/zelmar/disc/control?delta");
    auto writer = open("/pps/zelmar/disc/control", WriteCreate);
    EXPECT_EQ(read(reader), "@control\n");
    EXPECT_EQ(write(writer, "@control\ncmd::1\n"), "");
    EXPECT_EQ(write(writer, "cmd::1\n"), "");
    EXPECT_EQ(write(writer, "cmd::2\nother::x\n"), "");
    EXPECT_EQ(read(reader), "@control\ncmd::1\n@control\ncmd::1\n@control\ncmd::2\nother::x\n");
    EXPECT_EQ(read(reader), "");
}

TEST_F(PpsTest, TheFirstReadGivesThePresentStateAndEmptiesTheQueue) {
    auto writer = open("/pps/a", WriteCreate);
    write(writer, "x::1\n");
    auto reader = open("/pps/a?delta");
    write(writer, "x::2\n");
    EXPECT_EQ(read(reader), "@a\nx::2\n");
    EXPECT_EQ(read(reader), "");
}

TEST_F(PpsTest, OwnWritesAreNotEchoed) {
    auto file = open("/pps/a?delta");
    read(file);
    write(file, "x::1\n");
    EXPECT_FALSE(readable(file));
    EXPECT_EQ(read(file), "");
}

} // namespace zm
