#include "services/ctl/TerminalCommands.h"

#include "services/ctl/Arguments.h"
#include "services/ctl/CommandForm.h"
#include "services/ctl/CommandTexts.h"
#include "services/ctl/Completion.h"
#include "services/ctl/ExitStatus.h"
#include "services/ctl/LocalCommand.h"
#include "services/ctl/Monkey.h"
#include "services/ctl/Names.h"
#include "services/ctl/Replay.h"
#include "services/ctl/Script.h"
#include "services/ctl/ScriptCommands.h"
#include "services/ctl/Shrink.h"

#include <array>

namespace zm::ctl {

namespace {

using Words = std::vector<std::string>;
using Print = Client::Print;

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
    std::vector<ScriptLine> lines;
    const int status = readScript(words[0], lines, err);
    return status == 0 ? runScript(client, lines, out, err) : status;
}

Status checkReplay(const Words& words) {
    return fits("replay", words, [](Arguments& arguments) { replayOptions(arguments); });
}

int replay(const Client& client, const Words& words, const Print& out, const Print& err) {
    Arguments arguments(words);
    return Replay(client, replayOptions(arguments), out, err).run();
}

Status checkShrink(const Words& words) {
    Arguments arguments(words);
    shrinkOptions(arguments);
    return arguments.complete()
               ? ok()
               : Status(Error{"zmctl: " + (arguments.why().empty() ? "wrong usage" : arguments.why())});
}

int shrink(const Client&, const Words& words, const Print& out, const Print& err) {
    Arguments arguments(words);
    return Shrink(shrinkOptions(arguments), out, err).run();
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

constexpr std::array<LocalCommand, 7> CommandsOfTerminals = {{
    {"completion", checkCompletion, completion},
    {"complete", checkComplete, complete},
    {"help", checkHelp, help},
    {"run", checkRun, run},
    {"replay", checkReplay, replay},
    {"shrink", checkShrink, shrink},
    {"monkey", checkMonkey, monkey},
}};

} // namespace

int runCommand(const Client& client, const Words& words, const Print& out, const Print& err) {
    if (const LocalCommand* command = findLocalCommand(CommandsOfTerminals, words[0])) {
        return runLocalCommand(*command, client, words, out, err);
    }
    return runScriptCommand(client, words, out, err);
}

} // namespace zm::ctl
