#include "BuildPaths.h"
#include "tests/system/SystemTest.h"

#include <fstream>
#include <sstream>

namespace zm::test {

/** Scripts given to the real zmctl. */
class ScriptRun : public SystemTest {
protected:
    Answer runScript(const std::string& text) {
        const std::string file = folder + "/page.zmctl";
        std::ofstream(file) << text;
        return ctl({"run", file});
    }
    std::string atLine(int line) { return folder + "/page.zmctl:" + std::to_string(line) + ": "; }
};

TEST_F(ScriptRun, TheManualsExampleHolds) {
    std::ifstream manual(ZM_SOURCE_DIR "/docs/bench.md");
    std::string script;
    bool inside = false;
    for (std::string line; std::getline(manual, line);) {
        if (line.starts_with("```")) {
            inside = line == "```zmctl";
        } else if (inside) {
            script += line + "\n";
        }
    }
    ASSERT_THAT(script, HasSubstr("expect "));
    startManual();
    const auto answer = runScript(script);
    EXPECT_EQ(answer.exit, 0) << answer.err;
}

TEST_F(ScriptRun, TheFirstFailureNamesLineExpectedAndFound) {
    startManual();
    const auto answer = runScript("# a bench without a disc\n"
                                  "expect screen.main.window == 1\n"
                                  "expect screen.main.window == 17 within 50\n"
                                  "language de\n");
    EXPECT_EQ(answer.exit, 1);
    EXPECT_EQ(answer.err, atLine(3) + "expect screen.main.window == 17 within 50\n" +
                              "expected: screen.main.window == 17\nfound:    1\n");
}

TEST_F(ScriptRun, AFailingCommandIsNamedUnlessItIsOnlyTried) {
    startManual();
    const auto answer = runScript("try eject\neject\n");
    EXPECT_EQ(answer.exit, 1);
    EXPECT_THAT(answer.err, StartsWith(atLine(2) + "eject\n"));
    EXPECT_THAT(answer.err, HasSubstr("without a disc service"));
}

TEST_F(ScriptRun, AWrongLineKeepsTheOthersFromRunning) {
    startManual();
    const auto answer = runScript("theme day\npps put marked mark::1\ndance\n");
    EXPECT_EQ(answer.exit, 2);
    EXPECT_THAT(answer.err, StartsWith(atLine(3) + "dance\n"));
    EXPECT_THAT(must({"pps", "ls"}), testing::Not(HasSubstr("marked")));
}

TEST_F(ScriptRun, WrongWordsOfACommandEndWithItsUsage) {
    startManual();
    const auto answer = runScript("try touch 1\n");
    EXPECT_EQ(answer.exit, 2);
    EXPECT_EQ(answer.err,
              atLine(1) +
                  "try touch 1\nzmctl: \"zmctl touch 1\" is not complete; what fits behind it is Y (a whole "
                  "number)\nusage: zmctl touch X Y [--hold MS]\n");
}

TEST_F(ScriptRun, AnExpectationWaitsForItsValue) {
    startManual();
    Process waiting(
        {"zmctl", "--runtime", folder, "expect", "pps.later.value", "==", "a b", "within", "20000"}, folder);
    EXPECT_EQ(waiting.wait(std::chrono::milliseconds(100)), -1);
    must({"pps", "put", "later", "value::a b"});
    EXPECT_EQ(waiting.wait(), 0) << waiting.err();
}

TEST_F(ScriptRun, WithoutABenchItSaysSo) {
    EXPECT_THAT(runScript("key 1\n").err, HasSubstr("no bench runs in " + folder));
    EXPECT_THAT(mustFail({"run", folder + "/none"}), HasSubstr("No such file"));
    EXPECT_THAT(mustFail({"run", folder}), HasSubstr("Is a directory"));
    EXPECT_THAT(mustFail({"run"}, 2), HasSubstr("usage: zmctl run FILE"));
}

TEST_F(ScriptRun, AnEndedProcessIsSeen) {
    startManual();
    const auto answer = runScript("kill app\nsettle\nexpect ps.app.deaths == 1\n"
                                  "app quit\nexpect ps.app.state == 'not running' within 5000\n"
                                  "expect ps.app.pid == 0\n");
    EXPECT_EQ(answer.exit, 0) << answer.err;
}

} // namespace zm::test
