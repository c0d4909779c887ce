#include "tests/views/MainView.h"

#include <nlohmann/json.hpp>

#include <set>

namespace zm::test {

using Commands = MainView;

namespace {

/** What a command writes into the object of the disc service, and the name under which tests know it. */
struct CommandCase {
    const char* written;
    std::string name;
    bool (*send)(DiscViewController& controller);
};

const CommandCase COMMANDS[] = {
    {R"({"cmd":1,"param1":0,"param2":0})", NextClip(),
     [](DiscViewController& controller) { return controller.NextClip(); }},
    {R"({"cmd":2,"param1":0,"param2":0})", PreviousClip(),
     [](DiscViewController& controller) { return controller.PreviousClip(); }},
    {R"({"cmd":3,"param1":0,"param2":0})", FastForward(),
     [](DiscViewController& controller) { return controller.FastForward(); }},
    {R"({"cmd":4,"param1":0,"param2":0})", FastBackward(),
     [](DiscViewController& controller) { return controller.FastBackward(); }},
    {R"({"cmd":5,"param1":0,"param2":0})", PlayPause(),
     [](DiscViewController& controller) { return controller.PlayPause(); }},
    {R"({"cmd":7,"param1":3,"param2":0})", SetShuffleMode(3),
     [](DiscViewController& controller) { return controller.SetShuffleMode(3); }},
    {R"({"cmd":9,"param1":3,"param2":0})", SetRepeatMode(3),
     [](DiscViewController& controller) { return controller.SetRepeatMode(3); }},
    {R"({"cmd":11,"param1":0,"param2":0})", SelectAudioChannel(),
     [](DiscViewController& controller) { return controller.SelectAudioChannel(); }},
    {R"({"cmd":12,"param1":0,"param2":0})", KeyAngle(),
     [](DiscViewController& controller) { return controller.KeyAngle(); }},
    {R"({"cmd":13,"param1":0,"param2":0})", Eject(),
     [](DiscViewController& controller) { return controller.Eject(); }},
    {R"({"cmd":18,"param1":0,"param2":0})", SelectSubtitle(),
     [](DiscViewController& controller) { return controller.SelectSubtitle(); }},
    {R"({"cmd":19,"param1":0,"param2":0})", PlaybackControl(),
     [](DiscViewController& controller) { return controller.VCD_PBC(); }},
    {R"({"cmd":20,"param1":0,"param2":0})", Zoom(),
     [](DiscViewController& controller) { return controller.Zoom(); }},
    {R"({"cmd":21,"param1":0,"param2":0})", ReturnToMenu(),
     [](DiscViewController& controller) { return controller.ReturnToMenu(); }},
    {R"({"cmd":22,"param1":0,"param2":0})", StopPlayBack(),
     [](DiscViewController& controller) { return controller.StopPlayBack(); }},
    {R"({"cmd":130,"param1":0,"param2":0})", Pause(),
     [](DiscViewController& controller) { return controller.Pause(); }},
    {R"({"cmd":131,"param1":0,"param2":0})", Play(),
     [](DiscViewController& controller) { return controller.Play(); }},
    {R"({"cmd":142,"param1":3,"param2":0})", ChangeFormat(3),
     [](DiscViewController& controller) { return controller.ChangeFormat(3); }},
    {R"({"cmd":163,"param1":0,"param2":0})", KeyRotation(),
     [](DiscViewController& controller) { return controller.KeyRotation(); }},
    {R"({"cmd":182,"param1":3,"param2":4})", PlayTrack(3, 4),
     [](DiscViewController& controller) { return controller.PlayTrack(3, 4); }},
    {R"({"cmd":183,"param1":3,"param2":0})", PlayChapter(3),
     [](DiscViewController& controller) { return controller.PlayChapter(3); }},
    {R"({"cmd":184,"param1":3,"param2":0})", PlayTitle(3),
     [](DiscViewController& controller) { return controller.PlayTitle(3); }},
    {R"({"cmd":186,"param1":3,"param2":4})", GotoSubList(3, 4),
     [](DiscViewController& controller) { return controller.GotoSubList(3, 4); }},
    {R"({"cmd":187,"param1":3,"param2":4})", RequestSource(3, 4),
     [](DiscViewController& controller) { return controller.RequestSource(3, 4); }},
    {R"({"cmd":188,"param1":3,"param2":4})", SendTsPos(3, 4),
     [](DiscViewController& controller) { return controller.SendTsPos(3, 4); }},
    {R"({"cmd":182,"param1":196609,"param2":1})", PlayTrack(Folder{3}, File{1}, KIND_MUSIC),
     [](DiscViewController& controller) { return controller.PlayTrack(196609, 1); }},
};

} // namespace

TEST_F(Commands, EachNameStandsForItsNumbers) {
    for (const CommandCase& each : COMMANDS) {
        SCOPED_TRACE(each.name);
        unit.clearCommands();
        unit.onViewThread([&] { EXPECT_TRUE(each.send(unit.controller())); });
        EXPECT_EQ(Json::parse(unit.attribute("zelmar/disc/control", "zmcmd")), Json::parse(each.written));
        EXPECT_THAT(unit.commands(), ElementsAre(each.name));
    }
}

TEST_F(Commands, NamesOfDifferentNumbersDiffer) {
    std::set<std::string> names;
    for (const CommandCase& each : COMMANDS) {
        EXPECT_TRUE(names.insert(each.name).second) << each.name;
    }
    EXPECT_EQ(commandName(77, 1, 2), "command 77(1, 2)");
    EXPECT_EQ(commandName(1, 0, 5), "command 1(0, 5)") << "a parameter that the command does not have";
    EXPECT_EQ(PlayTrack(Folder{3}, File{1}, KIND_MUSIC), "PlayTrack(folder 3, file 1, kind 1)");
    EXPECT_EQ(PlayTrack(30, 4), "PlayTrack(30, 4)");
}

} // namespace zm::test
