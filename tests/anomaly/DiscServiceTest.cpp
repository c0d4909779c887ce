// The disc service takes a disc, plays it and gives it out again and again; each time the next read or thread
// start fails. It must say so where the disc cannot be played, and never stop answering.
#include "tests/anomaly/FaultPoints.h"
#include "tests/disc/DiscUnit.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <iostream>

namespace zm::test {

namespace {

using namespace std::chrono_literals;

constexpr int MostCalls = 200;
constexpr auto Patience = 8s;

class DiscAnomaly : public testing::Test {
protected:
    DiscAnomaly() {
        place(toneFile("mp3", 5, "First", "", "", 1), m_folder / "disc/1.mp3");
        place(toneFile("ogg", 5), m_folder / "disc/sub/2.ogg");
        const std::string command =
            "xorriso -as mkisofs -quiet -J -R -o '" + image() + "' '" + (m_folder / "disc") + "' 2>/dev/null";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
    }

    std::string image() const { return m_folder / "disc.iso"; }

    /** What became of the disc: "plays", "unreadable" or "refused"; empty: nothing did in time. */
    std::string insert(DiscUnit& unit) {
        size_t from = unit.recorder().all().size();
        unit.request({{"op", "insert"}, {"path", image()}});
        std::string fate;
        bool taken = false;
        unit.recorder().wait(
            from,
            [&](const Published& each) {
                taken = taken || (each.name == "disc" && each.value == "1");
                if (each.name == "discstate" && each.value == "2") {
                    fate = "plays";
                } else if (each.name == "discstate" && each.value == "9") {
                    fate = "unreadable";
                } else if (each.name == "drivestate" && each.json()["state"] == "error" && !taken) {
                    fate = "refused";
                }
                return !fate.empty();
            },
            Patience);
        return fate;
    }

    /** Asks for the disc; the answer comes at once, the disc a little later. */
    void eject(DiscUnit& unit) {
        unit.mark();
        unit.request({{"op", "eject"}});
        unit.nextState(disc::model::PlayState::Ejecting, Patience);
    }

    void waitUntilEmpty(DiscUnit& unit) {
        unit.next(
            "drivestate", [](const Published& each) { return each.json()["state"] == "empty"; }, Patience);
    }

    /** Rows without a name in the catalogue as it stands. */
    static int halfRows(const std::string& file) {
        sqlite3* db = nullptr;
        sqlite3_stmt* statement = nullptr;
        int rows = -1;
        if (sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK &&
            sqlite3_prepare_v2(db, "SELECT count(*) FROM files WHERE filename IS NULL OR filename = ''", -1,
                               &statement, nullptr) == SQLITE_OK &&
            sqlite3_step(statement) == SQLITE_ROW) {
            rows = sqlite3_column_int(statement, 0);
        }
        sqlite3_finalize(statement);
        sqlite3_close(db);
        return rows;
    }

    static size_t descriptors() {
        return static_cast<size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
    }

    /** Whether nobody has the disc open any more. */
    bool isClosed() const {
        for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
            std::error_code gone; // the descriptor of the iterator itself, for one
            if (std::filesystem::read_symlink(entry, gone) == image()) {
                return false;
            }
        }
        return true;
    }

    /** Threads that read are left to themselves: they close the disc when they notice. */
    bool waitUntilClosed(size_t usual = SIZE_MAX) const {
        const auto deadline = std::chrono::steady_clock::now() + Patience;
        auto closed = [&] { return isClosed() && descriptors() <= usual; };
        while (!closed() && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(2ms);
        }
        return closed();
    }

    /** Calls of `kind` that a whole turn makes when the `number`-th fails. */
    int turn(FaultKind kind, int number, std::string& fate) {
        DiscUnit unit;
        unit.startService();
        unit.command(187, 1, 0);
        armFault(kind, number);
        fate = insert(unit);
        if (fate != "refused") {
            eject(unit);
        }
        const int calls = faultCalls();
        armFault(FaultKind::Count, 0);
        EXPECT_EQ(halfRows(unit.catalogue()), 0);
        if (fate == "unreadable") {
            waitUntilEmpty(unit);
        }
        if (fate != "plays") {
            EXPECT_EQ(insert(unit), "plays") << "the same disc once more";
        }
        return calls;
    }

    void everyCall(FaultKind kind) {
        std::string fate;
        ASSERT_GT(turn(kind, 0, fate), 0) << "a disc needs no such call";
        ASSERT_EQ(fate, "plays");
        ASSERT_TRUE(waitUntilClosed());
        const size_t usual = descriptors();
        int number = 1;
        for (; number < MostCalls; ++number) {
            SCOPED_TRACE("call " + std::to_string(number));
            const bool failed = turn(kind, number, fate) >= number;
            EXPECT_FALSE(fate.empty()) << "nothing became of the disc";
            EXPECT_TRUE(waitUntilClosed(usual)) << descriptors() << " descriptors, " << usual << " before";
            ASSERT_FALSE(HasFailure());
            if (!failed) {
                EXPECT_EQ(fate, "plays");
                break;
            }
        }
        EXPECT_LT(number, MostCalls);
        std::cout << number - 1 << " calls failed, one after the other\n";
    }

    TempFolder m_folder;
};

} // namespace

TEST_F(DiscAnomaly, EveryReadOfTheDiscMayFailOnce) {
    everyCall(FaultKind::DiscRead);
}

TEST_F(DiscAnomaly, EveryThreadThatReadsMayFailToStart) {
    everyCall(FaultKind::ThreadStart);
}

TEST_F(DiscAnomaly, AThreadThatIsMissingAtTheStartIsAnErrorOrIsStartedLater) {
    int failures = 0;
    for (int number = 1; number < MostCalls; ++number) {
        SCOPED_TRACE("thread " + std::to_string(number));
        DiscUnit unit;
        const std::string error = unit.tryService("", [&] { armFault(FaultKind::ThreadStart, number); });
        const bool failed = faultCalls() >= number;
        armFault(FaultKind::Count, 0);
        if (error.empty()) {
            unit.command(187, 1, 0);
            EXPECT_EQ(insert(unit), "plays");
        } else {
            EXPECT_NE(error.find("no thread can be started"), std::string::npos) << error;
            ++failures;
        }
        if (!failed) {
            EXPECT_EQ(error, "");
            break;
        }
    }
    EXPECT_EQ(failures, 1) << "only without its commands it is of no use";
}

} // namespace zm::test
