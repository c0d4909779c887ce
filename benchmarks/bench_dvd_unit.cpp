// A DVD in the whole head unit: from its insertion to its first picture, by how much pictures are seen before their sound is
// heard, pictures lost while a film plays, and the processor time beside a player of films that plays the same disc.
#include "base/Paths.h"
#include "benchmarks/BenchUnit.h"
#include "benchmarks/Figure.h"
#include "benchmarks/Peer.h"
#include "platform/linux/pps/PpsFile.h"

#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <optional>
#include <set>

using namespace zm;
using namespace zm::benchmark;
using namespace std::chrono_literals;

namespace {

constexpr double PictureTime = 20; // ms, of an interlaced film
constexpr int LagPictures = 50;
constexpr int Rate = 48000;
constexpr int Loud = 1000;

/** Hears what is played from the named pipe that stands in for the sound device. */
class Ear {
public:
    explicit Ear(const std::string& pipe) {
        ::mkfifo(pipe.c_str(), 0600);
        m_pipe = ::open(pipe.c_str(), O_RDWR | O_CLOEXEC);
        require(m_pipe >= 0, "no named pipe " + pipe);
        m_thread = std::thread([this] { listen(); });
    }
    ~Ear() {
        m_over = true;
        const int16_t last[2]{};
        [[maybe_unused]] const auto written = ::write(m_pipe, last, sizeof last);
        m_thread.join();
        ::close(m_pipe);
    }
    /** When sound began behind silence. */
    std::vector<Clock::time_point> beeps() {
        const std::lock_guard lock(m_mutex);
        return m_beeps;
    }
    void forget() {
        const std::lock_guard lock(m_mutex);
        m_beeps.clear();
    }

private:
    void listen() {
        int16_t samples[4096];
        int silent = 0;
        while (!m_over) {
            const ssize_t size = ::read(m_pipe, samples, sizeof samples);
            // A buffer is written when its first sample is to be heard.
            const auto now = Clock::now();
            for (ssize_t i = 0; 4 * i + 4 <= size; ++i) {
                if (std::abs(static_cast<int>(samples[2 * i])) < Loud) {
                    ++silent;
                } else if (std::exchange(silent, 0) > Rate / 5) {
                    const std::lock_guard lock(m_mutex);
                    m_beeps.push_back(now + std::chrono::microseconds(i * 1'000'000 / Rate));
                }
            }
        }
    }

    int m_pipe = -1;
    std::atomic<bool> m_over = false;
    std::thread m_thread;
    std::mutex m_mutex;
    std::vector<Clock::time_point> m_beeps;
};

/** A head unit with its children, for DVDs; this process is its head unit. */
class DvdBench {
public:
    DvdBench(const std::string& runtime, const std::string& build)
        : m_unit(options(runtime, build), [this](const Image& frame) { composed(frame); }) {
        auto control = PpsFile::open(ppsSocket(runtime), "/pps/zelmar/disc/control?delta", 257, 0666);
        require(static_cast<bool>(control), "no object for commands");
        m_control.emplace(std::move(*control));
        std::this_thread::sleep_for(3s); // the start of all programs is over
    }

