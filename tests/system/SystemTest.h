#pragma once

#include "tests/support/TemporaryFolder.h"
#include "tests/system/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zm::test {

using Json = nlohmann::json;
using Words = std::vector<std::string>;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;

inline constexpr int DayMs = 24 * 3600 * 1000;

/** The real programs in a fresh runtime folder, driven through zmctl. */
class SystemTest : public testing::Test {
protected:
    struct Answer {
        int exit = 0;
        std::string out;
        std::string err;
    };

    ~SystemTest() override;

    /** Starts zmbench and waits for its line "ready"; `words` are further arguments. */
    void startBench(Words words);
    /** As startBench without disc service and page, with a manual clock. */
    void startManual(Words words = {});
    /** Ends it with SIGTERM; gives its exit status. */
    int endBench();

    /** Runs zmctl to its end. */
    Answer ctl(const Words& words);
    /** Its output; anything but exit status 0 is a failure. */
    std::string must(const Words& words);
    /** Its error text; anything but that exit status is a failure. */
    std::string mustFail(const Words& words, int exit = 1);
    /** Waits until nothing moves any more. */
    void settle();
    std::vector<std::string> lines(const Words& words);

    /** Process numbers of the children, which all run. */
    std::vector<int> children();

    Json screen();
    int window(const std::string& view = "main");
    Json item(int window, int item, const std::string& view = "main");
    void putDevice(const Words& changes);
    void putStatus(const Words& changes);
    /** A disc with music plays, its page is shown. */
    void playMusic();
    /** Player commands published since the test began to watch, "cmd,param1,param2". */
    void watchCommands();
    std::vector<std::string> commands(size_t atLeast);

    /** Asks again until `condition` holds, at most twenty seconds. */
    static bool eventually(const std::function<bool()>& condition);

    const TemporaryFolder temporary;
    const std::string& folder = temporary.path();
    std::unique_ptr<Process> bench;

private:
    std::unique_ptr<Process> m_watch;
};

} // namespace zm::test
