// A list of 65,535 rows in the application, on a thread of this process: from the tap to the first five rows
// on the screen and to the last row in the list control, beside a bare loop over the same statement; and how
// long the view's thread is blocked meanwhile.
#include "DiscQDB.h"
#include "ZMModel/CDiscData.h"
#include "base/Paths.h"
#include "benchmarks/BenchUnit.h"
#include "benchmarks/Figure.h"
#include "mpu/apps/Platen/DiscView.h"
#include "platform/linux/pps/PpsFile.h"
#include "services/disc/library/Catalogue.h"
#include "tests/support/Application.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"
#include "zmui/CUI_BtList.h"

#include <nlohmann/json.hpp>
#include <signal.h>
#include <sqlite3.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <future>

using namespace zm;
using namespace zm::benchmark;
using namespace std::chrono_literals;

namespace {

constexpr int LongList = 65535;
constexpr int Turns = 11;
constexpr int MediaList = 24;
constexpr int ListItem = 2000;
constexpr int MusicTab = 503;
constexpr int VideoTab = 504;
constexpr double Tick = 50; ///< how often the view looks for rows, in milliseconds
constexpr int RowsInView = 5;
constexpr const char* Statement =
    "SELECT fid,folderid,ftype,filename from files WHERE ftype = 1 AND filename "
    "<> '' ORDER BY folderid, fid;";

void makeCatalogue(const std::string& path) {
    disc::model::Contents contents;
    contents.folders.emplace_back().name = "Music";
    auto& items = contents.items[disc::model::kindIndex(disc::model::MediaKind::Music)];
    for (int number = 1; number <= LongList; ++number) {
        disc::model::Item item;
        item.fileId = number;
        item.name = "Song " + std::to_string(number) + " of a long list.mp3";
        items.push_back(std::move(item));
    }
    std::atomic<bool> cancelled = false;
    auto catalogue = disc::library::Catalogue::open(path);
    require(catalogue && (*catalogue)->clear() &&
                (*catalogue)->write(contents, disc::model::MediaKind::Music, cancelled),
            "the catalogue cannot be written");
}

/** Reads every cell of the statement's rows; the number of characters, so that nothing is left out. */
size_t bareLoop(const std::string& path) {
    sqlite3* database = nullptr;
    sqlite3_stmt* statement = nullptr;
    require(sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK &&
                sqlite3_prepare_v2(database, Statement, -1, &statement, nullptr) == SQLITE_OK,
            "the catalogue cannot be read");
    size_t read = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        for (const int column : {0, 1, 2}) {
            read += static_cast<size_t>(sqlite3_column_int(statement, column));
        }
        read += std::string(reinterpret_cast<const char*>(sqlite3_column_text(statement, 3))).size();
    }
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return read;
}

void write(const std::string& runtime, const std::string& object, const std::string& lines) {
    auto file = PpsFile::open(ppsSocket(runtime), "/pps/zelmar/disc/" + object, 258, 0666);
    require(static_cast<bool>(file), file ? "" : file.error());
    const Status written = file->write(lines);
    require(static_cast<bool>(written), written ? "" : written.error());
}

/** Milliseconds that the processor has spent on the calling thread. Query and bare loop wait for nothing
 * else, and on a machine that has other things to do the clock would rather measure those. */
double threadTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/** The application's catalogue, which also tells when its worker has ended a task. */
class TimedCatalogue : public DiscQDB {
public:
    TimedCatalogue() : DiscQDB(*CDiscData::GetInstance()) {}
    ~TimedCatalogue() override { Close(); }

    /** Processor time in milliseconds of QueryPlayListCmd and of the worker's task, with all rows there. */
    double query() {
        m_ended = std::promise<double>();
        const double start = threadTime();
        QueryPlayListCmd(Statement, LIST_FROM_ALL_AUDIO, "");
        const double asked = threadTime() - start;
        auto ended = m_ended.get_future();
        require(ended.wait_for(10s) == std::future_status::ready, "the worker does not end");
        int rows = 0;
        GetVecListSize(LIST_FROM_ALL_AUDIO, rows);
        require(rows == LongList, "rows are missing");
        return asked + ended.get();
    }

protected:
    void DealWithTask() override {
        const double start = threadTime();
        DiscQDB::DealWithTask();
        m_ended.set_value(threadTime() - start);
    }

private:
    std::promise<double> m_ended;
};

/** When the last composed frame had five rows for the first time. */
class RowWatch {
public:
    void composed(const Image& frame) {
        // The column of the rows' texts, one row after the other.
        constexpr Rect Texts{260, 72, 240, 335};
        bool all = true;
        for (int row = 0; row < RowsInView; ++row) {
            const int height = Texts.h / RowsInView;
            all = all && anythingLit(frame, {Texts.x, Texts.y + row * height + 4, Texts.w, height - 8});
        }
        if (all && !complete) {
            at = Clock::now();
        }
        complete = all;
    }

    bool complete = false;
    Clock::time_point at;
};

