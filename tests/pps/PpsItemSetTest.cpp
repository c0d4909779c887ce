#include "tests/pps/PpsFixture.h"

#include <string>

namespace zm::test {

TEST_F(PpsTest, ItemsAreAddedToASetAndTakenOutOfIt) {
    auto file = open("/pps/a");
    EXPECT_EQ(write(file, "[i]toolbox::hammer,\n"), "");
    EXPECT_EQ(write(file, "[i]toolbox::saw,file,\n"), "");
    EXPECT_EQ(write(file, "[i]toolbox::hammer,\n"), "");
    EXPECT_EQ(read(file), "@a\ntoolbox::hammer,saw,file,\n");
    EXPECT_EQ(write(file, "[-i]toolbox::saw,\n"), "");
    EXPECT_EQ(read(file), "@a\ntoolbox::hammer,file,\n");
    EXPECT_EQ(write(file, "[-i]toolbox::file,hammer,tongs,\n"), "");
    EXPECT_EQ(read(file), "@a\ntoolbox::\n");
}

TEST_F(PpsTest, ReadersOfChangesAreToldTheWholeSet) {
    auto writer = open("/pps/a", WriteCreate);
    auto reader = open("/pps/a?delta", ReadOnly);
    read(reader);
    write(writer, "[i]x::1,\n");
    write(writer, "y::0\n[i]x::2,\n[-i]x::1,\n");
    EXPECT_EQ(read(reader), "@a\nx::1,\n@a\ny::0\nx::1,2,\nx::2,\n");
}

TEST_F(PpsTest, RemovingFromWhatDoesNotExistMakesNothingAndTellsNobody) {
    auto writer = open("/pps/a");
    auto reader = open("/pps/a?delta", ReadOnly);
    read(reader);
    EXPECT_EQ(write(writer, "[-i]x::1,\n"), "");
    EXPECT_FALSE(readable(reader));
    EXPECT_EQ(read(writer), "@a\n");
}

TEST_F(PpsTest, ItemsJoinWhatWasWrittenAsAWholeAndAWholeReplacesThem) {
    auto file = open("/pps/a");
    write(file, "x::one,two\n");
    EXPECT_EQ(write(file, "[i]x::three,two,\n"), "");
    EXPECT_EQ(read(file), "@a\nx::one,two,three,\n");
    EXPECT_EQ(write(file, "[-i]x::o,\n"), "");
    EXPECT_EQ(read(file), "@a\nx::one,two,three,\n") << "only whole items are taken out";
    write(file, "x::four\n");
    EXPECT_EQ(read(file), "@a\nx::four\n");
}

TEST_F(PpsTest, ASetMayBeNonpersistentToo) {
    auto file = open("/pps/a");
    EXPECT_EQ(write(file, "[n,i]x::1,\n"), "");
    EXPECT_EQ(write(file, "[i]x::2,\n"), "");
    EXPECT_EQ(read(file), "@a\n[n]x::1,2,\n");
    EXPECT_EQ(write(file, "[-n,-i]x::1,\n"), "");
    EXPECT_EQ(read(file), "@a\nx::2,\n");
}

TEST_F(PpsTest, LinesThatAreNoItemsAreNamedAndChangeNothing) {
    auto file = open("/pps/a");
    write(file, "[i]x::1,\n");
    for (const std::string line :
         {"[i]x::2", "[i]x::", "[i]x::,", "[i]x::2,,3,", "[-i]x::1", "[i]@a", "[i]-x", "[i]x"}) {
        EXPECT_NE(write(file, line + "\n").find("line 1 \"" + line + "\""), std::string::npos)
            << line << ": " << write(file, line + "\n");
        EXPECT_EQ(read(file), "@a\nx::1,\n");
    }
}

TEST_F(PpsTest, ASetThatGrowsKeepsToTheObjectsLimit) {
    auto file = open("/pps/a");
    const std::string half(16 * 1024, 'x');
    EXPECT_EQ(write(file, "[i]x::1" + half + ",\n"), "");
    EXPECT_EQ(write(file, "[i]x::1" + half + ",\n"), "") << "which is there already";
    EXPECT_NE(write(file, "[i]x::2" + half + ",\n"), "");
    EXPECT_EQ(read(file), "@a\nx::1" + half + ",\n");
}

} // namespace zm::test
