#include "tests/framework/TestApplication.h"

#include "zmcar/PPSFileBase.h"

#include <gmock/gmock.h>

using namespace zm::test;
using Oro::ZMCAR::PPSFileBase;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int ReadAndWrite = 258;
constexpr int WriteOnly = 257;

fileTagInfo tag(int key, const std::string& name, int flags = ReadAndWrite) {
    return {key, "/pps/zelmar/" + name + "?delta", flags, 0666};
}

/** Two monitored objects; the test publishes on other descriptors. */
class MonitorTest : public FrameworkTest {
protected:
    void SetUp() override { ASSERT_NO_FATAL_FAILURE(run()); }
    void TearDown() override { app.controller.Stop(); }
    void put(const std::string& name, const std::string& text) {
        auto file = headUnit.openPps("/pps/zelmar/" + name);
        EXPECT_TRUE(file.write(text));
    }

    PPSFileBase status{tag(1, "disc/status")};
    PPSFileBase device{tag(2, "disc/device")};
};

} // namespace

TEST_F(MonitorTest, PresentStateComesFirstInTheOrderOfAdding) {
    put("disc/device", "disc::1\n");
    put("disc/status", "playstate:json:{\"a\":1}\ndiscstate::2\n");
    ASSERT_TRUE(status.OpenPPS());
    ASSERT_TRUE(device.OpenPPS());
    EXPECT_TRUE(app.controller.AddFile(1, &status));
    EXPECT_TRUE(app.controller.AddFile(2, &device));
    EXPECT_FALSE(app.controller.AddFile(2, &device));
    EXPECT_FALSE(app.controller.AddFile(3, nullptr));
    ASSERT_TRUE(app.controller.Start());
    EXPECT_FALSE(app.controller.Start());
    headUnit.settle();
    EXPECT_THAT(app.changes.take(), ElementsAre("1 playstate:json:{\"a\":1}", "1 discstate::2", "2 disc::1"));
}

TEST_F(MonitorTest, EachLineOfADeltaIsOneChangeInOrder) {
    ASSERT_TRUE(status.OpenPPS());
    app.controller.AddFile(1, &status);
    app.controller.Start();
    headUnit.settle();
    put("disc/status", "a::1\nb:n:2\n");
    put("disc/status", "a::3\n");
    put("disc/status", "a::3\n");
    headUnit.settle();
    EXPECT_THAT(app.changes.take(), ElementsAre("1 a::1", "1 b:n:2", "1 a::3", "1 a::3"));
    EXPECT_EQ(app.changes.threads().size(), 1u);
}

TEST_F(MonitorTest, ADeletedAttributeHasEmptyTexts) {
    ASSERT_TRUE(status.OpenPPS());
    app.controller.AddFile(1, &status);
    app.controller.Start();
    headUnit.settle();
    put("disc/status", "a:n:1\n");
    put("disc/status", "-a\n");
    headUnit.settle();
    EXPECT_THAT(app.changes.take(), ElementsAre("1 a:n:1", "1 a::"));
}

TEST_F(MonitorTest, ObjectsComeAndGoWhileItRuns) {
    ASSERT_TRUE(status.OpenPPS());
    ASSERT_TRUE(device.OpenPPS());
    ASSERT_TRUE(app.controller.Start());
    EXPECT_TRUE(app.controller.AddFile(2, &device));
    put("disc/device", "disc::1\n");
    headUnit.settle();
    EXPECT_THAT(app.changes.take(), ElementsAre("2 disc::1"));
    EXPECT_TRUE(app.controller.RemoveFile(2));
    EXPECT_FALSE(app.controller.RemoveFile(2));
    put("disc/device", "disc::0\n");
    headUnit.settle();
    EXPECT_THAT(app.changes.take(), IsEmpty());
}

