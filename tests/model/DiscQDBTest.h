#pragma once

#include "tests/model/ModelTest.h"
#include "tests/support/CatalogueSql.h"
#include "tests/support/Eventually.h"

#include "DiscQDB.h"
#include "ZMModel/CDiscData.h"

#include <string>
#include <vector>

namespace zm::test {

/** The catalogue class on a database that the test writes. */
class DiscQDBTest : public ModelTest {
protected:
    DiscQDBTest() { sql(CatalogueTables); }
    ~DiscQDBTest() override {
        m_db.Close();
        m_db.CloseDb();
    }

    std::string file() const { return m_dir + "/discdb.sqlite"; }

    void sql(const std::string& statements) { runSql(file(), statements); }

    /** Opens the database and starts the worker, as the main view does. */
    void begin() {
        ASSERT_TRUE(m_db.Init());
        m_db.InitDataBase();
        forgetLog();
    }

    /** Gives a task to the worker and waits for its end. */
    void query(const std::string& statement, int source, const std::string& subStatement = "") {
        m_db.SetFinishFlag(false);
        m_db.QueryPlayListCmd(statement, source, subStatement);
        EXPECT_TRUE(eventually([&] { return m_db.GetFinishFlag(); }));
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

    CDiscData m_data;
    DiscQDB m_db{m_data};
};

} // namespace zm::test
