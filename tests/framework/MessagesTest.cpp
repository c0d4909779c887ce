#include "tests/framework/TestApplication.h"

#include <gmock/gmock.h>

#include <thread>

using namespace zm::test;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(FrameworkTest, ViewMessagesReachTheMainViewThenTheJoinedOnesInOrder) {
    run();
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(app.controller.SendViewMessage({{1000 + i, i, 0, 0}}));
    }
    headUnit.settle();
    EXPECT_THAT(app.events.take(), ElementsAre("message 1000 0", "osd message 1000 0", "message 1001 1",
                                               "osd message 1001 1", "message 1002 2", "osd message 1002 2"));
}

TEST_F(FrameworkTest, EachSenderKeepsItsOrderAndAllHandlersRunOnOneThread) {
    run();
    std::vector<std::thread> senders;
    for (int sender = 0; sender < 3; ++sender) {
        senders.emplace_back([&, sender] {
            for (int i = 0; i < 100; ++i) {
                app.main.SendViewMessage({{sender, i, 0, 0}});
            }
        });
    }
    headUnit.askData({{"t", "key"}, {"code", 20}});
    for (auto& sender : senders) {
        sender.join();
    }
    headUnit.settle();
    std::map<int, int> next;
    for (const std::string& line : app.events.take()) {
        int sender = 0;
        int number = 0;
        if (std::sscanf(line.c_str(), "message %d %d", &sender, &number) == 2) {
            EXPECT_EQ(number, next[sender]++);
        }
    }
    EXPECT_THAT(next, ElementsAre(testing::Pair(0, 100), testing::Pair(1, 100), testing::Pair(2, 100)));
    EXPECT_EQ(app.events.threads().size(), 1u);
    EXPECT_FALSE(app.events.threads().contains(std::this_thread::get_id()));
}

TEST_F(FrameworkTest, AControllerWithoutAViewSendsNothing) {
    RecordingController lonely(nullptr, app.changes);
    EXPECT_FALSE(lonely.SendViewMessage({{1000, 0, 0, 0}}));
}

TEST_F(FrameworkTest, LauncherMessagesComeOnlyOnceTheirMonitorIsStarted) {
    run();
    headUnit.askData({{"t", "app"}, {"status", 0}});
    headUnit.askData({{"t", "appdata"}, {"text", "--song=a"}});
    headUnit.askData({{"t", "device"}, {"device", 2}, {"value", 0}, {"notify", true}});
    headUnit.askData({{"t", "time"}, {"hour", 23}, {"minute", 5}, {"format", 1}});
    EXPECT_THAT(app.events.take(), IsEmpty());
    for (const int monitor : {1, 4, 2}) {
        EXPECT_TRUE(app.controller.StartMonitor(monitor));
    }
    ASSERT_TRUE(headUnit.waitForShell("monitor", 3));
    EXPECT_FALSE(app.controller.StartMonitor(3));
    headUnit.askData({{"t", "app"}, {"status", 3}});
    headUnit.askData({{"t", "appdata"}, {"text", "--song=b"}});
    headUnit.askData({{"t", "device"}, {"device", 2}, {"value", -1}, {"notify", true}});
    headUnit.askData({{"t", "time"}, {"hour", 24}, {"minute", 0}, {"format", 0}});
    EXPECT_THAT(app.events.take(),
                ElementsAre("apps 3 0 3 0", "apps 3 1 1 0", "apps 3 4 2 -1", "apps 3 3 0 0"));
    EXPECT_EQ(app.controller.GetAppdata(1), "--song=b");
    EXPECT_EQ(app.controller.GetAppdata(0), "--song=a");
    EXPECT_EQ(app.controller.GetAppdata(2), "");
    EXPECT_EQ(app.controller.GetAppdata(-1), "");
}

TEST_F(FrameworkTest, ApplicationDataCanBeFetchedInsideItsMessage) {
    run();
    app.controller.StartMonitor(1);
    std::string text;
    app.main.onHandler = [&](const std::string&) { text = app.controller.GetAppdata(0); };
    headUnit.askData({{"t", "appdata"}, {"text", "--kb_val=\xE5\x85\x89"}});
    EXPECT_EQ(text, "--kb_val=\xE5\x85\x89");
}

TEST_F(FrameworkTest, OldApplicationDataIsForgotten) {
    run();
    for (int i = 0; i < 70; ++i) {
        headUnit.tell({{"t", "appdata"}, {"text", std::to_string(i)}});
    }
    headUnit.settle();
    EXPECT_EQ(app.controller.GetAppdata(69), "69");
    EXPECT_EQ(app.controller.GetAppdata(6), "6");
    EXPECT_EQ(app.controller.GetAppdata(5), "");
}

