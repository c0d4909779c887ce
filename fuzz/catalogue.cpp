// Rows of any content in the disc's catalogue, through the database stand-in and the catalogue class to the
// texts that the views show.
#include "fuzz/support/Check.h"
#include "fuzz/support/Scratch.h"

#include "DiscQDB.h"
#include "ZMModel/CDiscData.h"
#include "parts/WideText.h"

#include <fuzzer/FuzzedDataProvider.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <thread>

using namespace zm::fuzz;

namespace {

constexpr int MostRows = 24;
constexpr int NoSource = LIST_FROM_SEARCH + 1;
constexpr const char* Tables =
    "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;"
    "CREATE TABLE files (fid INTEGER, folderid INTEGER, ftype INTEGER, filename TEXT);"
    "CREATE TABLE folders (folderid INTEGER, parentid INTEGER, foldername TEXT, ftype INTEGER);";
constexpr const char* Inserts[] = {"INSERT INTO files VALUES (?,?,?,?);",
                                   "INSERT INTO folders VALUES (?,?,?,?);"};
constexpr const char* Files = "SELECT fid,folderid,ftype,filename FROM files;";
constexpr const char* Folders = "SELECT folderid,parentid,foldername FROM folders;";

// The disc service's side: writes the rows.
class Catalogue {
public:
    Catalogue() {
        const std::string file = scratchFolder() + "/discdb.sqlite";
        check(sqlite3_open(file.c_str(), &m_db) == SQLITE_OK, "the catalogue opens");
        run(Tables);
        for (const char* sql : Inserts) {
            check(sqlite3_prepare_v2(m_db, sql, -1, &m_inserts[sql == Inserts[1]], nullptr) == SQLITE_OK,
                  "a row can be written");
        }
    }
    void fill(FuzzedDataProvider& input) {
        run("BEGIN; DELETE FROM files; DELETE FROM folders;");
        for (int row = 0; row < MostRows && input.remaining_bytes() > 0; ++row) {
            auto* insert = m_inserts[input.ConsumeBool()];
            for (int column = 1; column <= 4; ++column) {
                bind(insert, column, input);
            }
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
        run("COMMIT;");
    }

private:
    void run(const char* sql) {
        check(sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr) == SQLITE_OK, "the catalogue is written");
    }
    static void bind(sqlite3_stmt* insert, int column, FuzzedDataProvider& input) {
        enum class Cell { Null, Small, Large, Real, Text, Blob, kMaxValue = Blob };
        std::string bytes;
        switch (input.ConsumeEnum<Cell>()) {
        case Cell::Null:
            sqlite3_bind_null(insert, column);
            break;
        case Cell::Small:
            sqlite3_bind_int(insert, column, input.ConsumeIntegralInRange(-1, 20));
            break;
        case Cell::Large:
            sqlite3_bind_int64(insert, column, input.ConsumeIntegral<int64_t>());
            break;
        case Cell::Real:
            sqlite3_bind_double(insert, column, input.ConsumeFloatingPoint<double>());
            break;
        case Cell::Text:
            bytes = input.ConsumeRandomLengthString(600);
            sqlite3_bind_text(insert, column, bytes.data(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT);
            break;
        case Cell::Blob:
            bytes = input.ConsumeRandomLengthString(64);
            sqlite3_bind_blob(insert, column, bytes.data(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT);
            break;
        }
    }

    sqlite3* m_db = nullptr;
    sqlite3_stmt* m_inserts[2] = {};
};

void query(DiscQDB& database, const char* sql, int source, const char* subSql) {
    database.SetFinishFlag(false);
    database.QueryPlayListCmd(sql, source, subSql);
    while (!database.GetFinishFlag()) {
        std::this_thread::yield();
    }
}

// What a view does with a name.
void show(const char* name, int number) {
    check(std::memchr(name, '\0', DISC_NAME_SIZE) != nullptr, "a name ends inside its buffer");
    wchar_t text[WIDE_TEXT_SIZE];
    FormatWide(text, L"%d  %s", number, name);
    check(std::wcslen(text) < WIDE_TEXT_SIZE, "a text ends inside its buffer");
    wchar_t small[32];
    FormatWide(small, L"%s", name);
    check(std::wcslen(small) < 32, "a text is cut to its buffer");
}

void readList(DiscQDB& database, int source) {
    int count = -1;
    database.GetVecListSize(source, count);
    for (int line = -1; line <= count; ++line) {
        int fid = 0;
        int folder = 0;
        int type = 0;
        int position = 0;
        char name[DISC_NAME_SIZE] = {};
        database.GetVecList_Data_Fid(source, line, fid);
        database.GetVecList_Data_ListIndex(source, line, folder);
        database.GetVecList_Data_Type(source, line, type);
        const bool known = database.GetVecList_Data(source, line, name);
        check(line < 0 || known == (line < count), "a list has its rows and no others");
        show(name, line);
        if (database.GetVecList_Data_Index(source, fid, folder, position)) {
            check(position >= 0 && position <= std::max(count, 0), "a row is found among the rows");
        }
    }
}

void readValues(DiscQDB& database) {
    int first = 0;
    int second = 0;
    char text[DISC_NAME_SIZE] = {};
    for (const char* sql :
         {Files, Folders, "SELECT filename FROM files;", "SELECT foldername,fid FROM folders,files;"}) {
        database.qDb_GetObjData_Int(sql, first);
        database.qDb_GetObjData_IDs(sql, first, second);
        database.qDb_GetObjData_Char(sql, text);
        show(text, first);
    }
    for (int kind = 0; kind <= 7; ++kind) {
        database.CheckMediaName(kind, first, second);
    }
}

// The worker ends before its object, as in the application.
class OpenDatabase : public DiscQDB {
public:
    OpenDatabase() : DiscQDB(*CDiscData::GetInstance()) {
        check(Init() && OpenDb(), "the catalogue can be read");
    }
    ~OpenDatabase() override {
        Close();
        CloseDb();
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Catalogue catalogue;
    static OpenDatabase database;
    FuzzedDataProvider input(data, size);
    const int source = input.ConsumeIntegralInRange<int>(LIST_FROM_AUDIO_FOLDERS, LIST_FROM_SEARCH);
    catalogue.fill(input);
    database.InitDataBase();
    // Folder lists take folders first and files behind them; other lists files.
    query(database, source < LIST_FROM_ALL_AUDIO ? Folders : Files, source, Files);
    readList(database, source);
    readList(database, NoSource);
    readValues(database);
    return 0;
}
