#include "tests/support/Harness.h"
#include "tests/support/Commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <thread>

namespace zm::test {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST(Harness, PlaysADiscAndSeesPagesCommandsAndMessages) {
    Catalogue catalogue;
    catalogue.folder(1, 0, Catalogue::Music, "Root", 0, 3);
    catalogue.files(3, Catalogue::Music, "song");
    Unit unit({.catalogue = catalogue.path()});
    EXPECT_EQ(unit.main.window(), 1);
    EXPECT_THAT(unit.commands(), IsEmpty());

    unit.disc.insert(2);
    unit.disc.id3("Title", "Artist", "Album");
    unit.disc.track({.curMediaId = 1, .curMediaIds = 3, .mediaId = 1, .mediaIds = 3, .parentFolder = 1});

    EXPECT_EQ(unit.main.window(), 6);
    EXPECT_EQ(unit.main.item(6, 2061).text, "Artist");
    EXPECT_THAT(unit.commands(), ElementsAre(RequestSource(1, 0)));
    EXPECT_THAT(unit.viewMessages(), Contains(1017));
    unit.clearCommands();
    unit.touchItem(unit.main, 6, 6523);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayPause()));
    EXPECT_THAT(unit.requests(), Contains(R"({"op":"ToBeep"})"));
}

TEST(Harness, AdvancesTheClockAndReadsTheLog) {
    Unit unit;
    unit.advance(15s);
    EXPECT_EQ(unit.main.item(1, 7004).textId, 34);
    unit.advance(3s);
    EXPECT_THAT(unit.requests(), ElementsAre(R"({"op":"QueryCloseApp","app":"zmdisc","data":"null"})"));
    EXPECT_THAT(unit.log("ENUM_TIMER_WAIT_DEVICESTATE"), Not(IsEmpty()));
}

TEST(Harness, RunsTasksOnTheViewThreadAndEndsInOrder) {
    Unit unit;
    std::thread::id thread;
    unit.onViewThread([&] { thread = std::this_thread::get_id(); });
    EXPECT_TRUE(thread != std::thread::id());
    EXPECT_TRUE(thread != std::this_thread::get_id());
    EXPECT_TRUE(unit.endApplication());
}

TEST(Harness, ShowsTheVideoWindowWhenTheApplicationAsksForCapture) {
    Unit unit;
    unit.disc.insert(3);
    EXPECT_EQ(unit.main.window(), 17);
    EXPECT_TRUE(unit.video().value("posted", false));
    EXPECT_EQ(unit.video().value("zorder", 0), 2);
    EXPECT_TRUE(unit.video().value("visible", false));
    EXPECT_THAT(unit.published("zelmar/videoservice/command"), Contains(HasSubstr("\"status\":\"on\"")));
}

} // namespace zm::test
