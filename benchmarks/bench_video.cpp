// A video file in the head unit for some seconds: frames lost, processor time of all processes beside a bare
// pipeline that plays the same file; and a touch's way to the overlay.
#include "base/Paths.h"
#include "benchmarks/BenchUnit.h"
#include "benchmarks/Figure.h"

#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

using namespace zm;
using namespace zm::bench;
using namespace std::chrono_literals;

namespace {

constexpr double FramesPerSecond = 25;
constexpr auto Watched = 15s;
constexpr int Touches = 5;

double processorTimeOf(int who) {
    rusage usage{};
    getrusage(who, &usage);
    const auto ms = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
    };
    return ms(usage.ru_utime) + ms(usage.ru_stime);
}

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

    /** The number of frames so far, taken when the newest one has just come. */
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

    /** Processor time of head unit, application and disc service so far. */
    double used() {
        double sum = processorTimeOf(RUSAGE_SELF);
        m_unit.run([&](HeadUnit& unit) {
            for (Child* child : unit.children()) {
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
    static HeadUnitOptions options(const std::string& runtime, const std::string& build,
                                   const std::string& disc) {
        HeadUnitOptions result = unitOptions(runtime, build);
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
        m_unit.run([&](HeadUnit& unit) {
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

/** Share of a core that a bare pipeline needs for the same file, decoded and brought to the screen's size. */
double peerShare(const std::string& file) {
    const double before = processorTimeOf(RUSAGE_CHILDREN);
    const auto start = Clock::now();
    const std::string command =
        "gst-launch-1.0 -q playbin uri=file://" + file +
        " video-sink='videoconvertscale ! video/x-raw,format=BGRx,width=800,height=480 ! fakesink sync=true'"
        " audio-sink='fakesink sync=true' >&2";
    require(std::system(command.c_str()) == 0, "the bare pipeline fails");
    return (processorTimeOf(RUSAGE_CHILDREN) - before) / millisecondsSince(start) * 100;
}

void playing(VideoBench& bench, const std::string& name, const std::string& file) {
    bench.begin();
    const Seen first = bench.nextFrame();
    const double usedBefore = bench.used();
    std::this_thread::sleep_for(Watched);
    const double used = bench.used() - usedBefore;
    const Seen last = bench.nextFrame();
    const double seconds = std::chrono::duration<double>(last.at - first.at).count();
    const double lost =
        std::round(seconds * FramesPerSecond) - static_cast<double>(last.frames - first.frames);
    print({name + ", frames lost in 15 s", "frames", std::max(0.0, lost), 0, "", 0, false,
           std::to_string(last.frames - first.frames) + " frames in " + std::to_string(seconds) + " s"});
    const double share = used / std::chrono::duration<double, std::milli>(Watched).count() * 100;
    print({name + ", processor share of all processes", "% of a core", share, 1.5,
           "gst-launch-1.0 playbin to null sinks, picture as 800x480 BGRx", peerShare(file), true});
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
