#pragma once

#include "tests/model/DiscQDBTest.h"

#include "platform/linux/qdb/QdbHold.h"

namespace zm::test {

constexpr const char* MUSIC =
    "SELECT fid,folderid,ftype,filename from files WHERE ftype = 1 AND filename <> '' "
    "ORDER BY folderid, fid;";
constexpr const char* FOLDERS = "select folderid,parentid,foldername from folders where ftype = 1;";

/** A catalogue with some files and folders. */
class DiscQDBQueryTest : public DiscQDBTest {
protected:
    DiscQDBQueryTest() {
        sql("INSERT INTO files VALUES (1, 1, 1, 'one.mp3'), (2, 1, 1, 'two.mp3'), (1, 2, 1, 'three.mp3'),"
            "                         (1, 1, 2, 'film.avi'), (1, 1, 3, 'picture.jpg'), (9, 1, 1, '');"
            "INSERT INTO folders VALUES (1, 0, 'root', 1, 1, 2), (2, 1, 'Rock', 1, 0, 1);");
    }
    ~DiscQDBQueryTest() override { qdbRelease(); }

    std::string finish(int value) const {
        return "[SetFinishFlag]-[DiscQDB::SetFinishFlag]--bFinish=" + std::to_string(value);
    }
    std::string command(int source) const {
        return "[QueryPlayListCmd]-[DiscQDB::QueryPlayListCmd]--nFromType:" + std::to_string(source);
    }
};

} // namespace zm::test
