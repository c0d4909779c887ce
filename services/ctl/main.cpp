#include "base/About.h"
#include "base/Paths.h"
#include "services/ctl/CommandTexts.h"
#include "services/ctl/TerminalCommands.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

void print(FILE* stream, const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

int wrongUsage(const std::string& why) {
    print(stderr, "zmctl: " + why + "\n" + zm::ctl::overviewText());
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> words(argv + 1, argv + argc);
    std::string dir = zm::runtimeDir();
    if (!words.empty() && words[0] == "--runtime") {
        if (words.size() < 2 || words[1].empty()) {
            return wrongUsage("--runtime needs a folder behind it");
        }
        dir = words[1];
        words.erase(words.begin(), words.begin() + 2);
    }
    if (zm::answerAbout(words, "zmctl", zm::ctl::overviewText().c_str())) {
        return 0;
    }
    if (words.empty()) {
        return wrongUsage("a command is missing");
    }
    if (words.size() == 2 && (words[1] == "--help" || words[1] == "-h") &&
        zm::ctl::findCommandText(words[0])) {
        words = {"help", words[0]};
    }
    return zm::ctl::runCommand(
        zm::ctl::Client(dir), words, [](const std::string& text) { print(stdout, text); },
        [](const std::string& text) { print(stderr, text); });
}
