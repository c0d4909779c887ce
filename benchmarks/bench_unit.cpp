// The application as a process of its own under a head unit: start, a change's way to the screen, idle load,
// memory.
#include "base/Paths.h"
#include "benchmarks/BenchUnit.h"
#include "benchmarks/Figure.h"
#include "platform/linux/pps/PpsFile.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

using namespace zm;
using namespace zm::benchmark;
using namespace std::chrono_literals;

namespace {

/** What has been composed so far; kept by the head unit's thread while the unit holds its lock. */
struct Seen {
    uint64_t frames = 0;
    bool lit = false;

    void composed(const Image& frame) {
        ++frames;
        lit = lit || anythingLit(frame, {0, 0, frame.width, frame.height});
    }
};

PpsFile openObject(const std::string& runtime, const std::string& name) {
    auto file = PpsFile::open(ppsSocket(runtime), "/pps/zelmar/disc/" + name, 258, 0666);
    require(static_cast<bool>(file), file ? "" : file.error());
    return std::move(*file);
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
    Seen seen;
    BenchUnit unit(unitOptions(runtime, build), [&](const Image& frame) { seen.composed(frame); });
    require(unit.waitFor([&] { return seen.lit; }), "the loading page never came");
    return millisecondsSince(unit.started);
}

void publish(zm::PpsFile& object, const std::string& lines) {
    const auto written = object.write(lines);
    require(static_cast<bool>(written), "a change was not published");
}

void wayToTheScreen(BenchUnit& unit, const Seen& seen, const std::string& runtime) {
    auto device = openObject(runtime, "device");
    auto status = openObject(runtime, "status");
    auto playing = openObject(runtime, "playing");
    publish(device, "disc::1\nmixedtype::2\nmediatype::2\n");
    publish(status, "discstate::2\n");
    std::this_thread::sleep_for(500ms);
    std::vector<double> times;
    for (int second = 1; second <= 300; ++second) {
        uint64_t before = 0;
        unit.run([&](bench::unit::HeadUnit&) { before = seen.frames; });
        const auto start = Clock::now();
        publish(playing,
                "playtime:json:{\"time\":" + std::to_string(second) + ",\"tracktime\":400,\"times\":0}\n");
        require(unit.waitFor([&] { return seen.frames > before; }), "a change never reached the screen");
        times.push_back(millisecondsSince(start));
        std::this_thread::sleep_for(10ms);
    }
    print({"PPS change to composed frame, median", "ms", median(times), 3});
    print({"PPS change to composed frame, 99th percentile", "ms", percentile(times, 0.99), 15});
    publish(status, "discstate::6\n");
    std::this_thread::sleep_for(500ms);
    int pid = 0;
    unit.run([&](bench::unit::HeadUnit& head) { pid = head.shell().pid(); });
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
    prepareRuntime(runtime);
    std::vector<double> starts;
    for (int turn = 0; turn < 5; ++turn) {
        starts.push_back(startTime(runtime, build));
    }
    print({"start of Platen to composed loading page", "ms", median(starts), 250});
    Seen seen;
    BenchUnit unit(unitOptions(runtime, build), [&](const Image& frame) { seen.composed(frame); });
    require(unit.waitFor([&] { return seen.lit; }), "the loading page never came");
    wayToTheScreen(unit, seen, runtime);
    return 0;
}