TEST_F(FrameworkTest, DeviceValuesAreReadAsTheHeadUnitHasThem) {
    run();
    int value = 77;
    EXPECT_TRUE(app.controller.GetDeviceStatus(7, value));
    EXPECT_EQ(value, 200);
    value = 77;
    EXPECT_FALSE(app.controller.GetDeviceStatus(9, value));
    EXPECT_FALSE(app.controller.GetDeviceStatus(12345, value));
    EXPECT_EQ(value, 77);
    headUnit.askData({{"t", "device"}, {"device", 7}, {"value", -55}, {"notify", false}});
    EXPECT_TRUE(app.controller.GetDeviceStatus(7, value));
    EXPECT_EQ(value, -55);
    headUnit.askData({{"t", "device"}, {"device", 7}, {"value", nullptr}});
    EXPECT_FALSE(app.controller.GetDeviceStatus(7, value));
    EXPECT_EQ(value, -55);
}

TEST_F(FrameworkTest, ASilentDeviceChangeSendsNoMessage) {
    run();
    app.controller.StartMonitor(2);
    headUnit.askData({{"t", "device"}, {"device", 2}, {"value", 0}});
    headUnit.settle();
    EXPECT_THAT(app.events.take(), IsEmpty());
}

TEST(Time, IsTheHeadUnits) {
    FakeHeadUnit headUnit(json{{"time", {{"hour", 7}, {"minute", 8}, {"format", 1}}}});
    TestApplication app(headUnit);
    app.start();
    T_ZMDatetime now{};
    ASSERT_TRUE(app.controller.GetCurrentDateTime(now));
    EXPECT_EQ(now.nHour, 7);
    EXPECT_EQ(now.nMinute, 8);
    EXPECT_EQ(now.nHourFormat, 1);
    EXPECT_GE(now.nYear, 2024);
    headUnit.askData({{"t", "time"}, {"hour", 24}, {"minute", 59}, {"format", 0}});
    ASSERT_TRUE(app.controller.GetCurrentDateTime(now));
    EXPECT_EQ(now.nHour, 24);
    EXPECT_EQ(now.nMinute, 59);
    EXPECT_EQ(now.nHourFormat, 0);
}

TEST_F(FrameworkTest, RequestsReachTheLauncherWithTheirMembers) {
    EXPECT_FALSE(app.controller.QueryLauncher("zmhome", "null"));
    run();
    EXPECT_TRUE(app.controller.QueryLauncher("zmhome", "null"));
    EXPECT_TRUE(app.controller.QueryLauncher("zmasr", 2, "--type=ui"));
    EXPECT_TRUE(app.controller.QueryCloseApp("zmdisc", "null"));
    app.controller.ToBeep();
    ASSERT_TRUE(headUnit.waitForShell("request", 4));
    EXPECT_THAT(
        headUnit.shell("request"),
        ElementsAre(
            json{{"t", "request"}, {"op", "QueryLauncher"}, {"app", "zmhome"}, {"type", 0}, {"data", "null"}},
            json{{"t", "request"},
                 {"op", "QueryLauncher"},
                 {"app", "zmasr"},
                 {"type", 2},
                 {"data", "--type=ui"}},
            json{{"t", "request"}, {"op", "QueryCloseApp"}, {"app", "zmdisc"}, {"data", "null"}},
            json{{"t", "request"}, {"op", "ToBeep"}}));
}

TEST_F(FrameworkTest, KeysReachTheMainViewAndTellWhetherTheyWereHandled) {
    run();
    EXPECT_EQ(headUnit.askData({{"t", "key"}, {"code", 20}}), (json{{"handled", true}}));
    EXPECT_EQ(headUnit.askData({{"t", "key"}, {"code", -3}}), (json{{"handled", false}}));
    EXPECT_THAT(app.events.take(), ElementsAre("key 20", "key -3"));
}

TEST_F(FrameworkTest, LanguageAndThemeReachAllViews) {
    run();
    headUnit.askData({{"t", "language"}, {"code", "de"}});
    headUnit.askData({{"t", "theme"}, {"name", "day"}});
    headUnit.askData({{"t", "theme"}, {"name", "night"}});
    EXPECT_THAT(app.events.take(), ElementsAre("language 1", "osd language 1", "style 0", "osd style 0",
                                               "style 1", "osd style 1"));
    const json screen = headUnit.askData({{"t", "screen"}, {"view", "main"}, {"window", 1}});
    EXPECT_EQ(screen["main"]["windows"]["1"]["items"]["10"]["text"], "Scheibe");
}

TEST(Language, OfTheWelcomeIsThereFromTheStart) {
    FakeHeadUnit headUnit(json{{"language", "de"}});
    TestApplication app(headUnit);
    app.start();
    const json screen = headUnit.askData({{"t", "screen"}, {"view", "main"}});
    EXPECT_EQ(screen["main"]["windows"]["1"]["items"]["10"]["text"], "Scheibe");
}

TEST_F(FrameworkTest, UnknownAndFaultyMessagesAreAnsweredWithAnError) {
    run();
    EXPECT_EQ(headUnit.ask({{"t", "dance"}})["ok"], false);
    const json reply = headUnit.ask({{"t", "key"}, {"code", "up"}});
    EXPECT_EQ(reply["ok"], false);
    EXPECT_THAT(reply["error"].get<std::string>(), testing::StartsWith("key: "));
    EXPECT_EQ(headUnit.ask({{"t", "touch"}, {"x", 3}})["ok"], false);
    EXPECT_EQ(headUnit.askData({{"t", "key"}, {"code", 20}})["handled"], true);
}
