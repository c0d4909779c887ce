#include "base/Paths.h"
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
    std::fputs("usage: zmctl [--runtime DIR] COMMAND\n", stderr);
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
    const auto status = zm::CtlClient(dir).run(
        words, [](const std::string& text) { print(stdout, text); },
        [](const std::string& text) { print(stderr, text); });
    if (!status) {
        print(stderr, "zmctl: " + status.error() + "\n");
        return 1;
    }
    return *status;
}
