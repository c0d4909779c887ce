#include "base/Paths.h"
#include "platform/linux/slog/LogFile.h"
#include "services/bench/commands/Processor.h"
#include "services/bench/commands/Settle.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <limits>

namespace zm::bench::commands {

namespace {

constexpr std::chrono::milliseconds FollowInterval(50);
constexpr std::chrono::seconds SettleTime(10);
constexpr std::chrono::minutes AdvanceTime(2);

void print(Run& run, const std::vector<LogEntry>& entries, bool withTime) {
    std::string lines;
    for (const auto& entry : entries) {
        lines +=
            (withTime ? entry.time + " " : "") + std::to_string(entry.severity) + " " + entry.text + "\n";
    }
    run.out(lines);
}

void follow(Call& call, std::shared_ptr<LogReader> reader, bool withTime) {
    auto timer = std::make_shared<SourceHandle>();
    *timer = everyInterval(call.unit.loop(), FollowInterval,
                           [run = call.run, reader, withTime] { print(*run, reader->readNew(), withTime); });
    call.run->onEnd = [timer, &loop = call.unit.loop()] { loop.post([timer] { timer->reset(); }); };
}

bool log(Call& call) {
    const auto count = call.arguments.number("-n", 0);
    const bool withTime = call.arguments.flag("--time");
    const bool following = call.arguments.flag("--follow");
    if (!call.arguments.complete()) {
        return false;
    }
    auto reader = std::make_shared<LogReader>(logFile(call.unit.options().runtimeDir));
    const size_t most = count ? static_cast<size_t>(*count) : std::numeric_limits<size_t>::max();
    print(*call.run, reader->last(most), withTime);
    if (following) {
        follow(call, std::move(reader), withTime);
    } else {
        call.run->finish();
    }
    return true;
}

void settleAndEnd(Call& call, std::chrono::milliseconds timeout) {
    commands::settle(call.unit, timeout, [run = call.run](const Status& status) { endWith(run, status); });
}

bool settleCommand(Call& call) {
    const auto milliseconds = call.arguments.seconds("-t");
    if (!call.arguments.complete()) {
        return false;
    }
    settleAndEnd(call, milliseconds ? std::chrono::milliseconds(*milliseconds) : SettleTime);
    return true;
}

// A drive that runs meanwhile has its signals at their moments: time passes from one to the next.
void letPass(Call call, std::chrono::milliseconds left) {
    auto& journey = call.unit.journey();
    const auto step = std::min(left, journey.untilNext().value_or(left));
    call.unit.shell().ask(
        {{"t", "advance"}, {"ms", step.count()}},
        [call, left, step](const Result<Json>& reply) mutable {
            if (!reply) {
                call.run->fail(reply.error());
                return;
            }
            call.unit.journey().pass(step);
            commands::settle(call.unit, SettleTime, [call, left, step](const Status& settled) {
                left == step || !settled ? endWith(call.run, settled) : letPass(call, left - step);
            });
        },
        AdvanceTime);
}

bool clock(Call& call) {
    const bool advance = call.arguments.word() == "advance";
    const int milliseconds = call.arguments.number();
    if (!call.arguments.complete() || !advance || milliseconds < 0) {
        return false;
    }
    if (call.unit.options().clock == unit::ClockMode::Real) {
        call.run->fail("the clock runs by itself: start the bench with --manual-clock");
        return true;
    }
    letPass(call, std::chrono::milliseconds(milliseconds));
    return true;
}

bool processes(Call& call) {
    if (!call.arguments.complete()) {
        return false;
    }
    std::string lines;
    for (const unit::Child* child : call.unit.children()) {
        lines += child->name() + " " + (child->pid() > 0 ? std::to_string(child->pid()) : "-") + " " +
                 child->describeState() +
                 (child->deaths() > 0 ? " (deaths: " + std::to_string(child->deaths()) + ")" : "") + "\n";
    }
    if (!call.unit.child("app") && call.unit.shell().connected()) {
        lines += "app " + std::to_string(call.unit.shell().pid()) + " running, not started by this bench\n";
    }
    call.run->out(lines);
    call.run->finish();
    return true;
}

bool kill(Call& call) {
    const std::string name = call.arguments.word();
    if (!call.arguments.complete() || (name != "app" && name != "disc")) {
        return false;
    }
    unit::Child* child = call.unit.child(name);
    if (!child || !child->kill()) {
        call.run->fail(name + " is not running");
    } else {
        call.run->finish();
    }
    return true;
}

constexpr std::array SystemCommands = {
    Row{"log", log},      Row{"clock", clock}, Row{"settle", settleCommand},
    Row{"ps", processes}, Row{"kill", kill},
};

} // namespace

std::span<const Row> systemRows() {
    return SystemCommands;
}

} // namespace zm::bench::commands
