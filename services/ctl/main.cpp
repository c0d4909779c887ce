#include "base/Paths.h"
#include "services/ctl/CommandTexts.h"
#include "services/ctl/CtlClient.h"

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace {

void print(FILE* stream, const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

int wrongUsage() {
    print(stderr, zm::overviewText());
    return 2;
}

// Explains the commands without a bench.
int help(const std::vector<std::string>& words) {
    if (words.size() == 1) {
        print(stdout, zm::overviewText());
        return 0;
    }
    const auto* text = zm::findCommandText(words[1]);
    if (words.size() == 2 && text) {
        print(stdout, zm::usageText(*text) + "\n" + std::string(text->help) + "\n");
        return 0;
    }
    print(stderr, words.size() == 2 ? "zmctl: there is no command \"" + words[1] + "\"\n"
                                    : zm::usageText(*zm::findCommandText("help")));
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> words(argv + 1, argv + argc);
    std::string dir = zm::runtimeDir();
    if (!words.empty() && words[0] == "--runtime") {
        if (words.size() < 2 || words[1].empty()) {
            return wrongUsage();
        }
        dir = words[1];
        words.erase(words.begin(), words.begin() + 2);
    }
    if (words.empty()) {
        return wrongUsage();
    }
    if (words[0] == "help") {
        return help(words);
    }
    const auto status = zm::CtlClient(dir).run(
        words, [](const std::string& text) { print(stdout, text); },
        [](const std::string& text) { print(stderr, text); });
    if (!status) {
        print(stderr, "zmctl: " + status.error() + "\n");
        return 1;
    }
    return *status;
}
