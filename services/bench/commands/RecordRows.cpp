#include "services/bench/commands/Processor.h"
#include "services/bench/commands/Recording.h"

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
        const auto script = call.recording.end();
        call.run->out(script ? *script : "");
        endWith(call.run, script ? ok() : script.failure());
        return true;
    }
    const std::string path = file == "-" ? file : call.run->absolute(file);
    if (!all) {
        endWith(call.run, call.recording.begin(path));
    } else if (file == "-") {
        call.run->out(call.recording.all());
        call.run->finish();
    } else {
        std::ofstream stream(path, std::ios::binary | std::ios::trunc);
        stream << call.recording.all();
        stream.close();
        endWith(call.run, stream ? ok() : Status(systemError(path)));
    }
    return true;
}

constexpr std::array Rows = {
    Row{"record", record},
};

} // namespace

std::span<const Row> recordRows() {
    return Rows;
}

} // namespace zm::bench::commands