    /** Milliseconds to the first composed frame whose middle is `red`. */
    double insert(const std::string& disc) {
        const auto begin = Clock::now();
        m_unit.run(
            [&](bench::unit::HeadUnit& unit) { require(bool(unit.drive().insert(disc)), "no drive"); });
        require(
            m_unit.waitFor([this] { return m_colour[0] > 200 && m_colour[1] < 60 && m_colour[2] < 60; }, 20s),
            "the first picture does not come");
        return std::chrono::duration<double, std::milli>(m_changed - begin).count();
    }
    /** Another disc in place of the one inside; waits until it plays. */
    void put(const std::string& disc) {
        m_unit.run(
            [&](bench::unit::HeadUnit& unit) { require(bool(unit.drive().insert(disc)), "no drive"); });
        std::this_thread::sleep_for(3s); // the one inside is out
        const auto start = Clock::now();
        for (uint64_t before = pictures().count; pictures().count < before + 20;
             before = std::min(before, pictures().count)) {
            require(millisecondsSince(start) < 20000, "the disc does not play");
            std::this_thread::sleep_for(20ms);
        }
    }
    void command(int number, int first = 0, int second = 0) {
        const auto status = m_control->write("@control\nzmcmd:json:{\"cmd\":" + std::to_string(number) +
                                             ",\"param1\":" + std::to_string(first) +
                                             ",\"param2\":" + std::to_string(second) + "}\n");
        require(static_cast<bool>(status), "a command is not taken");
    }
    void forgetFlashes() {
        m_unit.run([this](bench::unit::HeadUnit&) { m_flashes.clear(); });
    }
    std::vector<Clock::time_point> flashes() {
        std::vector<Clock::time_point> copy;
        m_unit.run([&](bench::unit::HeadUnit&) { copy = m_flashes; });
        return copy;
    }

    /** By how many milliseconds the most punctual of some pictures is behind its number. */
    double lag() {
        double least = std::numeric_limits<double>::max();
        uint64_t before = pictures().count;
        for (int i = 0; i < LagPictures;) {
            const Pictures now = pictures();
            if (now.count != before) {
                before = now.count;
                const std::chrono::duration<double, std::milli> time = now.at.time_since_epoch();
                least = std::min(least, time.count() - double(now.count) * PictureTime);
                ++i;
            }
            std::this_thread::sleep_for(1ms);
        }
        return least;
    }
    /** Processor time of the head unit so far: this process, the application, the disc service and what it has started. */
    double used() {
        std::set<int> groups;
        m_unit.run([&](bench::unit::HeadUnit& unit) {
            for (bench::unit::Child* child : unit.children()) {
                groups.insert(child->pid());
            }
        });
        double sum = processorTime(getpid());
        for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
            const int pid = std::atoi(entry.path().filename().c_str());
            // Each child of the head unit leads a group of its own.
            if (pid > 0 && groups.contains(getpgid(pid))) {
                sum += processorTime(pid);
            }
        }
        return sum;
    }

private:
    struct Pictures {
        uint64_t count = 0;
        Clock::time_point at;
    };

    static bench::unit::HeadUnitOptions options(const std::string& runtime, const std::string& build) {
        bench::unit::HeadUnitOptions result = unitOptions(runtime, build);
        result.discService = true;
        // A disc that is inserted brings the player to the front.
        result.launcher = bench::unit::LauncherMode::Active;
        return result;
    }
    Pictures pictures() {
        Pictures now;
        m_unit.run([&](bench::unit::HeadUnit& unit) {
            const auto count = unit.compositor().videoState().at("frames").get<uint64_t>();
            if (count != m_pictures.count) {
                m_pictures = {count, Clock::now()};
            }
            now = m_pictures;
        });
        return now;
    }
    void composed(const Image& frame) {
        const size_t middle = (static_cast<size_t>(frame.height) / 2 * static_cast<size_t>(frame.width) +
                               static_cast<size_t>(frame.width) / 2) *
                              4;
        const bool wasBright = m_bright;
        for (size_t i = 0; i < 3; ++i) {
            m_colour[i] = frame.pixels[middle + 2 - i]; // red, green, blue
        }
        m_changed = Clock::now();
        m_bright = m_colour[0] > 128 && m_colour[1] > 128 && m_colour[2] > 128;
        if (m_bright && !wasBright) {
            m_flashes.push_back(m_changed);
        }
    }

    std::array<int, 3> m_colour{};
    Clock::time_point m_changed;
    bool m_bright = false;
    std::vector<Clock::time_point> m_flashes;
    Pictures m_pictures;
    std::optional<PpsFile> m_control;
    BenchUnit m_unit;
};

