#include "tests/model/ControllerTest.h"

namespace zm::test {

using testing::ElementsAre;
using testing::IsEmpty;

using Controller = DiscViewController;

struct CommandRow {
    const char* name;
    std::function<bool(Controller&)> send;
    int cmd;
    int param1;
    int param2;
};

const CommandRow COMMANDS[] = {
    {"NextClip", [](Controller& c) { return c.NextClip(); }, 1, 0, 0},
    {"PreviousClip", [](Controller& c) { return c.PreviousClip(); }, 2, 0, 0},
    {"FastForward", [](Controller& c) { return c.FastForward(); }, 3, 0, 0},
    {"FastBackward", [](Controller& c) { return c.FastBackward(); }, 4, 0, 0},
    {"PlayPause", [](Controller& c) { return c.PlayPause(); }, 5, 0, 0},
    {"SetShuffleMode", [](Controller& c) { return c.SetShuffleMode(3); }, 7, 3, 0},
    {"SetRepeatMode", [](Controller& c) { return c.SetRepeatMode(8); }, 9, 8, 0},
    {"RepeatAB", [](Controller& c) { return c.RepeatAB(); }, 10, 0, 0},
    {"SelectAudioChannel", [](Controller& c) { return c.SelectAudioChannel(); }, 11, 0, 0},
    {"SelectMainSubAudio", [](Controller& c) { return c.SelectMainSubAudio(); }, 11, 0, 0},
    {"KeyAngle", [](Controller& c) { return c.KeyAngle(); }, 12, 0, 0},
    {"Eject", [](Controller& c) { return c.Eject(); }, 13, 0, 0},
    {"SelectSubtitle", [](Controller& c) { return c.SelectSubtitle(); }, 18, 0, 0},
    {"VCD_PBC", [](Controller& c) { return c.VCD_PBC(); }, 19, 0, 0},
    {"Zoom", [](Controller& c) { return c.Zoom(); }, 20, 0, 0},
    {"ReturnToMenu", [](Controller& c) { return c.ReturnToMenu(); }, 21, 0, 0},
    {"StopPlayBack", [](Controller& c) { return c.StopPlayBack(); }, 22, 0, 0},
    {"Pause", [](Controller& c) { return c.Pause(); }, 130, 0, 0},
    {"Play", [](Controller& c) { return c.Play(); }, 131, 0, 0},
    {"ChangeFormat", [](Controller& c) { return c.ChangeFormat(2); }, 142, 2, 0},
    {"ReturnToTitle", [](Controller& c) { return c.ReturnToTitle(); }, 145, 0, 0},
    {"KeyRotation", [](Controller& c) { return c.KeyRotation(); }, 163, 0, 0},
    {"PlayTrack", [](Controller& c) { return c.PlayTrack(65537, 2); }, 182, 65537, 2},
    {"PlayChapter", [](Controller& c) { return c.PlayChapter(4); }, 183, 4, 0},
    {"PlayTitle", [](Controller& c) { return c.PlayTitle(5); }, 184, 5, 0},
    {"Seek", [](Controller& c) { return c.Seek(61); }, 185, 61, 0},
    {"GotoSubList", [](Controller& c) { return c.GotoSubList(6, 7); }, 186, 6, 7},
    {"RequestSource", [](Controller& c) { return c.RequestSource(1, 2); }, 187, 1, 2},
    {"SendTsPos", [](Controller& c) { return c.SendTsPos(400, 240); }, 188, 400, 240},
    {"CheckPassword", [](Controller& c) { return c.CheckPassword(1234); }, 189, 1234, 0},
};

class ControllerCommandsTest : public RunningControllerTest {};

TEST_F(ControllerCommandsTest, EveryOperationSendsItsCommand) {
    PpsFile reader = open(CONTROL, "?delta");
    ASSERT_TRUE(reader.read());
    for (const CommandRow& row : COMMANDS) {
        EXPECT_TRUE(row.send(m_controller)) << row.name;
        EXPECT_EQ(next(reader), "@control\nzmcmd:json:{\"cmd\":" + std::to_string(row.cmd) +
                                    ",\"param1\":" + std::to_string(row.param1) +
                                    ",\"param2\":" + std::to_string(row.param2) + "}\n")
            << row.name;
    }
}

TEST_F(ControllerCommandsTest, SomeOperationsSendNothing) {
    PpsFile reader = open(CONTROL, "?delta");
    ASSERT_TRUE(reader.read());
    EXPECT_TRUE(m_controller.KeyLeft());
    EXPECT_TRUE(m_controller.KeyRight());
    EXPECT_TRUE(m_controller.KeyUp());
    EXPECT_TRUE(m_controller.KeyDown());
    EXPECT_TRUE(m_controller.KeySelect());
    EXPECT_TRUE(m_controller.ReqPlaylist(1, 2));
    EXPECT_TRUE(m_controller.ReqPlaylistName(1, 2, 3));
    m_controller.PlayPause();
    EXPECT_EQ(next(reader), "@control\nzmcmd:json:{\"cmd\":5,\"param1\":0,\"param2\":0}\n")
        << "nothing before it";
}

TEST_F(ControllerCommandsTest, CommandsFailWhenTheObjectIsClosed) {
    m_controller.Stop();
    m_controller.Close();
    for (const CommandRow& row : COMMANDS) {
        EXPECT_FALSE(row.send(m_controller)) << row.name;
    }
}

TEST_F(ControllerCommandsTest, MessagesBetweenTheViews) {
    EXPECT_TRUE(m_controller.OnMessageOSDReturn());
    EXPECT_TRUE(m_controller.OnMessageUpdateTime());
    EXPECT_TRUE(m_controller.OnMessageOSDGetCurTrack());
    EXPECT_TRUE(m_controller.OnMessageOSDGotoTrack(17));
    EXPECT_THAT(m_view.take(4), ElementsAre(ViewMessage{1020, 0, 0, 0}, ViewMessage{1022, 0, 0, 0},
                                            ViewMessage{1027, 0, 0, 0}, ViewMessage{1028, 17, 0, 0}));
}

TEST_F(ControllerCommandsTest, MessagesWithoutAViewStillSucceed) {
    DiscViewController alone(nullptr, m_data);
    EXPECT_TRUE(alone.OnMessageOSDReturn());
    EXPECT_TRUE(alone.OnMessageOSDGotoTrack(1));
}

TEST_F(ControllerCommandsTest, VideoCaptureIsLoggedAroundTheCommand) {
    forgetLog();
    EXPECT_TRUE(m_controller.OperateVideoCapture(true, "1-7-zelmar-disc", "capture", "zmdisc"));
    EXPECT_EQ(object(VIDEO_COMMAND),
              "@command\nzmvideo:json:{\"status\":\"on\",\"wndgp_id\":\"1-7-zelmar-disc\","
              "\"wnd_id\":\"capture\",\"src\":\"zmdisc\"}\n");
    EXPECT_THAT(
        logged(),
        ElementsAre("[OperateVideoCapture]-[OperateVideoCapture]: bStart=1,strWndGroupId=1-7-zelmar-disc,"
                    "strWndId=capture,strSrcName=zmdisc",
                    "[OperateVideoCapture]-[OperateVideoCapture]: Ret=1"));
    m_controller.Stop();
    m_controller.Close();
    EXPECT_FALSE(m_controller.OperateVideoCapture(false, "", "", ""));
    EXPECT_THAT(logged(), ElementsAre("[OperateVideoCapture]-[OperateVideoCapture]: bStart=0,strWndGroupId=,"
                                      "strWndId=,strSrcName=",
                                      "[OperateVideoCapture]-[OperateVideoCapture]: Ret=0"));
}

} // namespace zm::test