TEST_F(MonitorTest, NothingIsDeliveredAfterStop) {
    ASSERT_TRUE(status.OpenPPS());
    app.controller.AddFile(1, &status);
    app.controller.Start();
    put("disc/status", "a::1\n");
    headUnit.settle();
    EXPECT_TRUE(app.controller.Stop());
    app.changes.take();
    put("disc/status", "a::2\n");
    headUnit.settle();
    EXPECT_THAT(app.changes.take(), IsEmpty());
    EXPECT_TRUE(app.controller.Stop());
    ASSERT_TRUE(app.controller.Start());
    headUnit.settle();
    EXPECT_THAT(app.changes.take(), ElementsAre("1 a::2"));
    EXPECT_TRUE(app.controller.Close());
}

TEST_F(MonitorTest, AHandlerMayRemoveObjectsAndCannotStopItself) {
    ASSERT_TRUE(status.OpenPPS());
    app.controller.AddFile(1, &status);
    bool stopped = true;
    app.controller.onChange = [&] {
        app.controller.RemoveFile(1);
        stopped = app.controller.FilesControlBase::Stop();
    };
    put("disc/status", "a::1\nb::2\n");
    app.controller.Start();
    ASSERT_TRUE(app.changes.waitFor(1));
    EXPECT_TRUE(app.controller.Stop());
    EXPECT_FALSE(stopped);
    EXPECT_THAT(app.changes.take(), ElementsAre("1 a::1"));
}

TEST_F(MonitorTest, AnObjectMayGoAwayWhileItIsMonitored) {
    app.controller.Start();
    {
        PPSFileBase shortLived(tag(3, "disc/playing"));
        ASSERT_TRUE(shortLived.OpenPPS());
        app.controller.AddFile(3, &shortLived);
        headUnit.settle();
    }
    put("disc/playing", "a::1\n");
    headUnit.settle();
    EXPECT_THAT(app.changes.take(), IsEmpty());
}

TEST_F(MonitorTest, SettlingWaitsForMessagesThatAChangeSends) {
    ASSERT_TRUE(status.OpenPPS());
    app.controller.AddFile(1, &status);
    app.controller.Start();
    headUnit.settle();
    app.controller.onChange = [this] { app.controller.SendViewMessage({{1021, 0, 0, 0}}); };
    for (int i = 0; i < 20; ++i) {
        put("disc/status", "discstate::2\n");
        headUnit.settle();
        EXPECT_THAT(app.events.take(), ElementsAre("message 1021 0", "osd message 1021 0"));
    }
}

TEST_F(MonitorTest, WritingPublishesAndNeedsAnOpenObject) {
    PPSFileBase control(tag(5, "disc/control", WriteOnly));
    EXPECT_FALSE(control.WritePPS("zmcmd::1\n", 9));
    ASSERT_TRUE(control.OpenPPS());
    EXPECT_FALSE(control.OpenPPS());
    auto reader = headUnit.openPps("/pps/zelmar/disc/control");
    const std::string text = "zmcmd:json:{\"cmd\":1}\n";
    EXPECT_TRUE(control.WritePPS(text.c_str(), static_cast<int>(text.size())));
    EXPECT_FALSE(control.WritePPS("no line", 7));
    EXPECT_FALSE(control.WritePPS(nullptr, 4));
    const auto now = reader.read();
    ASSERT_TRUE(now);
    EXPECT_EQ(*now, "@control\n" + text);
    EXPECT_TRUE(control.ClosePPS());
    EXPECT_FALSE(control.ClosePPS());
    EXPECT_FALSE(control.WritePPS(text.c_str(), static_cast<int>(text.size())));
    EXPECT_EQ(control.GetTagInfo().key, 5);
    EXPECT_EQ(control.GetOnChange(), nullptr);
}

TEST_F(MonitorTest, OpeningWhatIsNotThereFails) {
    PPSFileBase none(tag(6, "disc/none", 2));
    EXPECT_FALSE(none.OpenPPS());
}