// A player that decodes the first title and brings it to the screen's size, into nothing.
std::vector<std::string> mpv(const std::string& disc, const std::string& filter) {
    return {"mpv",       "--no-config",         "--really-quiet",
            "--vo=null", "--ao=null",           "--vf=" + filter + "scale=800:480,format=bgr0",
            "dvd://",    "--dvd-device=" + disc};
}

void together(DvdBench& bench, Ear& ear, const std::string& where, size_t count) {
    std::this_thread::sleep_for(300ms); // what was on its way
    bench.forgetFlashes();
    ear.forget();
    std::vector<double> leads;
    for (const auto start = Clock::now(); leads.size() < count; std::this_thread::sleep_for(50ms)) {
        require(millisecondsSince(start) < 20000, "no flashes with beeps in " + where);
        leads.clear();
        const auto beeps = ear.beeps();
        for (const auto flash : bench.flashes()) {
            for (const auto beep : beeps) {
                const double lead = std::chrono::duration<double, std::milli>(beep - flash).count();
                if (std::abs(lead) < 400) {
                    leads.push_back(lead);
                }
            }
        }
    }
    const double middle = median(leads);
    print({"DVD: sound and composed picture apart, " + where,
           "ms",
           std::abs(middle),
           40,
           {},
           0,
           false,
           middle < 0 ? "the sound is earlier" : "the picture is earlier"});
}

void film(DvdBench& bench, const std::string& disc, int seconds) {
    const Peer plain(mpv(disc, ""));
    const Peer deinterlacing(mpv(disc, "bwdif,"));
    bench.put(disc);
    std::this_thread::sleep_for(2s);
    const double lagBefore = bench.lag();
    const double before = bench.used();
    const double plainBefore = plain.used();
    const double deinterlacingBefore = deinterlacing.used();
    const auto start = Clock::now();
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    const double time = millisecondsSince(start);
    const double ours = (bench.used() - before) / time * 100;
    const double plainShare = (plain.used() - plainBefore) / time * 100;
    const double deinterlacingShare = (deinterlacing.used() - deinterlacingBefore) / time * 100;
    const double lost = std::round((bench.lag() - lagBefore) / PictureTime);
    print({"DVD: pictures lost in " + std::to_string(seconds) + " s of interlaced film", "pictures",
           std::max(0.0, lost), 0});
    // What the peer does without deinterlacing is told beside it: it saves half the pictures.
    const std::string note =
        "without deinterlacing mpv takes " + std::to_string(std::lround(plainShare)) + " %";
    print({"DVD: processor share of all processes, interlaced, 6 Mbit/s", "% of a core", ours, 1.2,
           "mpv to 800x480 with its deinterlacer (bwdif), at the same time", deinterlacingShare, true, note});
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 7) {
        std::fprintf(stderr, "usage: bench_dvd_unit RUNTIME-FOLDER BUILD-FOLDER RED-DISC SYNC-DISC FILM-DISC "
                             "SECONDS-OF-FILM\n");
        return 2;
    }
    const std::string runtime = argv[1];
    prepareRuntime(runtime);
    const std::string pipe = runtime + "/sound";
    setenv("ZM_SOUND", pipe.c_str(), 1);
    Ear ear(pipe);
    DvdBench bench(runtime, argv[2]);
    bench.command(187, 1, 0);
    print({"DVD: insertion to its first picture on the composed frame", "ms", bench.insert(argv[3]), 1500});

    bench.put(argv[4]);
    together(bench, ear, "a menu", 5);
    bench.command(188, 360, 240);
    std::this_thread::sleep_for(500ms);
    together(bench, ear, "a title over its chapters", 5);
    bench.command(183, 3);
    together(bench, ear, "after a jump to a chapter", 2);
    bench.command(184, 2);
    together(bench, ear, "after a jump to a title", 2);
    bench.command(21);
    together(bench, ear, "after the menu key", 2);

    film(bench, argv[5], std::atoi(argv[6]));
    return 0;
}
