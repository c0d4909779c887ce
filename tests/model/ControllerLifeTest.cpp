#include "tests/model/ControllerTest.h"
#include "tests/model/LockWait.h"
#include "tests/model/PpsCalls.h"

#include "ZMModel/DiscPPSInfo.h"

#include <algorithm>
#include <future>
#include <regex>

namespace zm::test {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(ControllerTest, WhatWasThereBeforeComesInTheOrderOfTheObjects) {
    publish(DEVICE, "disc::1");
    publish(VIDEO_STATUS, "zmvideo:json:{}");
    publish(MPEGINFO, "version::2");
    publish(PLAYING, R"(playtime:json:{"time":1,"tracktime":2,"times":3})");
    publish(STATUS, "discstate::2");
    publish(SYSTEM, "discstatus::on");
    EXPECT_TRUE(m_controller.Init());
    EXPECT_TRUE(m_controller.Start());
    EXPECT_THAT(m_view.codes(5), ElementsAre(1021, 1016, 1018, 1013, 1019));
    EXPECT_TRUE(m_controller.Stop());
}

TEST_F(ControllerTest, InitOpensEveryObjectAndEmptiesTheControlObject) {
    publish(CONTROL, "zmcmd:json:{}");
    EXPECT_TRUE(m_controller.Init());
    auto names = ppsList(socket());
    ASSERT_TRUE(names);
    EXPECT_THAT(*names,
                testing::UnorderedElementsAre(
                    "zelmar/disc/control", "zelmar/disc/status", "zelmar/disc/device", "zelmar/disc/playing",
                    "zelmar/disc/mpeginfo", "zelmar/videoservice/command", "zelmar/videoservice/status",
                    "zelmar/system/dev_status", "zelmar/navigator/nowplaying"));
    EXPECT_EQ(object(CONTROL), "@control\n");
}

TEST_F(ControllerTest, InitTriesEveryObjectAlsoWhenOneFails) {
    const std::vector<std::string> objects = {STATUS,       PLAYING, MPEGINFO,   DEVICE, VIDEO_COMMAND,
                                              VIDEO_STATUS, SYSTEM,  NOWPLAYING, CONTROL};
    for (const std::string& taken : objects) {
        m_service.stop();
        m_service.start();                  // without an object or folder
        publish(taken + "/inside", "a::1"); // the object's name belongs to a folder now
        takePpsOpenings();
        {
            DiscViewController controller(&m_view, m_data);
            EXPECT_FALSE(controller.Init()) << taken;
        }
        std::vector<PpsCall> expected;
        for (const std::string& object : objects) {
            expected.push_back({object, object != taken});
        }
        EXPECT_EQ(takePpsOpenings(), expected);
    }
}

/** No PPS service: every object that is opened is complained about. */
class ControllerWithoutServiceTest : public ModelTest {
protected:
    RecordingView m_view;
    CDiscData m_data;
    DiscViewController m_controller{&m_view, m_data};
};

TEST_F(ControllerWithoutServiceTest, InitTriesAllObjectsInTheirOrder) {
    testing::internal::CaptureStderr();
    EXPECT_FALSE(m_controller.Init());
    const std::string errors = testing::internal::GetCapturedStderr();
    const std::regex path("/pps/zelmar/([a-z_/]+)\\?");
    std::vector<std::string> tried;
    for (std::sregex_iterator it(errors.begin(), errors.end(), path), end; it != end; ++it) {
        tried.push_back((*it)[1]);
    }
    EXPECT_THAT(tried, ElementsAre("disc/status", "disc/playing", "disc/mpeginfo", "disc/device",
                                   "videoservice/command", "videoservice/status", "system/dev_status",
                                   "navigator/nowplaying", "disc/control"));
}

TEST_F(ControllerTest, InitFailsWhenTheObjectsAreOpenAlready) {
    EXPECT_TRUE(m_controller.Init());
    EXPECT_FALSE(m_controller.Init());
}

TEST_F(ControllerTest, StartFailsWhenOneOfTheKeysIsTakenAndMonitorsTheOthers) {
    EXPECT_TRUE(m_controller.Init());
    DiscMpegInfoPPSModule other(g_DiscMpegInfoPPSInfo, &m_controller);
    ASSERT_TRUE(m_controller.AddFile(PPS_KEY_MPEGINFO, &other));
    EXPECT_FALSE(m_controller.Start());
    publish(STATUS, "keyinvalid::1");
    EXPECT_THAT(m_view.codes(1), ElementsAre(DISC_VMSG_KEYINVALID));
    EXPECT_TRUE(m_controller.Stop());
}

TEST_F(ControllerTest, AnOrderlyEnd) {
    EXPECT_TRUE(m_controller.Init());
    EXPECT_TRUE(m_controller.Start());
    EXPECT_TRUE(m_controller.Stop());
    EXPECT_TRUE(m_controller.Close());
    publish(STATUS, "discstate::2");
    EXPECT_THAT(m_view.take(0), IsEmpty());
}

TEST_F(ControllerTest, AnObjectThatCouldNotBeOpenedSpoilsNoOrderlyEnd) {
    publish("/pps/zelmar/disc/mpeginfo/taken", "a::1"); // a folder now
    EXPECT_FALSE(m_controller.Init());
    EXPECT_TRUE(m_controller.Start());
    publish(STATUS, "discstate::2");
    EXPECT_FALSE(m_view.codes(1).empty());
    EXPECT_TRUE(m_controller.Stop());
    EXPECT_TRUE(m_controller.Close());
}

TEST_F(ControllerTest, AfterAnEndItCanBeginAgain) {
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(m_controller.Init());
        EXPECT_TRUE(m_controller.Start());
        publish(MPEGINFO, "version::2");
        EXPECT_FALSE(m_view.codes(1).empty());
        EXPECT_TRUE(m_controller.Stop());
        EXPECT_TRUE(m_controller.Close());
        m_view.take(0);
    }
}

