#include "services/bench/screen/VideoService.h"

#include "platform/linux/pps/PpsFile.h"
#include "tests/screen/ScreenFixture.h"
#include "tests/support/RunningPpsService.h"

namespace zm::test {

namespace {

std::string request(const char* status, const char* group = "1-7-zelmar-disc",
                    const char* child = "zmdisc_video_win") {
    return std::string("@command\nzmvideo:json:{\"status\":\"") + status + "\",\"wndgp_id\":\"" + group +
           "\",\"wnd_id\":\"" + child + "\",\"src\":\"zmdisc\"}\n";
}

std::string published(const char* status, const char* group = "1-7-zelmar-disc",
                      const char* child = "zmdisc_video_win") {
    return std::string("@status\nzmdisc:json:{\"valid\":1,\"type\":\"video\"}\nzmvideo:json:{\"status\":\"") +
           status + "\",\"wndgp_id\":\"" + group + "\",\"wnd_id\":\"" + child + "\",\"src\":\"zmdisc\"}\n";
}

} // namespace

class VideoServiceTest : public ScreenTest {
protected:
    VideoServiceTest() {
        call([this] {
            service = std::make_unique<bench::screen::VideoService>(loop, *compositor, ppsSocket);
            service->onChildPosted = [this](const std::string& group, const std::string& child,
                                            unsigned window) {
                events.push_back("posted " + group + " " + child + " " +
                                 (window == compositor->postChild(child) ? "same" : "other"));
            };
            service->onChildWithdrawn = [this](const std::string& group, const std::string& child) {
                events.push_back("withdrawn " + group + " " + child);
            };
            const auto started = service->start();
            EXPECT_TRUE(started) << started.error();
            return 0;
        });
        command = open("/pps/zelmar/videoservice/command?delta,nopersist", 257);
        status = open("/pps/zelmar/videoservice/status?delta", 258);
        EXPECT_EQ(*status->read(), "@status\n");
    }
    ~VideoServiceTest() override {
        call([this] {
            service.reset();
            return 0;
        });
    }
    std::unique_ptr<PpsFile> open(const char* path, int flags) {
        auto file = PpsFile::open(ppsSocket, path, flags, 0666);
        EXPECT_TRUE(file) << file.error();
        return std::make_unique<PpsFile>(std::move(*file));
    }
    /** Writes a request and gives what the service published about it. */
    std::string ask(const std::string& text) {
        EXPECT_TRUE(command->write(text));
        return answer();
    }
    std::string answer() {
        std::string text;
        EXPECT_TRUE(eventually([&] {
            auto result = status->read();
            text += result ? *result : "";
            return !text.empty();
        }));
        return text;
    }
    std::vector<std::string> takeEvents() {
        return call([this] { return std::exchange(events, {}); });
    }
    using Events = std::vector<std::string>;

    std::string ppsSocket = folder + "/pps.sock";
    RunningPpsService pps{ppsSocket};
    std::unique_ptr<bench::screen::VideoService> service;
    Events events;
    std::unique_ptr<PpsFile> command;
    std::unique_ptr<PpsFile> status;
};

TEST_F(VideoServiceTest, OnPostsTheChildWindowTellsAndPublishes) {
    EXPECT_EQ(ask(request("on")), published("on"));
    EXPECT_TRUE(video()["posted"]);
    EXPECT_EQ(takeEvents(), Events{"posted 1-7-zelmar-disc zmdisc_video_win same"});
}

TEST_F(VideoServiceTest, OffWithdrawsItTellsAndPublishes) {
    ask(request("on"));
    takeEvents();
    EXPECT_EQ(ask(request("off")), published("off"));
    EXPECT_FALSE(video()["posted"]);
    EXPECT_EQ(takeEvents(), Events{"withdrawn 1-7-zelmar-disc zmdisc_video_win"});
}

TEST_F(VideoServiceTest, OnAgainPublishesAgainAndKeepsTheWindow) {
    ask(request("on"));
    takeEvents();
    EXPECT_EQ(ask(request("on")), published("on"));
    EXPECT_TRUE(takeEvents().empty());
    EXPECT_TRUE(video()["posted"]);
}

TEST_F(VideoServiceTest, OffWithoutAWindowOnlyPublishes) {
    EXPECT_EQ(ask(request("off")), published("off"));
    EXPECT_TRUE(takeEvents().empty());
}

TEST_F(VideoServiceTest, AnotherApplicationTakesTheWindowOver) {
    ask(request("on"));
    takeEvents();
    EXPECT_EQ(ask(request("on", "1-8-zelmar-disc")), published("on", "1-8-zelmar-disc"));
    EXPECT_EQ(takeEvents(), (Events{"withdrawn 1-7-zelmar-disc zmdisc_video_win",
                                    "posted 1-8-zelmar-disc zmdisc_video_win same"}));
    EXPECT_EQ(ask(request("off")), published("off"));
    EXPECT_TRUE(video()["posted"]) << "the late off of the earlier one";
    EXPECT_TRUE(takeEvents().empty());
}

TEST_F(VideoServiceTest, AnApplicationThatDiesLosesItsWindow) {
    ask(request("on"));
    call([this] {
        service->applicationGone();
        service->applicationGone();
        return 0;
    });
    EXPECT_EQ(answer(), published("off"));
    EXPECT_FALSE(video()["posted"]);
}

TEST_F(VideoServiceTest, WhatItDoesNotUnderstandIsIgnored) {
    for (const char* line :
         {"zmvideo::on\n", "zmvideo:json:{\n", "zmvideo:json:{\"status\":\"on\"}\n", "zmvideo:json:[]\n",
          "zmvideo:json:{\"status\":1,\"wndgp_id\":\"\",\"wnd_id\":\"\",\"src\":\"\"}\n", "-zmvideo\n",
          "other:json:{\"status\":\"on\",\"wndgp_id\":\"g\",\"wnd_id\":\"w\",\"src\":\"s\"}\n"}) {
        ASSERT_TRUE(command->write(line)) << line;
    }
    ASSERT_TRUE(command->write(request("pause")));
    EXPECT_EQ(ask(request("on")), published("on")) << "nothing was published before";
}

TEST_F(VideoServiceTest, QuickRequestsAreCarriedOutInOrder) {
    ASSERT_TRUE(command->write(request("on")));
    ASSERT_TRUE(command->write(request("off")));
    ASSERT_TRUE(command->write(request("on")));
    std::string all;
    EXPECT_TRUE(eventually([&] {
        return (all += *status->read()) == published("on") + published("off") + published("on");
    })) << all;
    EXPECT_EQ(takeEvents().size(), 3u);
}

TEST_F(VideoServiceTest, ItFindsARestartedPpsService) {
    pps.stop();
    pps.start();
    command = open("/pps/zelmar/videoservice/command?delta,nopersist", 257);
    status = open("/pps/zelmar/videoservice/status?delta", 258);
    static_cast<void>(status->read());
    EXPECT_EQ(ask(request("on")), published("on"));
    EXPECT_TRUE(video()["posted"]);
}

TEST(VideoServiceStartTest, WithoutAPpsServiceItDoesNotStart) {
    EventLoop loop;
    bench::screen::Compositor compositor(loop, "/tmp/zm-no-such-folder/screen.sock");
    bench::screen::VideoService service(loop, compositor, "/tmp/zm-no-such-folder/pps.sock");
    const auto started = service.start();
    ASSERT_FALSE(started);
    EXPECT_NE(started.error().find("pps.sock"), std::string::npos);
}

} // namespace zm::test
