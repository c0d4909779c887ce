#include "services/ctl/Script.h"

#include "services/ctl/CommandTexts.h"
#include "services/ctl/ExitStatus.h"
#include "services/ctl/ScriptCommands.h"
#include "services/ctl/ShellWords.h"

#include <fstream>
#include <iostream>
#include <sstream>

namespace zm::ctl {

namespace {

Status check(ScriptLine& line) {
    auto words = shellWords(line.text);
    if (!words) {
        return words.failure();
    }
    line.words = std::move(*words);
    if (!line.words.empty() && line.words[0] == "try") {
        line.mayFail = true;
        line.words.erase(line.words.begin());
        if (line.words.empty()) {
            return Error{"\"try\" stands before a command"};
        }
    }
    if (line.words.empty()) {
        return ok();
    }
    const CommandText* text = findCommandText(line.words[0]);
    if (!text || text->place == CommandPlace::Terminal) {
        return Error{"there is no command \"" + line.words[0] + "\" in scripts"};
    }
    return checkScriptCommand(line.words);
}

Result<std::string> scriptText(const std::string& name) {
    std::ifstream file;
    if (name != "-") {
        file.open(name, std::ios::binary);
    }
    std::istream& stream = name == "-" ? std::cin : file;
    std::string text;
    std::getline(stream, text, '\0');
    if ((name != "-" && !file.is_open()) || stream.bad()) {
        return systemError(name);
    }
    return text;
}

} // namespace

Result<std::vector<ScriptLine>> parseScript(const std::string& name, const std::string& text) {
    std::vector<ScriptLine> result;
    std::istringstream stream(text);
    int number = 0;
    for (std::string written; std::getline(stream, written);) {
        if (written.ends_with('\r')) {
            written.pop_back();
        }
        ScriptLine line{name + ":" + std::to_string(++number), written, {}};
        if (auto good = check(line); !good) {
            return Error{line.place + ": " + written + "\n" + good.error()};
        }
        if (!line.words.empty()) {
            result.push_back(std::move(line));
        }
    }
    return result;
}

int readScript(const std::string& file, std::vector<ScriptLine>& lines, const Client::Print& err) {
    const auto text = scriptText(file);
    if (!text) {
        err("zmctl: " + text.error() + "\n");
        return Failed;
    }
    auto parsed = parseScript(file == "-" ? "standard input" : file, *text);
    if (!parsed) {
        err(parsed.error() + "\n");
        return WrongUsage;
    }
    lines = std::move(*parsed);
    return 0;
}

int runScript(const Client& client, const std::vector<ScriptLine>& lines, const Client::Print& out,
              const Client::Print& err) {
    for (const auto& line : lines) {
        std::string said;
        const int status =
            runScriptCommand(client, line.words, out, [&](const std::string& text) { said += text; });
        if (status == WrongUsage || (status != 0 && !line.mayFail)) {
            err(line.place + ": " + line.text + "\n" + said);
            return status;
        }
    }
    return 0;
}

} // namespace zm::ctl