struct Times {
    double firstRows = 0;
    double lastRow = 0;
    double longestBlock = 0;
};

class ListBench {
public:
    ListBench(BenchUnit& unit, RowWatch& rows, test::Application& application)
        : m_unit(unit), m_rows(rows), m_application(application) {}

    /** From the page of music with all rows: to that of videos, which has none, and back by a touch. */
    Times turn() {
        click(VideoTab);
        require(waitForRows(0) >= 0 && m_unit.waitFor([&] { return !m_rows.complete; }), "no empty page");
        std::this_thread::sleep_for(400ms); // the empty list's own waiting ends
        const auto start = Clock::now();
        click(MusicTab);
        Times times;
        times.longestBlock = waitForRows(LongList);
        times.lastRow = millisecondsSince(start);
        require(m_unit.waitFor([&] { return m_rows.complete; }), "the rows never came to the screen");
        times.firstRows = std::chrono::duration<double, std::milli>(m_rows.at - start).count();
        return times;
    }

private:
    void click(int control) {
        for (const int state : {0, 1}) {
            m_unit.ask({{"t", "click"},
                        {"view", "main"},
                        {"window", MediaList},
                        {"control", control},
                        {"state", state}});
        }
    }

    /** Asks the view's thread for the number of rows again and again; how long it took to answer at most. */
    double waitForRows(int count) {
        double longest = 0;
        const auto start = Clock::now();
        for (int rows = -1; rows != count;) {
            require(millisecondsSince(start) < 10000, "the list is not filled: " + std::to_string(rows));
            const auto asked = Clock::now();
            m_application.onViewThread([&] { rows = list()->GetItemCount(); });
            longest = std::max(longest, millisecondsSince(asked));
            std::this_thread::sleep_for(200us);
        }
        return longest;
    }

    CUI_BtList* list() {
        CUI_BtList* result = nullptr;
        m_application.view().GetUIWndMgrWrapper()->GetUIAnalysisObj()->GetItemData(MediaList, ListItem,
                                                                                   result);
        return result;
    }

    BenchUnit& m_unit;
    RowWatch& m_rows;
    test::Application& m_application;
};

double medianOf(const std::vector<Times>& all, double Times::*member) {
    std::vector<double> values;
    for (const auto& times : all) {
        values.push_back(times.*member);
    }
    return median(values);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: bench_lists RUNTIME-FOLDER BUILD-FOLDER\n");
        return 2;
    }
    const std::string runtime = argv[1];
    prepareRuntime(runtime);
    bench::unit::HeadUnitOptions options = unitOptions(runtime, argv[2]);
    options.programDir.clear(); // the application is a part of this process
    setenv("ZM_CATALOGUE", options.catalogue.c_str(), 1);
    setenv("ZM_RCC_PATH", (options.shareDir + "/rccs/").c_str(), 1);
    setenv("ZM_FONT_PATH", (options.shareDir + "/fonts/").c_str(), 1);
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);
    makeCatalogue(options.catalogue);

    RowWatch rows;
    BenchUnit unit(options, [&](const Image& frame) { rows.composed(frame); });
    test::Application application;
    require(application.start(), "the application does not start");
    write(runtime, "device", "disc::1\nmixedtype::6\nmediatype::2\n");
    write(runtime, "status", "discstate::2\n");
    write(runtime, "playing", "trackinfo:json:{\"curmediaid\":30000,\"parentFolder\":1}\n");
    std::this_thread::sleep_for(500ms);
    TimedCatalogue database;
    database.InitDataBase();
    require(database.Init(), "the worker does not start");
    std::vector<double> queries;
    std::vector<double> bareLoops;
    ListBench bench(unit, rows, application);
    std::vector<Times> all;
    for (int turn = 0; turn < Turns; ++turn) {
        all.push_back(bench.turn());
        // In turns, so that a machine that grows slower or faster meanwhile does so for both.
        const double start = threadTime();
        require(bareLoop(options.catalogue) > 0, "no rows");
        bareLoops.push_back(threadTime() - start);
        queries.push_back(database.query());
    }
    application.end();
    database.Close();
    const double bare = median(bareLoops);
    const double fill = medianOf(all, &Times::longestBlock);
    print({"list of 65,535 rows, work of query and filling", "ms", median(queries) + fill, 2,
           "bare SQLite loop", bare, true,
           "query " + std::to_string(median(queries)) + " ms and bare loop in processor time, filling " +
               std::to_string(fill) + " ms by the clock; without waiting for the view's tick"});
    print({"list of 65,535 rows, tap to the last row in the list", "ms", medianOf(all, &Times::lastRow),
           Tick + 2 * bare, "", 0, false, "limit: one tick of 50 ms and twice the bare SQLite loop"});
    print(
        {"list of 65,535 rows, tap to five rows on the screen", "ms", medianOf(all, &Times::firstRows), 100});
    print({"list of 65,535 rows, longest block of the view while it fills", "ms", fill, 20});
    return 0;
}
