#include "services/disc/player/ResumeMemory.h"
#include "tests/disc/Samples.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <thread>

using namespace zm::disc::model;
using namespace zm::disc::player;
using namespace zm::test;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

RememberedDisc disc(const std::string& identity, int file = 1) {
    return {identity, {MediaKind::Video, 2, file, 61500ms, 8, 1}};
}

void run(const std::string& file, const std::string& sql) {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database);
    sqlite3_close(database);
}

} // namespace

TEST(ResumeFile, GivesBackWhatWasWrittenInOrder) {
    TempFolder folder;
    ResumeFile file(folder / "resume");
    EXPECT_TRUE(file.read().empty());
    const std::vector<RememberedDisc> discs{disc("b", 3), disc("a", 4)};
    ASSERT_TRUE(file.write(discs));
    EXPECT_EQ(ResumeFile(folder / "resume").read(), discs);
    ASSERT_TRUE(file.write({disc("c")}));
    EXPECT_EQ(file.read(), std::vector{disc("c")});
}

TEST(ResumeFile, OneFromBeforeThereWereDvdsIsTakenOver) {
    TempFolder folder;
    run(folder / "resume",
        "CREATE TABLE discs (used INTEGER PRIMARY KEY, identity TEXT, kind INTEGER,"
        " folderid INTEGER, fid INTEGER, milliseconds INTEGER, repeat INTEGER, shuffle INTEGER);"
        "INSERT INTO discs VALUES (1, 'a', 2, 2, 1, 61500, 8, 1)");
    ResumeFile file(folder / "resume");
    EXPECT_EQ(file.read(), std::vector{disc("a")});
    auto film = disc("b");
    film.point.sound = 2;
    film.point.subtitle = 64;
    ASSERT_TRUE(file.write({film}));
    EXPECT_EQ(file.read(), std::vector{film});
    EXPECT_FALSE(fs::exists(folder / "resume.damaged"));
}

TEST(ResumeFile, IsTheOnlyOneThatItWrites) {
    TempFolder folder;
    ASSERT_TRUE(ResumeFile(folder / "resume").write({disc("a")}));
    size_t files = 0;
    for (const auto& entry : fs::directory_iterator(folder.path())) {
        EXPECT_EQ(entry.path().filename(), "resume");
        ++files;
    }
    EXPECT_EQ(files, 1u);
}

TEST(ResumeFile, ADamagedFileIsPutAside) {
    const std::string text(5000, 'x');
    for (const bool reading : {true, false}) {
        TempFolder folder;
        writeFile(folder / "resume", text);
        ResumeFile file(folder / "resume");
        if (reading) {
            EXPECT_TRUE(file.read().empty());
            EXPECT_FALSE(fs::exists(folder / "resume"));
        }
        ASSERT_TRUE(file.write({disc("a")})) << reading;
        EXPECT_EQ(file.read(), std::vector{disc("a")});
        EXPECT_EQ(readFile(folder / "resume.damaged"), text) << "nothing is lost";
    }
}

TEST(ResumeFile, AFileWithDamagedPagesIsPutAside) {
    TempFolder folder;
    ResumeFile file(folder / "resume");
    std::vector<RememberedDisc> discs;
    for (int i = 0; i < 50; ++i) {
        discs.push_back(disc(std::string(64, 'a') + std::to_string(i)));
    }
    ASSERT_TRUE(file.write(discs));
    std::string bytes = readFile(folder / "resume");
    ASSERT_GT(bytes.size(), 8192u);
    bytes.replace(4096, bytes.size() - 4096, std::string(bytes.size() - 4096, '\x55'));
    writeFile(folder / "resume", bytes);
    EXPECT_TRUE(file.read().empty());
    EXPECT_EQ(readFile(folder / "resume.damaged"), bytes);
}

TEST(ResumeFile, AnotherProgramsDatabaseIsPutAside) {
    TempFolder folder;
    run(folder / "resume", "CREATE TABLE discs (other INTEGER)");
    EXPECT_TRUE(ResumeFile(folder / "resume").read().empty());
    EXPECT_TRUE(fs::exists(folder / "resume.damaged"));
}

TEST(ResumeFile, RowsThatMakeNoSenseAreLeftOut) {
    TempFolder folder;
    ResumeFile file(folder / "resume");
    ASSERT_TRUE(file.write({disc("good"), disc("kind"), disc("time"), disc("")}));
    run(folder / "resume", "UPDATE discs SET kind = 9 WHERE identity = 'kind';"
                           "UPDATE discs SET milliseconds = -5 WHERE identity = 'time'");
    EXPECT_EQ(file.read(), std::vector{disc("good")});
}

TEST(ResumeFile, AFolderThatDoesNotExistIsAnErrorThatNamesTheFile) {
    TempFolder folder;
    const auto status = ResumeFile(folder / "missing/resume").write({disc("a")});
    ASSERT_FALSE(status);
    EXPECT_NE(status.error().find("missing/resume"), std::string::npos);
}

TEST(ResumeMemory, RemembersFiftyDiscsAndForgetsTheOneUsedLeastRecently) {
    TempFolder folder;
    {
        ResumeMemory memory(folder / "resume");
        for (int i = 1; i <= 50; ++i) {
            memory.keep("disc " + std::to_string(i), disc("", i).point);
        }
        memory.keep("disc 1", disc("", 7).point);
        memory.keep("disc 51", disc("", 51).point);
    }
    ResumeMemory memory(folder / "resume");
    EXPECT_FALSE(memory.find("disc 2")) << "used least recently";
    EXPECT_EQ(memory.find("disc 1"), disc("", 7).point);
    for (int i = 3; i <= 51; ++i) {
        EXPECT_EQ(memory.find("disc " + std::to_string(i)), disc("", i).point) << i;
    }
    EXPECT_EQ(ResumeFile(folder / "resume").read().size(), ResumeMemory::MaxDiscs);
}

TEST(ResumeMemory, AFileThatWasTakenAwayIsMadeAnewWithAllDiscs) {
    TempFolder folder;
    {
        ResumeMemory memory(folder / "resume");
        memory.keep("a", disc("", 1).point);
    }
    ResumeMemory memory(folder / "resume");
    fs::remove(folder / "resume");
    memory.keep("b", disc("", 2).point);
    const auto written = [&] { return ResumeFile(folder / "resume").read().size(); };
    for (int i = 0; i < 500 && written() < 2; ++i) {
        std::this_thread::sleep_for(20ms);
    }
    EXPECT_EQ(written(), 2u);
}
