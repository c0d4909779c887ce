#include "services/bench/commands/Processor.h"
#include "services/bench/commands/Recording.h"
#include "services/bench/commands/Timeline.h"

#include <array>
#include <fstream>

namespace zm::bench::commands {

namespace {

bool record(Call& call) {
    const bool stop = call.arguments.flag("--stop");
    const bool all = call.arguments.flag("--all");
    const std::string file = stop ? "" : call.arguments.word();
    if (!call.arguments.complete() || (stop && all)) {
        return false;
    }
    if (stop) {
        const auto script = call.processor.recording().end();
        call.run->out(script ? *script : "");
        endWith(call.run, script ? ok() : script.failure());
        return true;
    }
    const std::string path = file == "-" ? file : call.run->absolute(file);
    if (!all) {
        endWith(call.run, call.processor.recording().begin(path));
    } else if (file == "-") {
        call.run->out(call.processor.recording().all());
        call.run->finish();
    } else {
        std::ofstream stream(path, std::ios::binary | std::ios::trunc);
        stream << call.processor.recording().all();
        stream.close();
        endWith(call.run, stream ? ok() : Status(systemError(path)));
    }
    return true;
}

// A few minutes: what browsers open at once.
constexpr int TimelineTime = 300000;

bool timeline(Call& call) {
    const auto time = call.arguments.seconds("--seconds");
    const std::string file = call.arguments.word();
    if (!call.arguments.complete()) {
        return false;
    }
    const std::string text = timelineText(call.unit, call.processor.recording(),
                                          std::chrono::milliseconds(time.value_or(TimelineTime)));
    if (file == "-") {
        call.run->out(text);
        call.run->finish();
        return true;
    }
    const std::string path = call.run->absolute(file);
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream << text;
    stream.close();
    endWith(call.run, stream ? ok() : Status(systemError(path)));
    return true;
}

constexpr std::array RecordCommands = {
    Row{"record", record},
    Row{"timeline", timeline},
};

} // namespace

std::span<const Row> recordRows() {
    return RecordCommands;
}

} // namespace zm::bench::commands
