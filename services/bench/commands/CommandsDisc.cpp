#include "services/bench/commands/CommandProcessor.h"
#include "services/bench/unit/PpsWatch.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>

namespace zm {

namespace {

constexpr std::chrono::seconds InsertTime(60);

// Whether there is a drive to talk to; ends the command if not.
bool hasDrive(CommandCall& call) {
    if (call.unit.child("disc")) {
        return true;
    }
    call.run->fail("this bench runs without a disc service");
    return false;
}

// Follows the drive until it has taken a disc, or has found that it cannot. What it said before does not count.
class Inserting {
public:
    Inserting(std::shared_ptr<CommandRun> run, std::string path)
        : m_run(std::move(run)), m_path(std::move(path)) {}

    static void start(CommandCall& call, const std::string& path) {
        auto self = std::make_shared<Inserting>(call.run, path);
        auto watch = DiscDrive::watch(call.unit.loop(), call.unit.ppsSocket(),
                                      [raw = self.get()](const std::string& state) { raw->changed(state); });
        if (!watch) {
            call.run->fail(watch.error());
            return;
        }
        self->m_watch = std::move(*watch);
        self->m_watch->drain();
        self->m_asked = true;
        self->m_limit = afterDelay(call.unit.loop(), InsertTime, [run = call.run] {
            run->fail("the drive has not taken the disc within a minute");
        });
        // The command may end from inside its own watch: that goes in a turn of its own.
        call.run->onEnd = [self, &loop = call.unit.loop()] { loop.post([self] { self->stop(); }); };
        if (const auto asked = call.unit.drive().insert(path); !asked) {
            call.run->fail(asked.error());
        }
    }

private:
    void stop() {
        m_watch.reset();
        m_limit.reset();
    }

    void changed(const std::string& text) {
        const Json state = Json::parse(text, nullptr, false);
        if (!m_asked || !state.is_object() || state.value("path", "") != m_path) {
            return;
        }
        const std::string name = state.value("state", "");
        if (name == "loaded") {
            m_run->finish();
        } else if (name == "error") {
            m_run->fail(m_path + ": " + state.value("text", ""));
        }
    }

    std::shared_ptr<CommandRun> m_run;
    std::string m_path;
    bool m_asked = false;
    std::unique_ptr<PpsWatch> m_watch;
    SourceHandle m_limit;
};

bool insert(CommandCall& call) {
    const bool waits = call.arguments.flag("--wait");
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
    if (waits) {
        Inserting::start(call, std::filesystem::path(path).lexically_normal().string());
    } else {
        endWith(call.run, call.unit.drive().insert(path));
    }
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
