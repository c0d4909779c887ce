#include "services/bench/CommandProcessor.h"

#include <unistd.h>

#include <array>
#include <cerrno>

namespace zm {

namespace {

// Whether there is a drive to talk to; ends the command if not.
bool hasDrive(CommandCall& call) {
    if (call.unit.child("disc")) {
        return true;
    }
    call.run->fail("this bench runs without a disc service");
    return false;
}

bool insert(CommandCall& call) {
    const bool demonstration = call.arguments.flag("--demo");
    const std::string given = demonstration ? "" : call.arguments.word();
    if (!call.arguments.complete()) {
        return false;
    }
    if (!hasDrive(call)) {
        return true;
    }
    const std::string path =
        demonstration ? call.unit.options().shareDir + "/../demo" : call.run->absolute(given);
    if (::access(path.c_str(), R_OK) != 0) {
        call.run->fail(systemError(path).message);
        return true;
    }
    endWith(call.run, call.unit.drive().insert(path));
    return true;
}

bool eject(CommandCall& call) {
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

bool disc(CommandCall& call) {
    const bool fault = call.arguments.more() && call.arguments.word() == "fault";
    const std::string kind = fault ? call.arguments.word() : "";
    const bool known = std::find(Faults.begin(), Faults.end(), kind) != Faults.end();
    if (!call.arguments.complete() || fault != (call.run->words().size() > 1) || (fault && !known)) {
        return false;
    }
    if (!hasDrive(call)) {
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

bool catalogue(CommandCall& call) {
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

constexpr std::array Rows = {
    CommandRow{"insert", insert},
    CommandRow{"eject", eject},
    CommandRow{"disc", disc},
    CommandRow{"catalogue", catalogue},
};

} // namespace

std::span<const CommandRow> discCommandRows() {
    return Rows;
}

} // namespace zm
