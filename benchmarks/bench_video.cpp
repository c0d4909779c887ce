// A video file in the head unit for some seconds: frames lost, processor time of all processes beside a bare
// pipeline that plays the same file; and a touch's way to the overlay.
#include "base/Paths.h"
#include "benchmarks/BenchUnit.h"
#include "benchmarks/Figure.h"
#include "benchmarks/Peer.h"

#include <nlohmann/json.hpp>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>

using namespace zm;
using namespace zm::benchmark;
using namespace std::chrono_literals;

namespace {

constexpr double FrameTime = 40; // ms
constexpr int LagFrames = 25;
constexpr auto Window = 4s;
constexpr int Windows = 5;
constexpr int Touches = 5;

/** What the screen shows of the decoder's frames; kept by the head unit's thread. */
struct Seen {
    uint64_t frames = 0;
    Clock::time_point at; ///< when the newest came
    bool lit = false;
};

/** A head unit with its children that plays the only file of a folder; this process is its head unit. */
class VideoBench {
public:
    VideoBench(const std::string& runtime, const std::string& build, const std::string& disc)
        : m_unit(options(runtime, build, disc), [this](const Image& frame) { composed(frame); }) {}

    /** Waits until the video is seen. */
    void begin() {
        bool posted = false;
        for (const auto start = Clock::now(); !posted; std::this_thread::sleep_for(20ms)) {
            require(millisecondsSince(start) < 20000, "the video never came to the screen");
            posted = frames().frames > 0;
        }
        std::this_thread::sleep_for(1s); // its start is over
    }

    /**
     * By how many milliseconds the pictures are behind their number; each one lost adds its time. The most
     * punctual of a second counts, as any may be seen late.
     */
    double lag() {
        double least = std::numeric_limits<double>::max();
        for (int i = 0; i < LagFrames; ++i) {
            const Seen now = nextFrame();
            const std::chrono::duration<double, std::milli> time = now.at.time_since_epoch();
            least = std::min(least, time.count() - static_cast<double>(now.frames) * FrameTime);
        }
        return least;
    }

    /** Processor time of head unit, application and disc service so far. */
    double used() {
        double sum = processorTime(getpid());
        m_unit.run([&](bench::unit::HeadUnit& unit) {
            for (bench::unit::Child* child : unit.children()) {
                sum += processorTime(child->pid());
            }
        });
        return sum;
    }

    /** Milliseconds from a touch to the first frame with the overlay; the video itself is black. */
    double touchToOverlay() {
        require(m_unit.waitFor([&] { return !m_seen.lit; }, 15s), "the overlay does not go");
        const auto start = Clock::now();
        m_unit.ask({{"t", "touch"}, {"x", 400}, {"y", 200}, {"hold", 0}});
        require(m_unit.waitFor([&] { return m_seen.lit; }), "the overlay does not come");
        const double time = std::chrono::duration<double, std::milli>(m_lit - start).count();
        m_unit.ask({{"t", "touch"}, {"x", 400}, {"y", 200}, {"hold", 0}});
        return time;
    }

private:
    // What is seen when the newest frame has just come.
    Seen nextFrame() {
        const uint64_t before = frames().frames;
        Seen now;
        do {
            now = frames();
            require(millisecondsSince(now.at) < 5000, "the video stands still");
            std::this_thread::sleep_for(1ms);
        } while (now.frames == before);
        return now;
    }

    static bench::unit::HeadUnitOptions options(const std::string& runtime, const std::string& build,
                                                const std::string& disc) {
        bench::unit::HeadUnitOptions result = unitOptions(runtime, build);
        result.discService = true;
        result.disc = disc;
        return result;
    }

    void composed(const Image& frame) {
        const bool lit = anythingLit(frame, {0, 0, frame.width, frame.height});
        if (lit && !m_seen.lit) {
            m_lit = Clock::now();
        }
        m_seen.lit = lit;
    }

    Seen frames() {
        Seen now;
        m_unit.run([&](bench::unit::HeadUnit& unit) {
            const auto count = unit.compositor().videoState().at("frames").get<uint64_t>();
            if (count != m_seen.frames) {
                m_seen.frames = count;
                m_seen.at = Clock::now();
            }
            now = m_seen;
        });
        return now;
    }

    Seen m_seen;
    Clock::time_point m_lit;
    BenchUnit m_unit;
};

// A bare pipeline that plays the same file, decoded and brought to the screen's size.
std::vector<std::string> barePipeline(const std::string& file) {
    return {
        "gst-launch-1.0",
        "-q",
        "playbin",
        "uri=file://" + file,
        "video-sink=videoconvertscale ! video/x-raw,format=BGRx,width=800,height=480 ! fakesink sync=true",
        "audio-sink=fakesink sync=true"};
}

void playing(VideoBench& bench, const std::string& name, const std::string& file) {
    const Peer peer(barePipeline(file));
    bench.begin();
    const double lagBefore = bench.lag();
    std::vector<double> ours;
    std::vector<double> theirs;
    for (int window = 0; window < Windows; ++window) {
        const double before = bench.used();
        const double peerBefore = peer.used();
        const auto start = Clock::now();
        std::this_thread::sleep_for(Window);
        const double time = millisecondsSince(start);
        ours.push_back((bench.used() - before) / time * 100);
        theirs.push_back((peer.used() - peerBefore) / time * 100);
    }
    const double lost = std::round((bench.lag() - lagBefore) / FrameTime);
    print({name + ", frames lost in 20 s", "frames", std::max(0.0, lost), 0});
    print({name + ", processor share of all processes", "% of a core", median(ours), 1.5,
           "gst-launch-1.0 playbin to null sinks, picture as 800x480 BGRx, at the same time", median(theirs),
           true, "medians of five windows of four seconds"});
}

void overlay(VideoBench& bench) {
    bench.begin();
    std::vector<double> times;
    for (int turn = 0; turn < Touches; ++turn) {
        times.push_back(bench.touchToOverlay());
    }
    print({"touch to overlay on the composed frame", "ms", median(times), 30});
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fprintf(stderr, "usage: bench_video RUNTIME-FOLDER BUILD-FOLDER NAME|overlay FILE\n");
        return 2;
    }
    const std::string runtime = argv[1];
    const std::string name = argv[3];
    const std::filesystem::path file = std::filesystem::absolute(argv[4]);
    prepareRuntime(runtime);
    VideoBench bench(runtime, argv[2], file.parent_path().string());
    if (name == "overlay") {
        overlay(bench);
    } else {
        playing(bench, name, file.string());
    }
    return 0;
}
