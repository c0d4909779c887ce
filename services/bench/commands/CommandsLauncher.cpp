#include "services/bench/commands/CommandProcessor.h"

#include <algorithm>
#include <array>

namespace zm {

namespace {

struct StatusName {
    std::string_view name;
    AppStatus status;
};

// An application that quits may be gone before it has answered: it has then done what it was told.
ShellServer::Reply endWithQuit(CommandCall& call) {
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
    {"resume", AppStatus::Resume},
    {"pause", AppStatus::Pause},
    {"showonly", AppStatus::ShowOnly},
    {"hideonly", AppStatus::HideOnly},
    {"quit", AppStatus::Quit},
}};

void start(CommandCall& call) {
    if (call.unit.startApplication()) {
        call.run->finish();
    } else {
        call.run->fail("this bench starts no programs");
    }
}

bool app(CommandCall& call) {
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
            call.unit.launcher().send(row.status,
                                      row.status == AppStatus::Quit ? endWithQuit(call) : endWith(call.run));
            return true;
        }
    }
    return false;
}

bool appData(CommandCall& call) {
    const std::string text = call.arguments.word();
    if (!call.arguments.complete()) {
        return false;
    }
    call.unit.sendApplicationData(text, endWith(call.run));
    return true;
}

bool language(CommandCall& call) {
    const std::string code = call.arguments.word();
    if (!call.arguments.complete()) {
        return false;
    }
    const auto known = languages();
    if (std::find(known.begin(), known.end(), code) == known.end()) {
        call.run->fail(unknownWord("language", code, known));
        return true;
    }
    call.unit.setLanguage(code, endWith(call.run));
    return true;
}

bool theme(CommandCall& call) {
    const std::string name = call.arguments.word();
    if (!call.arguments.complete() || (name != "night" && name != "day")) {
        return false;
    }
    call.unit.setTheme(name, endWith(call.run));
    return true;
}

bool requests(CommandCall& call) {
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

constexpr std::array Rows = {
    CommandRow{"app", app},     CommandRow{"appdata", appData},   CommandRow{"language", language},
    CommandRow{"theme", theme}, CommandRow{"requests", requests},
};

} // namespace

std::span<const CommandRow> launcherCommandRows() {
    return Rows;
}

} // namespace zm
