#include "tests/system/SystemTest.h"

#include "services/ctl/AnswerData.h"

#include <signal.h>
#include <stdlib.h>

#include <thread>

namespace zm::test {

namespace {

std::string joined(const Words& words) {
    std::string text;
    for (const auto& word : words) {
        text += " " + word;
    }
    return text;
}

Words concat(Words left, const Words& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

} // namespace

SystemTest::~SystemTest() {
    m_watch.reset();
    if (bench) {
        endBench();
    }
}

void SystemTest::startBench(Words words) {
    bench = std::make_unique<Process>(concat({"zmbench", "--runtime", folder}, words), folder);
    ASSERT_THAT(bench->line(), StartsWith("ready")) << bench->err();
}

void SystemTest::startManual(Words words) {
    startBench(concat({"--no-disc-service", "--manual-clock", "--no-web"}, words));
}

int SystemTest::endBench() {
    bench->signal(SIGTERM);
    const int status = bench->wait();
    bench.reset();
    return status;
}

SystemTest::Answer SystemTest::ctl(const Words& words) {
    Process process(concat({"zmctl", "--runtime", folder}, words), folder);
    Answer answer;
    answer.exit = process.wait();
    answer.out = process.out();
    answer.err = process.err();
    return answer;
}

std::string SystemTest::must(const Words& words) {
    const auto answer = ctl(words);
    EXPECT_EQ(answer.exit, 0) << joined(words) << ": " << answer.err;
    EXPECT_EQ(answer.err, "") << joined(words);
    return answer.out;
}

std::string SystemTest::mustFail(const Words& words, int exit) {
    const auto answer = ctl(words);
    EXPECT_EQ(answer.exit, exit) << joined(words);
    EXPECT_EQ(answer.out, "") << joined(words);
    EXPECT_NE(answer.err, "") << joined(words);
    return answer.err;
}

void SystemTest::settle() {
    must({"settle"});
}

std::vector<std::string> SystemTest::lines(const Words& words) {
    return ctl::outputLines(must(words));
}

std::vector<int> SystemTest::children() {
    std::vector<int> pids;
    for (const auto& line : lines({"ps"})) {
        pids.push_back(std::stoi(line.substr(line.find(' ') + 1)));
    }
    return pids;
}

Json SystemTest::screen() {
    return Json::parse(must({"screen"}));
}

int SystemTest::window(const std::string& view) {
    return screen()[view]["window"];
}

Json SystemTest::item(int windowId, int itemId, const std::string& view) {
    return screen()[view]["windows"][std::to_string(windowId)]["items"][std::to_string(itemId)];
}

void SystemTest::putDevice(const Words& changes) {
    must(concat({"pps", "put", "zelmar/disc/device"}, changes));
    settle();
}

void SystemTest::putStatus(const Words& changes) {
    must(concat({"pps", "put", "zelmar/disc/status"}, changes));
    settle();
}

void SystemTest::playMusic() {
    putDevice({"disc::1", "mixedtype::2", "mediatype::2"});
    putStatus({"discstate::2"});
    ASSERT_EQ(window(), 6);
}

void SystemTest::watchCommands() {
    m_watch = std::make_unique<Process>(Words{"zmctl", "pps", "watch", "zelmar/disc/control"}, folder);
    // Watching has begun once a mark comes through.
    const bool watching = eventually([this] {
        must({"pps", "put", "zelmar/disc/control", "mark::1"});
        return m_watch->line(std::chrono::milliseconds(100)) == "mark::1";
    });
    ASSERT_TRUE(watching);
}

std::vector<std::string> SystemTest::commands(size_t atLeast) {
    const std::string prefix = "zmcmd:json:";
    std::vector<std::string> result;
    settle();
    for (;;) {
        const auto patience = std::chrono::milliseconds(result.size() < atLeast ? 5000 : 50);
        const std::string line = m_watch->line(patience);
        if (line.empty()) {
            return result;
        }
        if (line.starts_with(prefix)) {
            const Json command = Json::parse(line.substr(prefix.size()));
            result.push_back(command["cmd"].dump() + "," + command["param1"].dump() + "," +
                             command["param2"].dump());
        }
    }
}

bool SystemTest::eventually(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

} // namespace zm::test
