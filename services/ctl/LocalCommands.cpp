#include "services/ctl/LocalCommands.h"

#include "services/ctl/Arguments.h"
#include "services/ctl/CommandForm.h"
#include "services/ctl/CommandTexts.h"
#include "services/ctl/Completion.h"
#include "services/ctl/Expectation.h"
#include "services/ctl/Monkey.h"
#include "services/ctl/Names.h"
#include "services/ctl/Script.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iostream>
#include <thread>

namespace zm::ctl {

namespace {

using Words = std::vector<std::string>;
using Print = Client::Print;
using Clock = std::chrono::steady_clock;

constexpr int Failed = 1;
constexpr int WrongUsage = 2;
constexpr std::chrono::milliseconds AskAgain(20);

/** A command that zmctl carries out itself; `words` are those behind its name and have been checked. */
struct LocalCommand {
    std::string_view name;
    Status (*check)(const Words& words);
    int (*run)(const Client& client, const Words& words, const Print& out, const Print& err);
};

Status wrongUsage(std::string_view command, Words words) {
    words.insert(words.begin(), std::string(command));
    std::string text = wrongUsageText(words, {});
    text.pop_back();
    return Error{text};
}

// Words that `take` understands completely.
template <class Take>
Status fits(std::string_view command, const Words& words, Take take) {
    Arguments arguments(words);
    take(arguments);
    return arguments.complete() ? ok() : wrongUsage(command, words);
}

Status checkName(const std::string& command) {
    return findCommandText(command) ? ok() : Status(Error{unknownCommandText(command)});
}

Status checkHelp(const Words& words) {
    if (words.size() > 1) {
        return wrongUsage("help", words);
    }
    return words.empty() ? ok() : checkName(words[0]);
}

int help(const Client&, const Words& words, const Print& out, const Print&) {
    if (words.empty()) {
        out(overviewText());
        return 0;
    }
    const auto& text = *findCommandText(words[0]);
    out(usageText(text) + "\n" + std::string(text.help) + "\n");
    return 0;
}

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

Status checkRun(const Words& words) {
    return fits("run", words, [](Arguments& arguments) { arguments.word(); });
}

int run(const Client& client, const Words& words, const Print& out, const Print& err) {
    const bool standardInput = words[0] == "-";
    std::ifstream file;
    if (!standardInput) {
        file.open(words[0], std::ios::binary);
    }
    std::istream& stream = standardInput ? std::cin : file;
    std::string text;
    std::getline(stream, text, '\0');
    if ((!standardInput && !file.is_open()) || stream.bad()) {
        err("zmctl: " + systemError(words[0]).message + "\n");
        return Failed;
    }
    const auto lines = parseScript(standardInput ? "standard input" : words[0], text);
    if (!lines) {
        err(lines.error() + "\n");
        return WrongUsage;
    }
    return runScript(client, *lines, out, err);
}

Status checkMonkey(const Words& words) {
    return fits("monkey", words, [](Arguments& arguments) { monkeyOptions(arguments); });
}

int monkey(const Client& client, const Words& words, const Print& out, const Print& err) {
    Arguments arguments(words);
    return Monkey(client, monkeyOptions(arguments), out, err).run();
}

Status checkCompletion(const Words& words) {
    if (words.size() != 1) {
        return wrongUsage("completion", words);
    }
    return completionScript(words[0])
               ? ok()
               : Status(Error{"zmctl: " + unknownWord("shell", words[0], {"bash", "zsh", "fish"})});
}

int completion(const Client&, const Words& words, const Print& out, const Print&) {
    out(completionScript(words[0]));
    return 0;
}

// Any words will do: completion is asked about unfinished lines.
Status checkComplete(const Words&) {
    return ok();
}

int complete(const Client& client, const Words& words, const Print& out, const Print&) {
    for (const auto& offer : completions(client, words)) {
        out(offer + "\n");
    }
    return 0;
}

constexpr std::array<LocalCommand, 7> Commands = {{
    {"completion", checkCompletion, completion},
    {"complete", checkComplete, complete},
    {"help", checkHelp, help},
    {"run", checkRun, run},
    {"wait", checkWait, wait},
    {"expect", checkExpect, expect},
    {"monkey", checkMonkey, monkey},
}};

const LocalCommand* find(const std::string& name) {
    const auto found = std::find_if(Commands.begin(), Commands.end(),
                                    [&](const LocalCommand& command) { return command.name == name; });
    return found == Commands.end() ? nullptr : found;
}

} // namespace

Status checkLocalCommand(const Words& words) {
    const LocalCommand* command = find(words[0]);
    if (!command) {
        return ok();
    }
    const Words given(words.begin() + 1, words.end());
    return whyUnfit(words).empty() ? command->check(given) : wrongUsage(words[0], given);
}

int runCommand(const Client& client, const Words& words, const Print& out, const Print& err) {
    if (const LocalCommand* command = find(words[0])) {
        if (auto good = checkLocalCommand(words); !good) {
            err(good.error() + "\n");
            return WrongUsage;
        }
        return command->run(client, {words.begin() + 1, words.end()}, out, err);
    }
    if (auto known = checkName(words[0]); !known) {
        err(known.error() + "\n");
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
