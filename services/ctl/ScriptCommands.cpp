#include "services/ctl/ScriptCommands.h"

#include "services/ctl/CommandForm.h"
#include "services/ctl/CommandTexts.h"
#include "services/ctl/ExitStatus.h"
#include "services/ctl/Expectation.h"
#include "services/ctl/LocalCommand.h"

#include <nlohmann/json.hpp>

#include <array>
#include <chrono>
#include <thread>

namespace zm::ctl {

namespace {

using Words = std::vector<std::string>;
using Print = Client::Print;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds AskAgain(20);

Status checkWait(const Words& words) {
    return fits("wait", words, [](Arguments& arguments) {
        if (arguments.number() < 0) {
            arguments.refuse();
        }
    });
}

int wait(const Client&, const Words& words, const Print&, const Print&) {
    std::this_thread::sleep_for(std::chrono::milliseconds(Arguments(words).number()));
    return 0;
}

Status checkExpect(const Words& words) {
    const auto expectation = Expectation::parse(words);
    return expectation ? ok() : Status(Error{"zmctl: " + expectation.error()});
}

int expect(const Client& client, const Words& words, const Print&, const Print& err) {
    const auto expectation = *Expectation::parse(words);
    const auto deadline = Clock::now() + expectation.limit();
    for (;;) {
        const Answer answer = client.run(expectation.command());
        const auto found = answer.exit == 0 ? expectation.find(answer.out) : nlohmann::json();
        if (answer.exit == 0 && expectation.holds(found)) {
            return 0;
        }
        if (Clock::now() >= deadline) {
            err("expected: " + expectation.text() +
                "\nfound:    " + (answer.exit == 0 ? shownValue(found) + "\n" : answer.err));
            return Failed;
        }
        std::this_thread::sleep_for(AskAgain);
    }
}

constexpr std::array<LocalCommand, 2> CommandsOfScripts = {{
    {"wait", checkWait, wait},
    {"expect", checkExpect, expect},
}};

} // namespace

Status checkScriptCommand(const Words& words) {
    const LocalCommand* command = findLocalCommand(CommandsOfScripts, words[0]);
    return command ? checkLocalCommand(*command, words) : ok();
}

int runScriptCommand(const Client& client, const Words& words, const Print& out, const Print& err) {
    if (const LocalCommand* command = findLocalCommand(CommandsOfScripts, words[0])) {
        return runLocalCommand(*command, client, words, out, err);
    }
    if (!findCommandText(words[0])) {
        err(unknownCommandText(words[0]) + "\n");
        return WrongUsage;
    }
    const auto status = client.run(words, out, err);
    if (!status) {
        err("zmctl: " + status.error() + "\n");
        return Failed;
    }
    return *status;
}

} // namespace zm::ctl
