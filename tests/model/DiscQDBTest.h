#pragma once

#include "tests/model/ModelTest.h"

#include "DiscQDB.h"

#include <sqlite3.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace zm::test {

/** The catalogue class on a database that the test writes. */
class DiscQDBTest : public ModelTest {
protected:
    DiscQDBTest() {
        sql("CREATE TABLE files (fid INTEGER, folderid INTEGER, ftype INTEGER, filename TEXT);"
            "CREATE TABLE folders (folderid INTEGER, parentid INTEGER, foldername TEXT, ftype INTEGER,"
            "                      foldercount INTEGER, filecount INTEGER);");
    }
    ~DiscQDBTest() override {
        m_db.Close();
        m_db.CloseDb();
    }

    std::string file() const { return m_dir + "/discdb.sqlite"; }

    void sql(const std::string& statements) {
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open(file().c_str(), &db), SQLITE_OK);
        char* error = nullptr;
        sqlite3_exec(db, statements.c_str(), nullptr, nullptr, &error);
        EXPECT_STREQ(error, nullptr);
        sqlite3_free(error);
        sqlite3_close(db);
    }

    /** Opens the database and starts the worker, as the main view does. */
    void begin() {
        ASSERT_TRUE(m_db.Init());
        m_db.InitDataBase();
        forgetLog();
    }

    static bool until(const std::function<bool()>& condition) {
        auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > deadline) {
                return false;
            }
            std::this_thread::yield();
        }
        return true;
    }
    /** Gives a task to the worker and waits for its end. */
    void query(const std::string& statement, int source, const std::string& subStatement = "") {
        m_db.SetFinishFlag(false);
        m_db.QueryPlayListCmd(statement, source, subStatement);
        EXPECT_TRUE(until([&] { return m_db.GetFinishFlag(); }));
    }
    int size(int source) {
        int count = -1;
        m_db.GetVecListSize(source, count);
        return count;
    }
    /** Rows as "fid/folder/type/name". */
    std::vector<std::string> rows(int source) {
        std::vector<std::string> result;
        for (int line = 0; line < size(source); ++line) {
            int fid = 0;
            int folder = 0;
            int type = 0;
            char name[DISC_NAME_SIZE] = {};
            EXPECT_TRUE(m_db.GetVecList_Data_Fid(source, line, fid));
            EXPECT_TRUE(m_db.GetVecList_Data_ListIndex(source, line, folder));
            EXPECT_TRUE(m_db.GetVecList_Data_Type(source, line, type));
            EXPECT_TRUE(m_db.GetVecList_Data(source, line, name));
            result.push_back(std::to_string(fid) + "/" + std::to_string(folder) + "/" + std::to_string(type) +
                             "/" + name);
        }
        return result;
    }

    DiscQDB m_db;
};

} // namespace zm::test
