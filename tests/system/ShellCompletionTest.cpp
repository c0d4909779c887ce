#include "BuildPaths.h"
#include "tests/system/SystemTest.h"

#include <cstdio>

namespace zm::test {

namespace {

/** A shell that runs `code`; its output as lines. Each of the three shells belongs to what the tests need. */
Words shell(const std::string& program, const std::string& code) {
    const std::string command = "PATH=" ZM_BINARY_DIR "/bin:$PATH " + program + " '" + code + "' 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    std::string text;
    for (int character; pipe && (character = std::fgetc(pipe)) != EOF;) {
        text += static_cast<char>(character);
    }
    EXPECT_EQ(pclose(pipe), 0) << program << ": " << text;
    Words lines;
    for (size_t at = 0, end; (end = text.find('\n', at)) != std::string::npos; at = end + 1) {
        lines.push_back(text.substr(at, end - at));
    }
    return lines;
}

} // namespace

/** The three scripts in their shells, over a bench. */
using ShellCompletion = SystemTest;

TEST_F(ShellCompletion, OfBash) {
    const std::string ask = "source <(zmctl completion bash); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _zmctl; "
                            "printf \"%s\\n\" \"${COMPREPLY[@]}\"";
    EXPECT_THAT(shell("bash -euc", "COMP_WORDS=(zmctl app p); " + ask), ElementsAre("pause"));
    EXPECT_THAT(
        shell("bash -euc", "COMP_WORDS=(zmctl key preset \"\"); COMP_WORDS=(zmctl key preset); " + ask),
        ElementsAre("preset-down", "preset-up"));
    EXPECT_THAT(shell("bash -uc", "source <(zmctl completion bash); complete -p zmctl"),
                ElementsAre(HasSubstr("-F _zmctl zmctl")));
}

TEST_F(ShellCompletion, OfZsh) {
    // Outside a line editor only the function itself can be asked: what it would add is printed.
    const std::string begin = "compdef() { :; }; compadd() { print -l -- \"${@:#-*}\"; }; "
                              "source <(zmctl completion zsh); ";
    EXPECT_THAT(shell("zsh -fc", begin + "words=(zmctl app p); CURRENT=3; _zmctl"), ElementsAre("pause"));
    EXPECT_THAT(shell("zsh -fc", begin + "words=(zmctl time 1:00 \"\"); CURRENT=4; _zmctl"),
                ElementsAre("12", "24"));
}

TEST_F(ShellCompletion, OfFish) {
    const std::string begin = "zmctl completion fish | source; ";
    EXPECT_THAT(shell("fish -Nc", begin + "complete -C \"zmctl app p\""), ElementsAre("pause"));
    EXPECT_THAT(shell("fish -Nc", begin + "complete -C \"zmctl device pa\""), ElementsAre("parking"));
}

TEST_F(ShellCompletion, ObjectsAreThoseOfTheBenchThatTheLineNames) {
    startManual();
    must({"pps", "put", "test/completed", "a::1"});
    EXPECT_THAT(lines({"complete", "pps", "get", "test/c"}), ElementsAre("test/completed"));
    Process process({"zmctl", "complete", "--runtime", folder, "pps", "watch", "test/"}, "/nowhere");
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(process.out(), "test/completed\n");
}

} // namespace zm::test
