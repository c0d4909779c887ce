#include "benchmarks/BenchUnit.h"

#include "base/Paths.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <future>

namespace zm::benchmark {

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void require(bool fine, const std::string& message) {
    if (!fine) {
        std::fprintf(stderr, "%s\n", message.c_str());
        std::_Exit(1);
    }
}

void prepareRuntime(const std::string& runtime) {
    setenv("ZM_RUNTIME", runtime.c_str(), 1);
    const auto made = makeRuntimeDir(runtime);
    require(static_cast<bool>(made), made ? "" : made.error());
}

bench::unit::HeadUnitOptions unitOptions(const std::string& runtime, const std::string& build) {
    bench::unit::HeadUnitOptions options;
    options.runtimeDir = runtime;
    options.shareDir = build + "/share";
    options.catalogue = runtime + "/catalogue.sqlite";
    options.programDir = build + "/bin";
    options.discService = false;
    options.launcher = bench::unit::LauncherMode::Passive;
    return options;
}

bool anythingLit(const Image& frame, const Rect& area) {
    constexpr uint8_t Bright = 60;
    for (int y = area.y; y < area.y + area.h; ++y) {
        for (int x = area.x; x < area.x + area.w; ++x) {
            const size_t at =
                (static_cast<size_t>(y) * static_cast<size_t>(frame.width) + static_cast<size_t>(x)) * 4;
            if (frame.pixels[at] > Bright || frame.pixels[at + 1] > Bright || frame.pixels[at + 2] > Bright) {
                return true;
            }
        }
    }
    return false;
}

BenchUnit::BenchUnit(bench::unit::HeadUnitOptions options, std::function<void(const Image& frame)> composed) {
    std::promise<void> ready;
    m_thread = std::thread([this, &ready, options = std::move(options), composed = std::move(composed)] {
        EventLoop loop;
        bench::unit::HeadUnit unit(loop, options);
        unit.compositor().onDamage = [&](Rect) {
            const Image& frame = unit.compositor().compose();
            const std::lock_guard lock(m_mutex);
            composed(frame);
            m_changed.notify_all();
        };
        m_loop = &loop;
        m_unit = &unit;
        started = Clock::now();
        const auto status = unit.start();
        require(static_cast<bool>(status), status ? "" : status.error());
        ready.set_value();
        loop.run();
    });
    ready.get_future().wait();
}

BenchUnit::~BenchUnit() {
    m_loop->quit();
    m_thread.join();
}

bool BenchUnit::waitFor(const std::function<bool()>& holds, std::chrono::milliseconds limit) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, limit, holds);
}

void BenchUnit::run(const std::function<void(bench::unit::HeadUnit& unit)>& task) {
    std::promise<void> done;
    m_loop->post([&] {
        task(*m_unit);
        done.set_value();
    });
    done.get_future().wait();
}

Json BenchUnit::ask(const Json& message) {
    std::promise<Json> answer;
    run([&](bench::unit::HeadUnit& unit) {
        unit.shell().ask(message, [&](Result<Json> data) {
            require(static_cast<bool>(data), "the application does not answer " + message.dump());
            answer.set_value(*data);
        });
    });
    return answer.get_future().get();
}

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

} // namespace zm::benchmark
