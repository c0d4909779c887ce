#include "tests/pps/PpsFixture.h"

namespace zm::test {

TEST_F(PpsTest, ADeletedObjectIsToldAndCannotBeWritten) {
    auto file = open("/pps/a");
    auto reader = open("/pps/a?delta", ReadOnly);
    read(reader);
    ASSERT_TRUE(ppsUnlink(socket, "/pps/a"));
    EXPECT_EQ(read(reader), "-@a\n");
    EXPECT_EQ(read(reader), "");
    EXPECT_NE(write(file, "x::1\n").find("ENOENT"), std::string::npos);
    EXPECT_TRUE(ppsList(socket)->empty());
    EXPECT_NE(ppsUnlink(socket, "/pps/a").error().find("ENOENT"), std::string::npos);
}

TEST_F(PpsTest, AnObjectMadeAgainIsToldToWhoStillHasItOpen) {
    auto reader = open("/pps/a?delta", ReadOnly | 256);
    read(reader);
    ASSERT_TRUE(ppsUnlink(socket, "/pps/a"));
    auto again = open("/pps/a?delta");
    write(again, "x::1\n");
    EXPECT_EQ(read(reader), "-@a\n+@a\n@a\nx::1\n");
    EXPECT_EQ(read(again), "@a\nx::1\n") << "who creates is not told that it did";
}

TEST_F(PpsTest, AnObjectDeletedBeforeTheFirstReadIsReadAsDeleted) {
    auto reader = open("/pps/a?delta");
    ASSERT_TRUE(ppsUnlink(socket, "/pps/a"));
    EXPECT_EQ(read(reader), "-@a\n");
}

TEST_F(PpsTest, ADeltaReaderOfAFolderGetsAllItsObjectsThenTheirChanges) {
    auto first = open("/pps/d/a");
    write(first, "x::1\n");
    auto elsewhere = open("/pps/d/deeper/b");
    auto reader = open("/pps/d/.all?delta", ReadOnly);
    EXPECT_EQ(read(reader), "@a\nx::1\n") << "objects of folders below do not belong to it";
    auto second = open("/pps/d/c");
    write(second, "y::1\n");
    write(elsewhere, "z::1\n");
    write(first, "x::2\n");
    ASSERT_TRUE(first.truncate());
    ASSERT_TRUE(ppsUnlink(socket, "/pps/d/c"));
    EXPECT_EQ(read(reader), "+@c\n@c\ny::1\n@a\nx::2\n#@a\n-@c\n");
}

TEST_F(PpsTest, AFullReaderOfAFolderGetsOneWholeObjectPerRead) {
    auto first = open("/pps/d/a");
    auto second = open("/pps/d/b");
    write(first, "x::1\n");
    auto reader = open("/pps/d/.all", ReadOnly);
    EXPECT_EQ(read(reader), "@a\nx::1\n");
    EXPECT_TRUE(readable(reader));
    EXPECT_EQ(read(reader), "@b\n");
    EXPECT_FALSE(readable(reader));
    EXPECT_EQ(read(reader), "");
    write(second, "y::1\n");
    write(second, "y::2\n");
    EXPECT_TRUE(readable(reader));
    EXPECT_EQ(read(reader), "@b\ny::2\n");
    EXPECT_EQ(read(reader), "");
    ASSERT_TRUE(ppsUnlink(socket, "/pps/d/b"));
    EXPECT_EQ(read(reader), "-@b\n");
}

TEST_F(PpsTest, AFolderCannotBeWritten) {
    auto folderFile = open("/pps/.all");
    EXPECT_NE(write(folderFile, "x::1\n").find("EINVAL"), std::string::npos);
}

TEST_F(PpsTest, ABacklogBeyondItsLimitIsDroppedToldAndFollowedByTheFullState) {
    auto writer = open("/pps/a", WriteCreate);
    auto slow = open("/pps/a?delta", ReadOnly);
    auto other = open("/pps/a?delta,backlog=1024", ReadOnly);
    read(slow);
    read(other);
    const std::string large(30000, 'v');
    for (int i = 0; i < 9; ++i) {
        ASSERT_EQ(write(writer, "x::" + large + "\nn::" + std::to_string(i) + "\n"), "");
    }
    write(writer, "y::1\n");
    EXPECT_TRUE(readable(slow));
    EXPECT_EQ(read(slow), "|@a\n@a\nx::" + large + "\nn::8\ny::1\n");
    write(writer, "y::2\n");
    EXPECT_EQ(read(slow), "@a\ny::2\n") << "it goes on as before";
    const auto all = read(other);
    EXPECT_GT(all.size(), 9u * 30000) << "the other descriptor has a limit of its own";
    EXPECT_NE(all.find("n::0\n"), std::string::npos);
}

TEST_F(PpsTest, TheUsualBacklogHoldsTwoHundredFiftySixKilobytes) {
    auto writer = open("/pps/a", WriteCreate);
    auto reader = open("/pps/a?delta", ReadOnly);
    read(reader);
    const std::string line = "x::" + std::string(4096 - 7, 'v') + "\n"; // "@a" and a line feed come before it
    ASSERT_EQ(line.size() + 3, 4096u);
    for (int i = 0; i < 64; ++i) {
        ASSERT_EQ(write(writer, line), "");
    }
    const auto exactly = read(reader);
    EXPECT_EQ(exactly.size(), 256u * 1024);
    EXPECT_TRUE(exactly.starts_with("@a\nx"));
    for (int i = 0; i < 65; ++i) {
        ASSERT_EQ(write(writer, line), "");
    }
    EXPECT_TRUE(read(reader).starts_with("|@a\n@a\nx"));
}

TEST_F(PpsTest, WithoutADescriptorNothingIsQueued) {
    auto writer = open("/pps/a", WriteCreate);
    { auto gone = open("/pps/a?delta", ReadOnly); }
    write(writer, "x::1\n");
    write(writer, "x::2\n");
    auto reader = open("/pps/a?delta", ReadOnly);
    EXPECT_EQ(read(reader), "@a\nx::2\n");
}

} // namespace zm::test
