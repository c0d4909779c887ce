#pragma once

#include "services/bench/unit/HeadUnit.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace zm::benchmark {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start);
/** Ends the program with a message unless `fine`. */
void require(bool fine, const std::string& message);
/** Sets the environment that children and libraries read, and makes the runtime folder. */
void prepareRuntime(const std::string& runtime);
/** The head unit's options for programs of the folder `build`, without a disc service. */
bench::unit::HeadUnitOptions unitOptions(const std::string& runtime, const std::string& build);

/** Whether a pixel of `area` is brighter than the page's ground. */
bool anythingLit(const Image& frame, const Rect& area);

/** A head unit on a thread of its own that composes each frame at once, as a display would. */
class BenchUnit {
public:
    /** `composed` is called with each frame on the head unit's thread. */
    BenchUnit(bench::unit::HeadUnitOptions options, std::function<void(const Image& frame)> composed);
    ~BenchUnit();
    BenchUnit(const BenchUnit&) = delete;
    BenchUnit& operator=(const BenchUnit&) = delete;

    /** Waits until `holds`, which is asked after each frame; false when `limit` is over. Any other thread. */
    bool waitFor(const std::function<bool()>& holds,
                 std::chrono::milliseconds limit = std::chrono::seconds(10));
    /** Runs `task` on the head unit's thread and waits for it. */
    void run(const std::function<void(bench::unit::HeadUnit& unit)>& task);
    /** A message to the application's framework and the data of its answer. Any other thread. */
    Json ask(const Json& message);

    Clock::time_point started;

private:
    std::thread m_thread;
    EventLoop* m_loop = nullptr;
    bench::unit::HeadUnit* m_unit = nullptr;
    std::mutex m_mutex;
    std::condition_variable m_changed;
};

/** Processor time that a process has used, in milliseconds. */
double processorTime(int pid);

} // namespace zm::benchmark
