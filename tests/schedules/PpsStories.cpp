#include "platform/linux/framework/PpsMonitor.h"
#include "platform/linux/framework/PpsSlot.h"
#include "platform/linux/pps/PpsFile.h"
#include "tests/schedules/Schedules.h"
#include "tests/support/RunningPpsService.h"
#include "tests/support/TemporaryFolder.h"

#include <poll.h>

#include <charconv>
#include <string>
#include <thread>
#include <vector>

namespace zm::test {

namespace {

constexpr int ReadWriteCreate = 258;
constexpr int Writes = 8;

class PpsSchedules : public Schedules {
protected:
    PpsFile open(const std::string& name, const std::string& options = "") {
        auto file = PpsFile::open(m_socket, "/pps/order/" + name + options, ReadWriteCreate, 0666);
        EXPECT_TRUE(file) << file.error();
        return std::move(*file);
    }
    /** Each story has objects of its own, which go with it. */
    void unlink(const std::string& name) { EXPECT_TRUE(ppsUnlink(m_socket, "/pps/order/" + name)); }

private:
    TemporaryFolder m_folder;
    std::string m_socket = m_folder.path() + "/pps.sock";
    RunningPpsService m_service{m_socket};
};

void write(PpsFile& file, char attribute) {
    for (int i = 1; i <= Writes; ++i) {
        EXPECT_TRUE(file.write(std::string(1, attribute) + "::" + std::to_string(i) + "\n"));
    }
}

/** Takes the values of two attributes as they come. */
class Reader {
public:
    /** From the present state on. */
    explicit Reader(PpsFile file) : m_file(std::move(file)) { EXPECT_TRUE(m_file.readChanges()); }

    // Each writer's values come in the order in which it wrote them, none is left out, and the last ones arrive.
    void readAll(std::chrono::steady_clock::time_point deadline) {
        int a = 0;
        int b = 0;
        while ((a < Writes || b < Writes) && std::chrono::steady_clock::now() < deadline) {
            pollfd ready{m_file.pollFd(), POLLIN, 0};
            ::poll(&ready, 1, 100);
            const auto changes = m_file.readChanges();
            ASSERT_TRUE(changes) << changes.error();
            for (const auto& each : changes->changes) {
                take(each.text, 'a', a);
                take(each.text, 'b', b);
            }
        }
        EXPECT_EQ(a, Writes);
        EXPECT_EQ(b, Writes);
    }

private:
    static void take(const std::string& text, char attribute, int& latest) {
        const auto at = text.find(std::string(1, attribute) + "::");
        if (at == std::string::npos) {
            return;
        }
        int value = 0;
        std::from_chars(text.data() + at + 3, text.data() + text.size(), value);
        EXPECT_EQ(value, latest + 1) << text;
        latest = value;
    }

    PpsFile m_file;
};

} // namespace

TEST_F(PpsSchedules, EachReaderGetsAllThatTwoWritersWriteInTheirOrder) {
    tell([this](uint64_t seed) {
        const std::string name = "store" + std::to_string(seed);
        PpsFile one = open(name);
        PpsFile other = open(name);
        Reader first(open(name, "?delta"));
        Reader second(open(name, "?delta"));
        std::vector<std::thread> threads;
        threads.emplace_back([&] { write(one, 'a'); });
        threads.emplace_back([&] { write(other, 'b'); });
        threads.emplace_back([&] { first.readAll(deadline()); });
        second.readAll(deadline());
        for (auto& thread : threads) {
            thread.join();
        }
        const auto left = open(name).read();
        ASSERT_TRUE(left) << left.error();
        for (const char* line : {"a::8\n", "b::8\n"}) {
            EXPECT_NE(left->find(line), std::string::npos) << *left;
        }
        unlink(name);
    });
}

TEST_F(PpsSchedules, TheMonitorReportsChangesOfTwoObjectsInTheOrderOfWriting) {
    tell([this](uint64_t seed) {
        const std::string names[] = {"one" + std::to_string(seed), "two" + std::to_string(seed)};
        std::vector<std::string> seen; // on the monitor's thread until it has been drained
        PpsMonitor monitor([&seen](int key, pps_attrib_t* attribute) {
            seen.push_back(std::to_string(key) + " " + attribute->value);
        });
        std::vector<PpsFile> writers;
        for (int key = 0; key < 2; ++key) {
            writers.push_back(open(names[key]));
            auto slot = std::make_shared<PpsSlot>();
            ASSERT_TRUE(slot->put(open(names[key], "?delta")));
            ASSERT_TRUE(monitor.add(key, slot));
        }
        std::vector<std::string> written;
        ASSERT_TRUE(monitor.start());
        EXPECT_TRUE(monitor.drain(deadline())); // has the present states
        for (int i = 0; i < Writes; ++i) {
            for (int key = 0; key < 2; ++key) {
                ASSERT_TRUE(writers[static_cast<size_t>(key)].write("n::" + std::to_string(i) + "\n"));
                written.push_back(std::to_string(key) + " " + std::to_string(i));
            }
        }
        EXPECT_TRUE(monitor.drain(deadline()));
        EXPECT_EQ(seen, written);
        EXPECT_TRUE(monitor.stop());
        unlink(names[0]);
        unlink(names[1]);
    });
}

} // namespace zm::test
