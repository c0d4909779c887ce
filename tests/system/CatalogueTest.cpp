#include "tests/system/SystemTest.h"

#include <sqlite3.h>

#include <chrono>

namespace zm::test {

/** The application over a catalogue that the test wrote. */
class CatalogueCommand : public SystemTest {
protected:
    void SetUp() override {
        write();
        startManual({"--catalogue", path});
    }
    ~CatalogueCommand() override { ::unlink(path.c_str()); }

    void write() {
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
        std::string sql = "CREATE TABLE files (fid INTEGER, folderid INTEGER, ftype INTEGER, filename TEXT);"
                          "CREATE TABLE folders (folderid INTEGER, parentid INTEGER, foldername TEXT,"
                          " ftype INTEGER, foldercount INTEGER, filecount INTEGER);";
        for (int fid = 1; fid <= 5; ++fid) {
            const std::string number = std::to_string(fid);
            sql += "INSERT INTO files VALUES (" + number + ",1,1,'song " + number + "');";
        }
        ASSERT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(db);
    }

    Json rows() { return item(24, 2000)["rows"]; }
    void openList() {
        must({"click", "main", "6", "6508", "1"});
        settle();
        must({"clock", "advance", "200"});
    }

    const std::string path = folder + "-catalogue.sqlite";
};

TEST_F(CatalogueCommand, ListsWhatTheFileHolds) {
    playMusic();
    openList();
    ASSERT_EQ(rows().size(), 5u);
    EXPECT_EQ(rows()[4]["text"].get<std::string>().find("5"), 0u);
}

TEST_F(CatalogueCommand, AHeldQueryFillsItsListInStages) {
    playMusic();
    must({"catalogue", "hold", "2"});
    const auto begin = std::chrono::steady_clock::now();
    openList();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5))
        << "a held worker counts as idle";
    EXPECT_EQ(rows().size(), 2u);
    must({"catalogue", "release"});
    settle();
    must({"clock", "advance", "200"});
    EXPECT_EQ(rows().size(), 5u);
}

/** The application was started before there is a catalogue. */
class MissingCatalogue : public CatalogueCommand {
protected:
    void SetUp() override { startManual({"--catalogue", path}); }
};

TEST_F(MissingCatalogue, IsADatabaseThatCannotBeOpened) {
    EXPECT_THAT(must({"log"}), HasSubstr("QDB Error: "));
}

TEST_F(MissingCatalogue, IsTriedAgainAtTheFirstDiscAndAtEachLaterOneUntilItIsThere) {
    playMusic();
    write();
    putDevice({"disc::0"});
    playMusic();
    openList();
    EXPECT_EQ(rows().size(), 5u);
}

} // namespace zm::test
