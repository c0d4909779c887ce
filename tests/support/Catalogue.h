#pragma once

#include "tests/support/TemporaryFolder.h"

#include <memory>
#include <string>

struct sqlite3;

namespace zm::test {

/** A real catalogue file with the tables that the disc service writes; removed with this object. */
class Catalogue {
public:
    enum Type { Music = 1, Video = 2, Picture = 3 };

    Catalogue();
    ~Catalogue();
    Catalogue(const Catalogue&) = delete;
    Catalogue& operator=(const Catalogue&) = delete;

    const std::string& path() const { return m_path; }

    /** A file of `folder`; names may be any text. */
    void file(int fid, int folder, Type type, const std::string& name);
    /** A folder of one media type with its numbers of sub-folders and files. */
    void folder(int id, int parent, Type type, const std::string& name, int folders = 0, int files = 0);
    /** `count` files "name 1" ... in folder 1, in one transaction. */
    void files(int count, Type type, const std::string& name);
    /** Any statement. */
    void sql(const std::string& statement);

private:
    TemporaryFolder m_folder;
    std::string m_path = m_folder.path() + "/discdb.sqlite";
    sqlite3* m_db = nullptr;
};

} // namespace zm::test
