#include "services/ctl/TerminalCommands.h"

#include "services/ctl/Arguments.h"
#include "services/ctl/CommandForm.h"
#include "services/ctl/CommandTexts.h"
#include "services/ctl/Completion.h"
#include "services/ctl/LocalCommand.h"
#include "services/ctl/Monkey.h"
#include "services/ctl/Names.h"
#include "services/ctl/Script.h"
#include "services/ctl/ScriptCommands.h"

#include <array>
#include <fstream>
#include <iostream>

namespace zm::ctl {

namespace {

using Words = std::vector<std::string>;
using Print = Client::Print;

constexpr int Failed = 1;
constexpr int WrongUsage = 2;

Status checkHelp(const Words& words) {
    if (words.size() > 1) {
        return wrongUsage("help", words);
    }
    if (!words.empty() && !findCommandText(words[0])) {
        return Error{unknownCommandText(words[0])};
    }
    return ok();
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

constexpr std::array<LocalCommand, 5> Commands = {{
    {"completion", checkCompletion, completion},
    {"complete", checkComplete, complete},
    {"help", checkHelp, help},
    {"run", checkRun, run},
    {"monkey", checkMonkey, monkey},
}};

} // namespace

int runCommand(const Client& client, const Words& words, const Print& out, const Print& err) {
    if (const LocalCommand* command = findLocalCommand(Commands, words[0])) {
        return runLocalCommand(*command, client, words, out, err);
    }
    return runScriptCommand(client, words, out, err);
}

} // namespace zm::ctl