TEST_F(ControllerTest, ItClosesItsObjectsInTheOrderOfItsMembers) {
    EXPECT_TRUE(m_controller.Init());
    EXPECT_TRUE(m_controller.Start());
    EXPECT_TRUE(m_controller.Stop());
    takePpsClosings();
    EXPECT_TRUE(m_controller.Close());
    EXPECT_THAT(takePpsClosings(),
                ElementsAre(PpsCall{STATUS, true}, PpsCall{PLAYING, true}, PpsCall{MPEGINFO, true},
                            PpsCall{DEVICE, true}, PpsCall{CONTROL, true}, PpsCall{VIDEO_COMMAND, true},
                            PpsCall{VIDEO_STATUS, true}, PpsCall{SYSTEM, true}, PpsCall{NOWPLAYING, true}));
}

TEST_F(ControllerTest, AnObjectThatCannotBeClosedMakesTheEndAFailureAndTheOthersAreClosed) {
    for (const char* const object : {STATUS, CONTROL, NOWPLAYING}) {
        EXPECT_TRUE(m_controller.Init());
        EXPECT_TRUE(m_controller.Start());
        EXPECT_TRUE(m_controller.Stop());
        takePpsClosings();
        failPpsClosing(object);
        EXPECT_FALSE(m_controller.Close()) << object;
        const auto closings = takePpsClosings();
        EXPECT_EQ(closings.size(), 9u);
        for (const PpsCall& call : closings) {
            EXPECT_EQ(call.good, call.path != object) << call.path;
        }
    }
}

TEST_F(ControllerTest, AnEndThatMonitoredNothingIsAFailureAndClosesTheObjects) {
    EXPECT_TRUE(m_controller.Init());
    takePpsClosings();
    EXPECT_FALSE(m_controller.Close());
    const auto closings = takePpsClosings();
    EXPECT_EQ(closings.size(), 9u);
    EXPECT_TRUE(std::ranges::all_of(closings, &PpsCall::good));
}

/** How many threads this process has. */
static size_t threads() {
    std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<size_t>(std::distance(begin(tasks), end(tasks)));
}

TEST_F(ControllerTest, DestroyedWhileItMonitorsItEndsItsThreadFirst) {
    auto controller = std::make_unique<DiscViewController>(&m_view, m_data);
    EXPECT_TRUE(controller->Init());
    const size_t before = threads();
    EXPECT_TRUE(controller->Start());
    EXPECT_EQ(threads(), before + 1);
    std::promise<void> inMessage;
    std::promise<void> goOn;
    m_view.onMessage = [&, first = true](int) mutable {
        if (std::exchange(first, false)) {
            inMessage.set_value();
            goOn.get_future().wait();
        }
    };
    publish(STATUS, "discstate::2\nplayspeed::1");
    inMessage.get_future().wait();
    // The message on the monitor thread keeps the controller, which publishes behind it.
    EXPECT_TRUE(waitsForLock([&] { controller.reset(); }, [&] { goOn.set_value(); }));
    EXPECT_EQ(threads(), before);
    EXPECT_THAT(object(NOWPLAYING), testing::HasSubstr("\"status\":\"play\""));
}

} // namespace zm::test
