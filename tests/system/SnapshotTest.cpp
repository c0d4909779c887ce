#include "tests/system/SystemTest.h"

#include <sqlite3.h>

#include <fstream>
#include <sstream>

namespace zm::test {

/** A state is kept in a file and brought about on another bench. */
class SnapshotRun : public SystemTest {
protected:
    std::string file(const std::string& name = "state.snapshot") { return folder + "/" + name; }
    /** A catalogue with one song of that name. */
    std::string catalogue(const std::string& song) {
        const std::string path = file(song + ".sqlite");
        sqlite3* database = nullptr;
        sqlite3_open(path.c_str(), &database);
        const std::string statement =
            "CREATE TABLE songs (name TEXT); INSERT INTO songs VALUES ('" + song + "')";
        sqlite3_exec(database, statement.c_str(), nullptr, nullptr, nullptr);
        sqlite3_close(database);
        return path;
    }
    static std::string songIn(const std::string& path) {
        sqlite3* database = nullptr;
        sqlite3_open(path.c_str(), &database);
        std::string song;
        sqlite3_exec(
            database, "SELECT name FROM songs",
            [](void* result, int, char** values, char**) {
                *static_cast<std::string*>(result) = values[0];
                return 0;
            },
            &song, nullptr);
        sqlite3_close(database);
        return song;
    }
    void write(const std::string& text) { std::ofstream(file()) << text; }
    /** Objects of the saved state in the order in which they are brought about. */
    Words savedObjects() {
        Words names;
        const Json saved = Json::parse(std::ifstream(file()));
        for (const auto& command : saved["objects"]) {
            if (command[0] == "pps") {
                names.push_back(command[2]);
            }
        }
        return names;
    }
};

TEST_F(SnapshotRun, WhatIsSavedOnOneBenchIsShownByAnother) {
    startManual({"--catalogue", catalogue("Fog")});
    playMusic();
    must({"language", "de"});
    must({"theme", "day"});
    must({"time", "07:05", "12"});
    must({"device", "7", "-55"});
    must({"device", "bluetooth", "fail"});
    must({"vehicle", "gear", "drive"});
    must({"vehicle", "speed", "42.5"});
    must({"vehicle", "light", "300"});
    settle();
    const Json before = screen();
    const std::string picture = must({"shot", "--digest"});
    const std::string car = must({"vehicle"});
    must({"snapshot", "save", file()});
    endBench();
    EXPECT_EQ(Json::parse(std::ifstream(file()))["bench"],
              "zmbench --no-disc-service --catalogue " + file("Fog.sqlite") + " --manual-clock");

    const std::string other = catalogue("Rain");
    startManual({"--catalogue", other});
    EXPECT_NE(must({"shot", "--digest"}), picture);
    must({"snapshot", "restore", file()});
    settle();
    EXPECT_EQ(window(), 6);
    EXPECT_EQ(screen()["main"]["windows"]["6"], before["main"]["windows"]["6"]);
    EXPECT_EQ(must({"shot", "--digest"}), picture);
    EXPECT_EQ(must({"vehicle"}), car);
    EXPECT_TRUE(screen()["video"]["locked"]);
    EXPECT_EQ(songIn(other), "Fog");
    // A record has it as one step.
    EXPECT_THAT(must({"record", "--all", "-"}), HasSubstr("\nsnapshot restore " + file() + "\n"));
}

TEST_F(SnapshotRun, KeepsWhatADiscServicePublishesTheDeviceFirstAndTheStatusLast) {
    startManual();
    watchCommands();
    playMusic();
    must({"pps", "put", "zelmar/disc/cover", "cover::1"});
    must({"pps", "put", "zelmar/disc/drive", "drivestate::loaded"});
    must({"pps", "put", "other/status", "a::1"});
    must({"pps", "put", "other/device", "b::1"});
    must({"pps", "put", "other/more", "c::1"});
    ASSERT_THAT(commands(1), testing::Not(IsEmpty())) << "there is something that is to be left out";
    must({"snapshot", "save", file()});
    EXPECT_THAT(savedObjects(), ElementsAre("other/device", "zelmar/disc/device", "other/more",
                                            "zelmar/disc/cover", "other/status", "zelmar/disc/status"));
}

TEST_F(SnapshotRun, AFullDiskIsNamed) {
    startManual();
    EXPECT_THAT(mustFail({"snapshot", "save", "/dev/full"}), HasSubstr("/dev/full: No space left on device"));
}

TEST_F(SnapshotRun, AnOpenedVideoLockIsNoState) {
    startManual();
    putDevice({"disc::1", "mixedtype::14", "mediatype::3", "videomode::1"});
    putStatus({"discstate::2"});
    must({"vehicle", "gear", "drive"});
    settle();
    const auto rect = item(10, 2103)["rect"];
    must({"touch", std::to_string(rect[0].get<int>() + 5), std::to_string(rect[1].get<int>() + 5)});
    ASSERT_FALSE(screen()["video"]["locked"]);
    must({"snapshot", "save", file()});
    endBench();
    startManual();
    must({"snapshot", "restore", file()});
    EXPECT_TRUE(screen()["video"]["locked"]);
}

TEST_F(SnapshotRun, TheStateThatWasThereBeforeGoes) {
    startManual();
    must({"snapshot", "save", file()});
    const std::string picture = must({"shot", "--digest"});
    must({"theme", "day"});
    must({"vehicle", "speed", "80"});
    must({"app", "pause"});
    must({"snapshot", "restore", file()});
    settle();
    EXPECT_EQ(must({"shot", "--digest"}), picture);
    EXPECT_THAT(must({"vehicle"}), HasSubstr("speed:n:0\n"));
    EXPECT_FALSE(screen()["video"]["locked"]);
}

TEST_F(SnapshotRun, WhatIsNoSnapshotIsNamed) {
    startManual();
    const std::string before = must({"shot", "--digest"});
    EXPECT_THAT(mustFail({"snapshot", "restore", file("none")}), HasSubstr(file("none") + ": No such file"));
    EXPECT_THAT(mustFail({"snapshot", "save", "/nowhere/a"}), HasSubstr("/nowhere/a: No such file"));
    for (const auto& [text, why] : std::vector<std::pair<std::string, std::string>>{
             {"", "this is no snapshot"},
             {"{}", "this is no snapshot"},
             {R"({"snapshot":2})", "a snapshot of version 2 is not known"},
             {R"({"snapshot":1,"before":[1]})", "\"before\" is no list of commands"},
             {R"({"snapshot":1,"before":[],"objects":[],"after":[]})", "\"disc\" is no text"}}) {
        write(text);
        EXPECT_THAT(mustFail({"snapshot", "restore", file()}), HasSubstr(file() + ": " + why)) << text;
    }
    write(R"({"snapshot":1,"disc":"","before":[["language","xx"]],"objects":[],"after":[],"catalogue":""})");
    EXPECT_THAT(mustFail({"snapshot", "restore", file()}),
                HasSubstr("the snapshot's command \"language xx\" failed:\nzmctl: there is no language"));
    write(R"({"snapshot":1,"disc":"","before":[],"objects":[],"after":[],"catalogue":"AAAA"})");
    EXPECT_THAT(mustFail({"snapshot", "restore", file()}), HasSubstr("not a database"));
    EXPECT_EQ(must({"shot", "--digest"}), before);
}

TEST_F(SnapshotRun, TheTimelineHasCommandsFramesObjectsAndLogsOnOneClock) {
    startManual();
    must({"pps", "put", "a/b", "x::1"});
    must({"wait", "200"});
    must({"theme", "day"});
    settle();
    must({"timeline", file("trace.json")});
    std::ifstream stream(file("trace.json"));
    const Json trace = Json::parse(stream);
    std::map<std::pair<int, int>, std::string> lanes;
    std::map<std::string, double> moments;
    for (const auto& event : trace["traceEvents"]) {
        const std::pair lane(event["pid"].get<int>(), event["tid"].get<int>());
        if (event["name"] == "thread_name") {
            lanes[lane] = event["args"]["name"];
        } else if (event.contains("ts")) {
            moments[lanes[lane] + ": " + event["name"].get<std::string>()] = event["ts"];
        }
    }
    ASSERT_TRUE(moments.contains("commands: theme day"));
    ASSERT_TRUE(moments.contains("commands: pps put a/b x::1"));
    ASSERT_TRUE(moments.contains("a/b: x"));
    ASSERT_TRUE(moments.contains("frames: frame"));
    EXPECT_GE(moments["a/b: x"], moments["commands: pps put a/b x::1"]);
    EXPECT_GE(moments["commands: theme day"] - moments["a/b: x"], 200000);
    EXPECT_GE(moments["frames: frame"], moments["commands: theme day"]) << "the screen in other colours";
    const auto log = std::find_if(moments.begin(), moments.end(),
                                  [](const auto& each) { return each.first.starts_with("log of Platen: "); });
    ASSERT_NE(log, moments.end());
    EXPECT_GT(log->second, -1e6);
    EXPECT_LT(log->second, moments["commands: theme day"] + 60e6);
    // Of the last moment alone the older ones are missing.
    EXPECT_THAT(must({"timeline", "-", "--seconds", "0.1"}), testing::Not(HasSubstr("\"name\":\"x\"")));
    EXPECT_THAT(mustFail({"timeline", "/nowhere/t"}), HasSubstr("/nowhere/t: No such file"));
}

} // namespace zm::test
