#include "tests/pps/PpsFixture.h"

namespace zm::test {

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

TEST_F(PpsTest, AFullReaderGetsTheWholeObjectAtEachRead) {
    auto writer = open("/pps/a", WriteCreate);
    auto reader = open("/pps/a", ReadOnly);
    write(writer, "x::1\ny::1\n");
    write(writer, "x::2\n");
    EXPECT_EQ(read(reader), "@a\nx::2\ny::1\n");
    EXPECT_EQ(read(reader), "@a\nx::2\ny::1\n");
}

TEST_F(PpsTest, AReaderIsReadableAtFirstAndAfterEachChangeUntilItReads) {
    auto writer = open("/pps/a", WriteCreate);
    for (const char* path : {"/pps/a", "/pps/a?delta"}) {
        auto reader = open(path, ReadOnly);
        EXPECT_TRUE(readable(reader));
        read(reader);
        EXPECT_FALSE(readable(reader));
        write(writer, "x::1\n");
        write(writer, "x::2\n");
        EXPECT_TRUE(readable(reader));
        read(reader);
        EXPECT_FALSE(readable(reader));
    }
}

TEST_F(PpsTest, AnEmptyWriteAndADeletionOfNothingTellNobody) {
    auto writer = open("/pps/a", WriteCreate);
    auto reader = open("/pps/a?delta", ReadOnly);
    read(reader);
    EXPECT_EQ(write(writer, ""), "");
    EXPECT_EQ(write(writer, "@a\n"), "");
    EXPECT_EQ(write(writer, "-missing\n"), "");
    EXPECT_FALSE(readable(reader));
    EXPECT_EQ(read(reader), "");
}

TEST_F(PpsTest, ADeletionLineTakesOneAttributeAwayAndIsTold) {
    auto writer = open("/pps/a");
    auto reader = open("/pps/a?delta", ReadOnly);
    write(writer, "x::1\ny::1\n");
    read(reader);
    EXPECT_EQ(write(writer, "-x\n"), "");
    EXPECT_EQ(read(reader), "@a\n-x\n");
    EXPECT_EQ(read(writer), "@a\ny::1\n");
    write(writer, "x::2\n");
    EXPECT_EQ(read(writer), "@a\ny::1\nx::2\n") << "it comes again as a new one";
}

TEST_F(PpsTest, AnObjectLineWithAnotherNameIsIgnored) {
    auto file = open("/pps/zelmar/videoservice/command");
    EXPECT_EQ(write(file, "@other\nx::1\n"), "");
    EXPECT_EQ(read(file), "@command\nx::1\n");
}

TEST_F(PpsTest, AMalformedLineIsNamedAndNothingChanges) {
    auto file = open("/pps/a");
    write(file, "x::1\n");
    struct Row {
        const char* text;
        const char* named;
    };
    constexpr Row Rows[] = {
        {"x::2\nno colons\n", "line 2 \"no colons\""},
        {"x::2\none:colon\n", "line 2 \"one:colon\""},
        {"1x::2\n", "line 1 \"1x::2\""},
        {"x::2\n\ny::1\n", "line 2 \"\""},
        {"x::2\n@a\n", "line 2 \"@a\""},
        {"+@a\nx::2\n", "line 1 \"+@a\""},
        {"x::2\n-bad name\n", "line 2 \"-bad name\""},
        {"[q]x::2\n", "line 1 \"[q]x::2\""},
        {"[n x::2\n", "line 1"},
    };
    for (const auto& row : Rows) {
        EXPECT_NE(write(file, row.text).find(row.named), std::string::npos)
            << row.text << write(file, row.text);
        EXPECT_EQ(read(file), "@a\nx::1\n");
    }
    EXPECT_NE(write(file, std::string_view("x::a\0b\n", 7)), "");
    EXPECT_EQ(read(file), "@a\nx::1\n");
}

TEST_F(PpsTest, ValuesAndEncodingsAreNeverInterpreted) {
    auto file = open("/pps/a");
    const std::string text = "@a\nx:json:{not json\ny:n:\xff\xfe\nz.9_A:odd:a:b:c\n";
    EXPECT_EQ(write(file, text), "");
    EXPECT_EQ(read(file), text);
}

TEST_F(PpsTest, TheQualifierForNonpersistentIsKeptUntilCleared) {
    auto file = open("/pps/a");
    write(file, "[n]x::1\n");
    write(file, "x::2\n");
    EXPECT_EQ(read(file), "@a\n[n]x::2\n");
    write(file, "[-n]x::3\n[n]y::1\n");
    EXPECT_EQ(read(file), "@a\nx::3\n[n]y::1\n");
    write(file, "[n]@a\n");
    EXPECT_EQ(read(file), "[n]@a\nx::3\n[n]y::1\n");
    write(file, "@a\nx::4\n");
    EXPECT_EQ(read(file), "[n]@a\nx::4\n[n]y::1\n") << "an object line without it leaves it";
    write(file, "[-n]@a\n");
    EXPECT_EQ(read(file), "@a\nx::4\n[n]y::1\n");
}

TEST_F(PpsTest, AnObjectHoldsThirtyTwoKilobytesAndNotOneByteMore) {
    auto file = open("/pps/a");
    const std::string fits(32 * 1024 - std::string("@a\nx::\n").size(), 'v');
    EXPECT_EQ(write(file, "x::" + fits + "\n"), "");
    EXPECT_EQ(read(file).size(), 32u * 1024);
    EXPECT_NE(write(file, "y::\n").find("32768 bytes"), std::string::npos);
    EXPECT_NE(write(file, "x::" + fits + "v\n").find("32768 bytes"), std::string::npos);
    EXPECT_EQ(read(file), "@a\nx::" + fits + "\n");
    EXPECT_EQ(write(file, "x::small\n"), "");
    EXPECT_EQ(write(file, "y::" + fits.substr(20) + "\n"), "") << "the space is free again";
}

TEST_F(PpsTest, OpeningWithTruncationEmptiesTheObject) {
    auto writer = open("/pps/zelmar/disc/control", WriteCreate);
    auto reader = open("/pps/zelmar/disc/control?delta", ReadOnly);
    write(writer, "zmcmd::1\n");
    read(reader);
    auto truncating = open("/pps/zelmar/disc/control?delta", ReadWriteCreateTruncate);
    EXPECT_EQ(read(reader), "#@control\n");
    EXPECT_EQ(read(truncating), "@control\n");
}

TEST_F(PpsTest, AnEmptiedObjectHasRoomForAllItHadAndMore) {
    auto file = open("/pps/a");
    const std::string large(20'000, 'v');
    for (int i = 0; i < 2000; ++i) {
        ASSERT_EQ(write(file, "x::" + large + "\n"), "") << i;
        ASSERT_TRUE(file.truncate());
    }
    EXPECT_EQ(write(file, "y::" + large + "\nx::1\n"), "");
    EXPECT_EQ(read(file), "@a\ny::" + large + "\nx::1\n");
}

TEST_F(PpsTest, TruncationDeletesAllAttributesAndIsToldToOthersOnly) {
    auto writer = open("/pps/a?delta");
    auto reader = open("/pps/a?delta", ReadOnly);
    write(writer, "x::1\n");
    read(writer);
    read(reader);
    EXPECT_TRUE(writer.truncate());
    write(writer, "x::2\n");
    EXPECT_EQ(read(reader), "#@a\n@a\nx::2\n");
    EXPECT_EQ(read(writer), "");
}

TEST_F(PpsTest, AllObjectsAreListedSorted) {
    auto second = open("/pps/zelmar/b");
    auto first = open("/pps/zelmar/a");
    auto top = open("/pps/top");
    const auto names = ppsList(socket);
    ASSERT_TRUE(names) << names.error();
    EXPECT_EQ(*names, (std::vector<std::string>{"top", "zelmar/a", "zelmar/b"}));
}

TEST_F(PpsTest, ChangesOfAllObjectsAreNumberedInTheOrderOfWritingAlsoAcrossARestart) {
    auto reader = open("/pps/a?delta");
    auto other = open("/pps/b?delta");
    uint64_t last = 0;
    for (int start = 0; start < 2; ++start) {
        for (auto* file : {&reader, &other}) {
            auto present = file->readChanges();
            // Until it has found the service that was started anew.
            while (!present) {
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
                present = file->readChanges();
            }
            ASSERT_EQ(present->changes.size(), 1u);
            EXPECT_EQ(present->changes.front().number, present->upTo);
            EXPECT_GE(present->upTo, last);
            last = present->upTo;
        }
        auto writer = open("/pps/a", WriteCreate);
        auto otherWriter = open("/pps/b", WriteCreate);
        write(writer, "x::1\n");
        write(otherWriter, "y::1\n");
        write(writer, "x::2\n");
        const auto changes = reader.readChanges();
        const auto otherChanges = other.readChanges();
        ASSERT_TRUE(changes && otherChanges);
        ASSERT_EQ(changes->changes.size(), 2u);
        ASSERT_EQ(otherChanges->changes.size(), 1u);
        EXPECT_GT(changes->changes[0].number, last);
        EXPECT_GT(otherChanges->changes[0].number, changes->changes[0].number);
        EXPECT_GT(changes->changes[1].number, otherChanges->changes[0].number);
        EXPECT_EQ(changes->upTo, changes->changes[1].number);
        EXPECT_EQ(changes->text(), "@a\nx::1\n@a\nx::2\n");
        last = changes->upTo;
        service.stop();
        service.start();
    }
}

TEST(PpsServiceTest, EachChangeIsReportedOnTheLoopsThread) {
    TemporaryFolder folder;
    EventLoop loop;
    PpsService service(loop, folder.path() + "/pps.sock");
    std::vector<std::string> changes;
    service.onChange = [&](const std::string& object, const std::string& text) {
        changes.push_back(object + "|" + text);
        if (changes.size() == 3) {
            loop.quit();
        }
    };
    ASSERT_TRUE(service.start());
    std::thread client([&] {
        auto file = PpsFile::open(folder.path() + "/pps.sock", "/pps/d/a", ReadWriteCreate, 0666);
        ASSERT_TRUE(file);
        ASSERT_TRUE(file->write("x::1\n"));
        // The answer may be lost: the loop ends with the change.
        static_cast<void>(file->truncate());
    });
    loop.run();
    // What was asked after the last wanted change is answered before the client is waited for.
    while (loop.iterate(false)) {
    }
    client.join();
    EXPECT_EQ(changes, (std::vector<std::string>{"d/a|+@a\n", "d/a|@a\nx::1\n", "d/a|#@a\n"}));
}

TEST(PpsServiceTest, ASecondServiceOnTheSameSocketIsRefused) {
    TemporaryFolder folder;
    RunningPpsService first(folder.path() + "/pps.sock");
    EventLoop loop;
    PpsService second(loop, folder.path() + "/pps.sock");
    const auto started = second.start();
    ASSERT_FALSE(started);
    EXPECT_NE(started.error().find("already served"), std::string::npos);
}

} // namespace zm::test
