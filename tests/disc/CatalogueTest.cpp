#include "services/disc/library/Catalogue.h"

#include "tests/disc/Samples.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

using namespace zm::disc::library;
using namespace zm::disc::model;
using namespace zm::test;

namespace {

using Rows = std::vector<std::string>;

/** Reads as the application does: one connection, opened once and kept. */
class Reader {
public:
    explicit Reader(const std::string& file) {
        EXPECT_EQ(sqlite3_open_v2(file.c_str(), &m_database, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    }
    ~Reader() { sqlite3_close(m_database); }

    // Each row's cells, separated by blanks.
    Rows rows(const std::string& sql) {
        Rows result;
        char* error = nullptr;
        sqlite3_exec(
            m_database, sql.c_str(),
            [](void* into, int count, char** cells, char**) {
                std::string row;
                for (int i = 0; i < count; ++i) {
                    row += (i ? " " : "") + std::string(cells[i] ? cells[i] : "NULL");
                }
                static_cast<Rows*>(into)->push_back(row);
                return 0;
            },
            &result, &error);
        EXPECT_EQ(error, nullptr) << error;
        return result;
    }

    sqlite3* database() { return m_database; }

private:
    sqlite3* m_database = nullptr;
};

Contents exampleDisc() {
    Contents contents;
    contents.folders = {{1, 0, "", "root", {}}, {2, 1, "b", "it's", {}}};
    contents.folders[0].counts[kindIndex(MediaKind::Music)] = {1, 2};
    contents.folders[1].counts[kindIndex(MediaKind::Music)] = {0, 1};
    contents.folders[1].counts[kindIndex(MediaKind::Video)] = {0, 1};
    contents.folders[0].counts[kindIndex(MediaKind::Video)] = {1, 0};
    contents.items[kindIndex(MediaKind::Music)] = {
        {1, 1, "", "a.mp3", {}}, {1, 2, "", "b.mp3", {}}, {2, 1, "", "晨光.mp3", {}}};
    contents.items[kindIndex(MediaKind::Video)] = {{2, 1, "", "c.mp4", {}}};
    return contents;
}

const std::atomic<bool> notCancelled{false};

std::unique_ptr<Catalogue> open(const std::string& file) {
    auto catalogue = Catalogue::open(file);
    EXPECT_TRUE(catalogue) << (catalogue ? "" : catalogue.error());
    return catalogue ? std::move(*catalogue) : nullptr;
}

} // namespace

TEST(Catalogue, HoldsFilesAndFoldersOfEachKind) {
    TempFolder folder;
    const auto catalogue = open(folder / "db");
    ASSERT_TRUE(catalogue->write(exampleDisc(), MediaKind::Music, notCancelled));
    ASSERT_TRUE(catalogue->write(exampleDisc(), MediaKind::Video, notCancelled));
    Reader reader(folder / "db");
    EXPECT_EQ(
        reader.rows("SELECT fid,folderid,ftype,filename FROM files WHERE ftype = 1 ORDER BY folderid, fid"),
        (Rows{"1 1 1 a.mp3", "2 1 1 b.mp3", "1 2 1 晨光.mp3"}));
    EXPECT_EQ(reader.rows("SELECT fid,folderid,ftype,FileName FROM files WHERE ftype == 2"),
              (Rows{"1 2 2 c.mp4"}));
    EXPECT_EQ(
        reader.rows(
            "SELECT folderid,parentid,foldername,ftype,foldercount,filecount FROM folders WHERE ftype = 1"),
        (Rows{"1 0 root 1 1 2", "2 1 it's 1 0 1"}));
    EXPECT_EQ(reader.rows("SELECT folderid,foldercount,filecount FROM folders WHERE ftype = 2"),
              (Rows{"1 0 0", "2 0 1"}))
        << "a folder whose files all lie further down opens as an empty one";
    EXPECT_EQ(reader.rows("SELECT * FROM folders WHERE ftype = 3"), Rows{});
}

TEST(Catalogue, ALongNameIsCutAtAWholeCharacter) {
    TempFolder folder;
    const auto catalogue = open(folder / "db");
    auto contents = exampleDisc();
    const std::string start(1023, 'a');
    contents.items[kindIndex(MediaKind::Video)].front().name = start + "\xc3\xa4" + std::string(100'000, 'b');
    ASSERT_TRUE(catalogue->write(contents, MediaKind::Video, notCancelled));
    EXPECT_EQ(Reader(folder / "db").rows("SELECT filename FROM files"), Rows{start});
}

TEST(Catalogue, IsThereWithEmptyTablesBeforeTheFirstDisc) {
    TempFolder folder;
    const auto catalogue = open(folder / "db");
    Reader reader(folder / "db");
    EXPECT_EQ(reader.rows("SELECT COUNT(*) FROM files"), Rows{"0"});
    EXPECT_EQ(reader.rows("SELECT COUNT(*) FROM folders"), Rows{"0"});
}

TEST(Catalogue, AReaderThatHoldsTheFileOpenSeesTheNextDisc) {
    TempFolder folder;
    const auto catalogue = open(folder / "db");
    Reader reader(folder / "db");
    ASSERT_TRUE(catalogue->write(exampleDisc(), MediaKind::Music, notCancelled));
    EXPECT_EQ(reader.rows("SELECT COUNT(*) FROM files"), Rows{"3"});
    ASSERT_TRUE(catalogue->clear());
    EXPECT_EQ(reader.rows("SELECT COUNT(*) FROM files"), Rows{"0"});
    ASSERT_TRUE(catalogue->write(exampleDisc(), MediaKind::Video, notCancelled));
    EXPECT_EQ(reader.rows("SELECT filename FROM files"), Rows{"c.mp4"});
}

TEST(Catalogue, AReaderInTheMiddleOfAQueryDoesNotHoldTheWriterUp) {
    TempFolder folder;
    const auto catalogue = open(folder / "db");
    ASSERT_TRUE(catalogue->write(exampleDisc(), MediaKind::Music, notCancelled));
    Reader reader(folder / "db");
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(reader.database(), "SELECT fid FROM files", -1, &statement, nullptr);
    ASSERT_EQ(sqlite3_step(statement), SQLITE_ROW);
    EXPECT_TRUE(catalogue->clear());
    EXPECT_TRUE(catalogue->write(exampleDisc(), MediaKind::Video, notCancelled));
    EXPECT_EQ(sqlite3_step(statement), SQLITE_ROW) << "the query goes on with what it began with";
    sqlite3_finalize(statement);
}

TEST(Catalogue, ACancelledWriteLeavesNothing) {
    TempFolder folder;
    const auto catalogue = open(folder / "db");
    const std::atomic<bool> cancelled{true};
    EXPECT_FALSE(catalogue->write(exampleDisc(), MediaKind::Music, cancelled));
    Reader reader(folder / "db");
    EXPECT_EQ(reader.rows("SELECT COUNT(*) FROM folders"), Rows{"0"});
    EXPECT_TRUE(catalogue->write(exampleDisc(), MediaKind::Music, notCancelled));
}

TEST(Catalogue, WhatAnEarlierRunHasLeftIsGone) {
    TempFolder folder;
    ASSERT_TRUE(open(folder / "db")->write(exampleDisc(), MediaKind::Music, notCancelled));
    const auto catalogue = open(folder / "db");
    Reader reader(folder / "db");
    EXPECT_EQ(reader.rows("SELECT COUNT(*) FROM files"), Rows{"0"});
}

TEST(Catalogue, AFileThatWasTakenAwayIsMadeAnewWithTheNextDisc) {
    TempFolder folder;
    const auto catalogue = open(folder / "db");
    ASSERT_TRUE(catalogue->write(exampleDisc(), MediaKind::Music, notCancelled));
    EXPECT_TRUE(catalogue->intact());
    std::filesystem::remove(folder / "db");
    EXPECT_FALSE(catalogue->intact());
    ASSERT_TRUE(catalogue->clear());
    EXPECT_TRUE(catalogue->intact());
    ASSERT_TRUE(catalogue->write(exampleDisc(), MediaKind::Video, notCancelled));
    EXPECT_EQ(Reader(folder / "db").rows("SELECT filename FROM files"), Rows{"c.mp4"});
}

TEST(Catalogue, AFileThatIsNoDatabaseIsReplaced) {
    TempFolder folder;
    writeFile(folder / "db", std::string(5000, 'x'));
    const auto catalogue = open(folder / "db");
    ASSERT_TRUE(catalogue);
    EXPECT_TRUE(catalogue->write(exampleDisc(), MediaKind::Music, notCancelled));
}

TEST(Catalogue, AFolderThatDoesNotExistIsAnError) {
    TempFolder folder;
    EXPECT_FALSE(Catalogue::open(folder / "missing/db"));
}
