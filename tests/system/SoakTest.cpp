#include "services/ctl/Client.h"
#include "tests/system/Sanitized.h"
#include "tests/system/SystemTest.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>

namespace zm::test {

namespace {

constexpr int FullDiscs = 100;
constexpr int FullTracks = 10000;
constexpr int FullTouches = 100000;
/** Of a day in the regular run; ZM_SOAK=1 is the whole one. */
constexpr double RegularShare = Sanitized ? 0.02 : 0.05;
constexpr int TypesOfDisc = 6;
constexpr int WarmUpDiscs = 2 * TypesOfDisc; ///< each type of disc in both themes
/** What memory may differ by after the warm-up: pages of the heap come and go with what is on screen. */
constexpr long ToleranceKb = 1024;

/** Connections of commands that have just ended. */
constexpr size_t ClosingDescriptors = 2;

/** What a process holds. */
struct Holding {
    long memoryKb = 0; ///< its own, without files
    size_t descriptors = 0;
    size_t threads = 0;
};

size_t entries(const std::string& folder) {
    return static_cast<size_t>(
        std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator()));
}

Holding holdingOf(int pid) {
    const std::string process = "/proc/" + std::to_string(pid);
    Holding holding{0, entries(process + "/fd"), entries(process + "/task")};
    std::ifstream status(process + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("RssAnon:")) {
            holding.memoryKb = std::atol(line.c_str() + 8);
        }
    }
    return holding;
}

std::ostream& operator<<(std::ostream& stream, const Holding& holding) {
    return stream << holding.memoryKb << " kB, " << holding.descriptors << " descriptors, " << holding.threads
                  << " threads";
}

double share() {
    const char* text = std::getenv("ZM_SOAK");
    return text ? std::atof(text) : RegularShare;
}

} // namespace

/** A day in a car: discs change, tracks follow each other, somebody keeps touching the screen. */
class Soak : public SystemTest {
protected:
    void act(const Words& words) {
        const ctl::Answer answer = m_client->run(words);
        ASSERT_EQ(answer.exit, 0) << words[0] << ": " << answer.err;
    }
    void put(const std::string& object, Words lines) {
        lines.insert(lines.begin(), {"pps", "put", "zelmar/disc/" + object});
        act(lines);
    }
    void rest() { act({"settle"}); }
    int below(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }
    std::string number(int value) { return std::to_string(value); }

    void insert(int mediaType) {
        constexpr std::array MixedTypes = {0, 0, 14, 14, 14, 0};
        put("device", {"disc::1"});
        put("status", {"discstate::1"});
        put("device", {"mixedtype::" + number(MixedTypes[static_cast<size_t>(mediaType)]),
                       "mediatype::" + number(mediaType), "videomode::1"});
        rest();
        put("status", {"updatedb::65538", "discstate::2"});
        rest();
    }
    void eject() {
        put("status", {"discstate::20"});
        put("device", {"disc::0"});
        rest();
        put("status", {"discstate::0"});
        rest();
    }
    void play(int track) {
        const std::string id = number(track % 97 + 1);
        put("playing", {R"(trackinfo:json:{"curmediaid":)" + id + R"(,"curmediaids":97,"mediaid":)" + id +
                            R"(,"mediaids":97,"parentFolder":1})",
                        R"(ID3:json:{"title":"Track )" + id + R"(","artist":"Somebody","album":"曲"})"});
        put("playing", {R"(playtime:json:{"time":)" + id + R"(,"tracktime":240,"times":0})"});
        rest();
    }
    void touch() {
        const std::string x = number(below(800));
        const std::string y = number(below(480));
        switch (below(10)) {
        case 0:
            act({"drag", x, y, number(below(800)), number(below(480))});
            break;
        case 1:
            act({"touch", x, y, "--hold", "900"});
            break;
        default:
            act({"touch", x, y});
        }
    }
    Holding bench() { return holdingOf(SystemTest::bench->pid()); }
    Holding application() { return holdingOf(m_application); }
    void writeCatalogue(const std::string& path) {
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
        const char* sql =
            "CREATE TABLE files (fid INTEGER, folderid INTEGER, ftype INTEGER, filename TEXT);"
            "CREATE TABLE folders (folderid INTEGER, parentid INTEGER, foldername TEXT,"
            " ftype INTEGER, foldercount INTEGER, filecount INTEGER);"
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 97),"
            " t(f) AS (SELECT 1 UNION ALL SELECT f + 1 FROM t WHERE f < 3)"
            " INSERT INTO files SELECT i, 1, f, 'File 歌 أغنية ' || i FROM n, t;"
            "INSERT INTO folders VALUES (1,0,'Folder',1,0,97),(1,0,'Folder',2,0,97),(1,0,'Folder',3,0,97);";
        EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(db);
    }
    /** What else happens in a car between two discs. */
    void liveOn(int disc) {
        constexpr std::array Languages = {"en", "de", "zh", "ar"};
        act({"language", Languages[static_cast<size_t>(disc) % Languages.size()]});
        act({"theme", disc % 2 ? "day" : "night"});
        for (const char* status : {"pause", "resume", "hideonly", "resume"}) {
            act({"app", status});
        }
        for (const char* parked : {"0", "1"}) {
            act({"device", "2", parked});
        }
        act({"appdata", "--song=File"});
        rest();
    }
    void begin() {
        const std::string catalogue = folder + "/catalogue.sqlite";
        ASSERT_NO_FATAL_FAILURE(writeCatalogue(catalogue));
        startManual({"--catalogue", catalogue});
        m_application = std::stoi(lines({"ps"}).at(0).substr(4));
        m_client = std::make_unique<ctl::Client>(folder);
    }

    int m_application = 0;
    std::unique_ptr<ctl::Client> m_client;
    std::mt19937 m_random{1};
};

TEST_F(Soak, ADayInTheCarLeavesMemoryDescriptorsAndThreadsAsTheyWere) {
    const int discs = std::max(static_cast<int>(FullDiscs * share()), WarmUpDiscs + TypesOfDisc);
    const int tracks = static_cast<int>(FullTracks * share()) / discs;
    const int touches = static_cast<int>(FullTouches * share()) / discs;
    begin();
    Holding applicationBefore, benchBefore;
    for (int disc = 0; disc < discs && !HasFatalFailure(); ++disc) {
        insert(disc % TypesOfDisc);
        for (int track = 0; track < tracks; ++track) {
            play(track);
            for (int i = 0; i < touches / tracks; ++i) {
                touch();
            }
            act({"clock", "advance", number(DayMs / FullDiscs / tracks)});
        }
        liveOn(disc);
        eject();
        act({"requests", "--clear"});
        rest();
        if (disc == WarmUpDiscs - 1) {
            applicationBefore = application();
            benchBefore = bench();
        }
        if (std::getenv("ZM_SOAK")) {
            std::cout << "disc " << disc + 1 << ": application " << application() << "; bench " << bench()
                      << std::endl;
        }
    }
    for (const auto& [name, before, after] : {std::tuple("application", applicationBefore, application()),
                                              std::tuple("bench", benchBefore, bench())}) {
        std::cout << name << " before: " << before << "; after: " << after << std::endl;
        if (!Sanitized) {
            EXPECT_LE(after.memoryKb, before.memoryKb + ToleranceKb) << name;
        }
        EXPECT_LE(after.descriptors, before.descriptors + ClosingDescriptors) << name;
        EXPECT_EQ(after.threads, before.threads) << name;
    }
    EXPECT_EQ(std::stoi(lines({"ps"}).at(0).substr(4)), m_application) << "it never ended";
}

} // namespace zm::test
