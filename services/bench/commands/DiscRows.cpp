#include "base/ProgramFolders.h"
#include "services/bench/commands/Insertion.h"
#include "services/bench/commands/Processor.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>

namespace zm::bench::commands {

namespace {

// Whether there is a drive to talk to; ends the command if not.
bool hasDrive(Call& call) {
    if (call.unit.child("disc")) {
        return true;
    }
    call.run->fail("this bench runs without a disc service");
    return false;
}

// Without "..", and without a slash at its end, whether or not it was written with one.
std::string tidy(const std::string& path) {
    std::string result = std::filesystem::path(path).lexically_normal().string();
    while (result.size() > 1 && result.ends_with('/')) {
        result.pop_back();
    }
    return result;
}

bool insert(Call& call) {
    const bool waits = call.arguments.flag("--wait");
    const bool demonstration = call.arguments.flag("--demo");
    const std::string given = demonstration ? "" : call.arguments.word();
    if (!call.arguments.complete()) {
        return false;
    }
    if (!hasDrive(call)) {
        return true;
    }
    const ProgramFolders folders = programFolders();
    const std::string path = tidy(demonstration ? folders.demonstration : call.run->absolute(given));
    if (::access(path.c_str(), R_OK) != 0) {
        call.run->fail(systemError(path).message +
                       (demonstration ? "; \"" + folders.demonstrationMaker + "\" makes it" : ""));
    } else {
        Insertion::start(call, path, waits ? Inserted::Playing : Inserted::Taken);
    }
    return true;
}

bool eject(Call& call) {
    if (!call.arguments.complete()) {
        return false;
    }
    if (hasDrive(call)) {
        endWith(call.run, call.unit.drive().eject());
    }
    return true;
}

constexpr std::array<std::string_view, 7> Faults = {"read",     "surface", "temperature", "region",
                                                    "noanswer", "gone",    "none"};

bool disc(Call& call) {
    // The answer is JSON with and without it; with it, no script depends on that staying so.
    const bool json = call.arguments.flag("--json");
    const bool more = call.arguments.more();
    const bool fault = more && call.arguments.word() == "fault";
    const std::string kind = fault ? call.arguments.word() : "";
    const bool known = std::find(Faults.begin(), Faults.end(), kind) != Faults.end();
    if (!call.arguments.complete() || (more && !fault) || (fault && json) || (fault && !known)) {
        return false;
    }
    if (!hasDrive(call)) {
        return true;
    }
    if (fault && unit::DiscDrive::needsDisc(kind) && call.unit.drive().isEmpty()) {
        call.run->fail("the drive is empty: there is nothing to read");
        return true;
    }
    if (fault) {
        endWith(call.run, call.unit.drive().fault(kind));
        return true;
    }
    const std::string state = call.unit.drive().state();
    call.run->out((state.empty() ? R"({"state":"starting"})" : state) + "\n");
    call.run->finish();
    return true;
}

bool catalogue(Call& call) {
    const std::string verb = call.arguments.word();
    if (verb == "hold") {
        const int rows = call.arguments.number();
        if (!call.arguments.complete() || rows < 0) {
            return false;
        }
        forward(call, {{"t", "hold"}, {"rows", rows}});
        return true;
    }
    if (verb != "release" || !call.arguments.complete()) {
        return false;
    }
    forward(call, {{"t", "unhold"}});
    return true;
}

constexpr std::array DiscCommands = {
    Row{"insert", insert},
    Row{"eject", eject},
    Row{"disc", disc},
    Row{"catalogue", catalogue},
};

} // namespace

std::span<const Row> discRows() {
    return DiscCommands;
}

} // namespace zm::bench::commands
