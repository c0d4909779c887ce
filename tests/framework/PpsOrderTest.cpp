#include "tests/framework/TestApplication.h"
#include "tests/support/Load.h"

#include "zmcar/PPSFileBase.h"

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

using namespace zm;
using namespace zm::test;
using Oro::ZMCAR::PPSFileBase;
using testing::ElementsAre;

namespace {

constexpr int ReadWriteCreate = 258;
constexpr int WriteCreate = 257;

/** What objects say in the order in which one writer wrote them. */
class PpsOrderTest : public FrameworkTest {
protected:
    void SetUp() override { ASSERT_NO_FATAL_FAILURE(run()); }
    void TearDown() override { app.controller.Stop(); }

    /** Monitors that object and gives a descriptor that writes it. */
    PpsFile monitored(int key, const std::string& name, int flags = ReadWriteCreate) {
        const std::string path = "/pps/zelmar/" + name;
        m_objects.push_back(std::make_unique<PPSFileBase>(fileTagInfo{key, path + "?delta", flags, 0666}));
        EXPECT_TRUE(m_objects.back()->OpenPPS());
        EXPECT_TRUE(app.controller.AddFile(key, m_objects.back().get()));
        return headUnit.openPps(path);
    }

private:
    std::vector<std::unique_ptr<PPSFileBase>> m_objects;
};

} // namespace

TEST_F(PpsOrderTest, ChangesOfSeveralObjectsComeInTheOrderOfWritingUnderLoad) {
    constexpr int Rounds = 10'000;
    std::vector<PpsFile> writers;
    for (const char* name : {"disc/status", "disc/playing", "disc/mpeginfo", "disc/device", "video/status"}) {
        writers.push_back(monitored(static_cast<int>(writers.size()) + 1, name));
    }
    ASSERT_TRUE(app.controller.Start());
    headUnit.settle();
    const Load load(2);
    std::vector<std::string> written;
    for (int round = 0; round < Rounds; ++round) {
        for (size_t i = 0; i < writers.size(); ++i) {
            const std::string value = "n::" + std::to_string(round);
            ASSERT_TRUE(writers[i].write(value + "\n"));
            written.push_back(std::to_string(i + 1) + " " + value);
        }
    }
    headUnit.settle();
    const auto seen = app.changes.take();
    ASSERT_EQ(seen.size(), written.size());
    int misplaced = 0;
    for (size_t i = 0; i < seen.size(); ++i) {
        misplaced += seen[i] != written[i];
    }
    EXPECT_EQ(misplaced, 0);
}

TEST_F(PpsOrderTest, WhatWasWrittenDuringAHandlerComesInOrderAndWithoutAFurtherWrite) {
    auto status = monitored(1, "disc/status");
    auto device = monitored(2, "disc/device");
    ASSERT_TRUE(app.controller.Start());
    headUnit.settle();
    bool first = true;
    app.controller.onChange = [&] {
        if (std::exchange(first, false)) {
            EXPECT_TRUE(device.write("mediatype::2\n"));
            EXPECT_TRUE(status.write("discstate::2\n"));
            EXPECT_TRUE(device.write("mediatype::3\n"));
        }
    };
    ASSERT_TRUE(status.write("discstate::1\n"));
    ASSERT_TRUE(app.changes.waitFor(4));
    EXPECT_THAT(app.changes.take(),
                ElementsAre("1 discstate::1", "2 mediatype::2", "1 discstate::2", "2 mediatype::3"));
}

TEST_F(PpsOrderTest, AnObjectThatCannotBeReadHoldsBackNoOther) {
    auto unreadable = monitored(1, "disc/status", WriteCreate);
    auto device = monitored(2, "disc/device");
    ASSERT_TRUE(app.controller.Start());
    ASSERT_TRUE(unreadable.write("discstate::2\n"));
    ASSERT_TRUE(device.write("disc::1\n"));
    ASSERT_TRUE(app.changes.waitFor(1));
    EXPECT_THAT(app.changes.take(), ElementsAre("2 disc::1"));
}
