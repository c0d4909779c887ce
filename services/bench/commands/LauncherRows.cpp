#include "services/bench/commands/Processor.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

namespace zm::bench::commands {

namespace {

struct StatusName {
    std::string_view name;
    unit::AppStatus status;
};

// An application that quits may be gone before it has answered: it has then done what it was told.
unit::ShellServer::Reply endWithQuit(Call& call) {
    return [run = call.run, &shell = call.unit.shell(),
            ran = call.unit.shell().connected()](const Result<Json>& reply) {
        if (reply || (ran && !shell.connected())) {
            run->finish();
        } else {
            run->fail(reply.error());
        }
    };
}

constexpr std::array<StatusName, 5> StatusNames = {{
    {"resume", unit::AppStatus::Resume},
    {"pause", unit::AppStatus::Pause},
    {"showonly", unit::AppStatus::ShowOnly},
    {"hideonly", unit::AppStatus::HideOnly},
    {"quit", unit::AppStatus::Quit},
}};

void start(Call& call) {
    if (call.unit.startApplication()) {
        call.run->finish();
    } else {
        call.run->fail("this bench starts no programs");
    }
}

bool app(Call& call) {
    const std::string name = call.arguments.word();
    if (!call.arguments.complete()) {
        return false;
    }
    if (name == "start") {
        start(call);
        return true;
    }
    for (const auto& row : StatusNames) {
        if (row.name == name) {
            call.unit.launcher().send(row.status, row.status == unit::AppStatus::Quit ? endWithQuit(call)
                                                                                      : endWith(call.run));
            return true;
        }
    }
    return false;
}

bool appData(Call& call) {
    const std::string text = call.arguments.word();
    if (!call.arguments.complete()) {
        return false;
    }
    call.unit.sendApplicationData(text, endWith(call.run));
    return true;
}

bool language(Call& call) {
    const std::string code = call.arguments.word();
    if (!call.arguments.complete()) {
        return false;
    }
    const auto known = ctl::languages();
    if (std::find(known.begin(), known.end(), code) == known.end()) {
        call.run->fail(ctl::unknownWord("language", code, known));
        return true;
    }
    call.unit.setLanguage(code, endWith(call.run));
    return true;
}

bool theme(Call& call) {
    const std::string name = call.arguments.word();
    if (!call.arguments.complete() || (name != "night" && name != "day" && name != "contrast")) {
        return false;
    }
    call.unit.setTheme(name, endWith(call.run));
    return true;
}

bool motion(Call& call) {
    const std::string wish = call.arguments.word();
    if (!call.arguments.complete() || (wish != "on" && wish != "off")) {
        return false;
    }
    call.unit.setMotion(wish == "on", endWith(call.run));
    return true;
}

bool requests(Call& call) {
    const bool clear = call.arguments.flag("--clear");
    if (!call.arguments.complete()) {
        return false;
    }
    auto& launcher = call.unit.launcher();
    std::string lines;
    for (const auto& request : launcher.requests()) {
        lines += request + "\n";
    }
    if (clear) {
        launcher.clearRequests();
    }
    call.run->out(lines);
    call.run->finish();
    return true;
}

constexpr std::array LauncherCommands = {
    Row{"app", app},     Row{"appdata", appData}, Row{"language", language},
    Row{"theme", theme}, Row{"motion", motion},   Row{"requests", requests},
};

} // namespace

std::span<const Row> launcherRows() {
    return LauncherCommands;
}

} // namespace zm::bench::commands
