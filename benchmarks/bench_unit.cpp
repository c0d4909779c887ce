// The application as a process of its own under a head unit: start, a change's way to the screen, idle load,
// memory.
#include "base/Paths.h"
#include "benchmarks/Figure.h"
#include "platform/linux/pps/PpsFile.h"
#include "services/bench/HeadUnit.h"

#include <unistd.h>

#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <mutex>
#include <thread>

using namespace zm;
using namespace zm::bench;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

/** Says when the composed frame changed. */
class FrameWatch {
public:
    void composed(bool lit) {
        const std::lock_guard lock(m_mutex);
        ++m_frames;
        m_lit = m_lit || lit;
        m_changed.notify_all();
    }
    uint64_t frames() {
        const std::lock_guard lock(m_mutex);
        return m_frames;
    }
    bool waitFor(uint64_t frame) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, 5s, [&] { return m_frames >= frame; });
    }
    bool waitForPicture() {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, 10s, [&] { return m_lit; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    uint64_t m_frames = 0;
    bool m_lit = false;
};

bool anythingLit(const Image& frame) {
    for (size_t i = 0; i < frame.pixels.size(); i += 4) {
        if (frame.pixels[i] > 60 || frame.pixels[i + 1] > 60 || frame.pixels[i + 2] > 60) {
            return true;
        }
    }
    return false;
}

/** A head unit on a thread of its own with the application as its child. */
class Bench {
public:
    Bench(const std::string& runtime, const std::string& build) : m_runtime(runtime) {
        std::promise<void> ready;
        m_thread = std::thread([this, build, &ready] {
            EventLoop loop;
            HeadUnit unit(loop, {.runtimeDir = m_runtime,
                                 .shareDir = build + "/share",
                                 .catalogue = m_runtime + "/none.sqlite",
                                 .programDir = build + "/bin",
                                 .discService = false,
                                 .launcher = LauncherMode::Passive});
            unit.compositor().onDamage = [this, &unit](Rect) {
                watch.composed(anythingLit(unit.compositor().compose()));
            };
            m_loop = &loop;
            m_unit = &unit;
            started = Clock::now();
            if (auto status = unit.start(); !status) {
                std::fprintf(stderr, "%s\n", status.error().c_str());
                std::exit(1);
            }
            ready.set_value();
            loop.run();
        });
        ready.get_future().wait();
    }
    ~Bench() {
        m_loop->quit();
        m_thread.join();
    }
    int applicationPid() {
        std::promise<int> pid;
        m_loop->post([&] { pid.set_value(m_unit->shell().pid()); });
        return pid.get_future().get();
    }

    FrameWatch watch;
    Clock::time_point started;

private:
    std::string m_runtime;
    std::thread m_thread;
    EventLoop* m_loop = nullptr;
    HeadUnit* m_unit = nullptr;
};

PpsFile openObject(const std::string& runtime, const std::string& name) {
    auto file = PpsFile::open(ppsSocket(runtime), "/pps/zelmar/disc/" + name, 258, 0666);
    if (!file) {
        std::fprintf(stderr, "%s\n", file.error().c_str());
        std::exit(1);
    }
    return std::move(*file);
}

/** Processor time that the process has used, in milliseconds. */
double processorTime(int pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string word;
    for (int field = 1; field <= 13; ++field) {
        stat >> word;
    }
    double user = 0;
    double system = 0;
    stat >> user >> system;
    return (user + system) * 1000 / static_cast<double>(sysconf(_SC_CLK_TCK));
}

double residentMegabytes(int pid) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmRSS:")) {
            return std::atof(line.c_str() + 6) / 1024;
        }
    }
    return 0;
}

double startTime(const std::string& runtime, const std::string& build) {
    Bench bench(runtime, build);
    if (!bench.watch.waitForPicture()) {
        std::fprintf(stderr, "the loading page never came\n");
        std::exit(1);
    }
    return std::chrono::duration<double, std::milli>(Clock::now() - bench.started).count();
}

void wayToTheScreen(Bench& bench, const std::string& runtime) {
    auto device = openObject(runtime, "device");
    auto status = openObject(runtime, "status");
    auto playing = openObject(runtime, "playing");
    device.write("disc::1\nmixedtype::2\nmediatype::2\n");
    status.write("discstate::2\n");
    std::this_thread::sleep_for(500ms);
    std::vector<double> times;
    for (int second = 1; second <= 300; ++second) {
        const uint64_t next = bench.watch.frames() + 1;
        const auto start = Clock::now();
        playing.write("playtime:json:{\"time\":" + std::to_string(second) +
                      ",\"tracktime\":400,\"times\":0}\n");
        if (!bench.watch.waitFor(next)) {
            std::fprintf(stderr, "a change never reached the screen\n");
            std::exit(1);
        }
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        std::this_thread::sleep_for(10ms);
    }
    print({"PPS change to composed frame, median", "ms", median(times), 3});
    print({"PPS change to composed frame, 99th percentile", "ms", percentile(times, 0.99), 15});
    status.write("discstate::6\n");
    std::this_thread::sleep_for(500ms);
    const int pid = bench.applicationPid();
    const double before = processorTime(pid);
    std::this_thread::sleep_for(10s);
    print({"Platen idle on the play page, paused", "% of a core", (processorTime(pid) - before) / 10000 * 100,
           1});
    print({"Platen resident memory", "MB", residentMegabytes(pid), 80});
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: bench_unit RUNTIME-FOLDER BUILD-FOLDER\n");
        return 2;
    }
    const std::string runtime = argv[1];
    const std::string build = argv[2];
    setenv("ZM_RUNTIME", runtime.c_str(), 1);
    if (auto made = makeRuntimeDir(runtime); !made) {
        std::fprintf(stderr, "%s\n", made.error().c_str());
        return 1;
    }
    std::vector<double> starts;
    for (int turn = 0; turn < 5; ++turn) {
        starts.push_back(startTime(runtime, build));
    }
    print({"start of Platen to composed loading page", "ms", median(starts), 250});
    Bench bench(runtime, build);
    bench.watch.waitForPicture();
    wayToTheScreen(bench, runtime);
    return 0;
}
