#include "services/bench/unit/ShellServer.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <stdlib.h>

namespace zm::test {

using namespace std::chrono_literals;

/** The head unit's end of the link, with the test as the application. */
class ShellServerTest : public testing::Test {
protected:
    ShellServerTest() {
        server = std::make_unique<bench::unit::ShellServer>(loop, folder + "/shell.sock");
        server->welcome = [] { return Json{{"language", "en"}}; };
        server->onGone = [this](bool inOrder) { ends.push_back(inOrder); };
        EXPECT_TRUE(server->start());
    }

    SyncConnection connect() {
        auto fd = connectUnix(folder + "/shell.sock");
        EXPECT_TRUE(fd);
        return SyncConnection(std::move(*fd));
    }
    /** One that has been welcomed. */
    SyncConnection connectAndGreet() {
        auto application = connect();
        EXPECT_TRUE(application.send(R"({"t":"hello","name":"zmdisc","group":"","pid":7})"));
        EXPECT_EQ(receive(application)["t"], "welcome");
        return application;
    }
    void turn() {
        while (loop.iterate(false)) {
        }
    }
    void waitFor(const std::function<bool()>& condition) {
        const auto deadline = std::chrono::steady_clock::now() + 5s;
        while (!condition() && std::chrono::steady_clock::now() < deadline) {
            loop.iterate(false);
        }
        EXPECT_TRUE(condition());
    }
    Json receive(SyncConnection& application) {
        turn();
        auto message = application.receive(2s);
        EXPECT_TRUE(message);
        return message ? Json::parse(message->text) : Json();
    }

    EventLoop loop;
    const TemporaryFolder temporary;
    const std::string& folder = temporary.path();
    std::unique_ptr<bench::unit::ShellServer> server;
    std::vector<bool> ends;
};

TEST_F(ShellServerTest, AHelloIsAnsweredWithTheStartValues) {
    auto application = connect();
    ASSERT_TRUE(application.send(R"({"t":"hello","name":"zmdisc","group":"1-7-zelmar-disc","pid":7})"));
    const Json welcome = receive(application);
    EXPECT_EQ(welcome["t"], "welcome");
    EXPECT_EQ(welcome["language"], "en");
    EXPECT_EQ(server->group(), "1-7-zelmar-disc");
    EXPECT_EQ(server->pid(), getpid());
    EXPECT_FALSE(server->running());
}

TEST_F(ShellServerTest, AQuestionGetsItsOwnAnswer) {
    auto application = connectAndGreet();
    std::vector<std::string> answers;
    for (const char* name : {"first", "second"}) {
        server->ask({{"t", name}}, [&answers, name](const Result<Json>& reply) {
            answers.push_back(std::string(name) + (reply ? reply->dump() : " " + reply.error()));
        });
    }
    const int first = receive(application)["id"];
    const int second = receive(application)["id"];
    EXPECT_TRUE(application.send(jsonText({{"t", "reply"}, {"id", second}, {"ok", false}, {"error", "no"}})));
    EXPECT_TRUE(application.send(jsonText({{"t", "reply"}, {"id", first}, {"ok", true}, {"data", 5}})));
    EXPECT_TRUE(application.send(jsonText({{"t", "reply"}, {"id", 999}, {"ok", true}})));
    waitFor([&] { return answers.size() == 2; });
    EXPECT_THAT(answers, testing::ElementsAre("second no", "first5"));
}

TEST_F(ShellServerTest, NothingReachesAnApplicationBeforeItsWelcome) {
    auto application = connect();
    waitFor([&] { return server->connected(); });
    std::string error;
    bool informed = false;
    server->ask({{"t", "screen"}}, [&](const Result<Json>& reply) { error = reply.error(); });
    server->inform({{"t", "language"}}, [&](const Result<Json>& reply) { informed = bool(reply); });
    server->tell({{"t", "childgone"}});
    waitFor([&] { return informed; });
    EXPECT_EQ(error, "the application has not started");
    ASSERT_TRUE(application.send(R"({"t":"hello","name":"zmdisc","group":"","pid":7})"));
    waitFor([&] { return server->messagesSent() == 1; });
    EXPECT_EQ(receive(application)["t"], "welcome");
}

TEST_F(ShellServerTest, WithoutAnApplicationAQuestionFailsLater) {
    std::string error;
    server->ask({{"t", "screen"}}, [&](const Result<Json>& reply) { error = reply.error(); });
    EXPECT_EQ(error, "") << "never inside the call";
    turn();
    EXPECT_EQ(error, "the application is not running");
}

TEST_F(ShellServerTest, AnApplicationThatDoesNotAnswerIsNotWaitedForForEver) {
    auto application = connectAndGreet();
    std::string error;
    server->ask(
        {{"t", "screen"}}, [&](const Result<Json>& reply) { error = reply.error(); }, 20ms);
    waitFor([&] { return !error.empty(); });
    EXPECT_EQ(error, "the application does not answer");
}

TEST_F(ShellServerTest, OpenQuestionsFailWhenTheApplicationDies) {
    std::string error;
    {
        auto application = connectAndGreet();
        server->ask({{"t", "screen"}}, [&](const Result<Json>& reply) { error = reply.error(); });
    }
    waitFor([&] { return !error.empty(); });
    EXPECT_EQ(error, "the application has ended");
    EXPECT_THAT(ends, testing::ElementsAre(false));
}

TEST_F(ShellServerTest, AnApplicationThatSaysByeEndsInOrder) {
    {
        auto application = connect();
        EXPECT_TRUE(application.send(R"({"t":"bye"})"));
        waitFor([&] { return server->connected(); });
    }
    waitFor([&] { return !ends.empty(); });
    EXPECT_THAT(ends, testing::ElementsAre(true));
}

TEST_F(ShellServerTest, ASecondApplicationIsTurnedAway) {
    auto first = connect();
    waitFor([&] { return server->connected(); });
    auto second = connect();
    turn();
    EXPECT_FALSE(second.receive(2s));
    EXPECT_TRUE(first.send(R"({"t":"running"})"));
    waitFor([&] { return server->running(); });
}

TEST_F(ShellServerTest, WhatIsNoMessageEndsTheConnection) {
    for (const char* text : {"", "nonsense", "[]", "{}", R"({"t":5})"}) {
        ends.clear();
        auto application = connect();
        EXPECT_TRUE(application.send(text));
        waitFor([&] { return !ends.empty(); });
    }
    auto application = connect();
    for (const char* text : {R"({"t":"unknown"})", R"({"t":"reply"})", R"({"t":"reply","id":"x","ok":true})",
                             R"({"t":"hello","group":5})"}) {
        EXPECT_TRUE(application.send(text));
    }
    EXPECT_EQ(receive(application)["t"], "welcome");
    EXPECT_TRUE(server->connected());
}

} // namespace zm::test
