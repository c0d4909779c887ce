#include "tests/support/Commands.h"

#include <algorithm>
#include <array>

namespace zm::test {

namespace {

struct CommandRow {
    int code;
    const char* name;
    int parameters;
};

constexpr int PLAY_TRACK = 182;

constexpr std::array<CommandRow, 25> COMMANDS = {{
    {1, "NextClip", 0},        {2, "PreviousClip", 0},
    {3, "FastForward", 0},     {4, "FastBackward", 0},
    {5, "PlayPause", 0},       {7, "SetShuffleMode", 1},
    {9, "SetRepeatMode", 1},   {11, "SelectAudioChannel", 0},
    {12, "KeyAngle", 0},       {13, "Eject", 0},
    {18, "SelectSubtitle", 0}, {19, "PlaybackControl", 0},
    {20, "Zoom", 0},           {21, "ReturnToMenu", 0},
    {22, "StopPlayBack", 0},   {130, "Pause", 0},
    {131, "Play", 0},          {142, "ChangeFormat", 1},
    {163, "KeyRotation", 0},   {PLAY_TRACK, "PlayTrack", 2},
    {183, "PlayChapter", 1},   {184, "PlayTitle", 1},
    {186, "GotoSubList", 2},   {187, "RequestSource", 2},
    {188, "SendTsPos", 2},
}};

// A folder above the sixteen bits of a file; a negative number is a row that does not exist.
constexpr int FOLDER_SHIFT = 16;

std::string call(const std::string& name, std::initializer_list<std::string> parameters) {
    std::string text = name + "(";
    for (const std::string& parameter : parameters) {
        text += (text.back() == '(' ? "" : ", ") + parameter;
    }
    return text + ")";
}

std::string named(const std::string& name, int first = 0, int second = 0) {
    const auto row = std::find_if(COMMANDS.begin(), COMMANDS.end(),
                                  [&](const CommandRow& each) { return each.name == name; });
    return commandName(row->code, first, second);
}

} // namespace

std::string commandName(int code, int first, int second) {
    const auto row = std::find_if(COMMANDS.begin(), COMMANDS.end(),
                                  [&](const CommandRow& each) { return each.code == code; });
    const std::string one = std::to_string(first);
    const std::string two = std::to_string(second);
    const bool complete =
        row != COMMANDS.end() && (row->parameters > 0 || first == 0) && (row->parameters > 1 || second == 0);
    if (!complete) {
        return call("command " + std::to_string(code), {one, two});
    }
    if (code == PLAY_TRACK && first >> FOLDER_SHIFT > 0) {
        return call(row->name, {"folder " + std::to_string(first >> FOLDER_SHIFT),
                                "file " + std::to_string(first & 0xFFFF), "kind " + two});
    }
    switch (row->parameters) {
    case 0:
        return call(row->name, {});
    case 1:
        return call(row->name, {one});
    default:
        return call(row->name, {one, two});
    }
}

std::string NextClip() {
    return named("NextClip");
}

std::string PreviousClip() {
    return named("PreviousClip");
}

std::string FastForward() {
    return named("FastForward");
}

std::string FastBackward() {
    return named("FastBackward");
}

std::string PlayPause() {
    return named("PlayPause");
}

std::string SetShuffleMode(int mode) {
    return named("SetShuffleMode", mode);
}

std::string SetRepeatMode(int mode) {
    return named("SetRepeatMode", mode);
}

std::string SelectAudioChannel() {
    return named("SelectAudioChannel");
}

std::string KeyAngle() {
    return named("KeyAngle");
}

std::string Eject() {
    return named("Eject");
}

std::string SelectSubtitle() {
    return named("SelectSubtitle");
}

std::string PlaybackControl() {
    return named("PlaybackControl");
}

std::string Zoom() {
    return named("Zoom");
}

std::string ReturnToMenu() {
    return named("ReturnToMenu");
}

std::string StopPlayBack() {
    return named("StopPlayBack");
}

std::string Pause() {
    return named("Pause");
}

std::string Play() {
    return named("Play");
}

std::string ChangeFormat(int format) {
    return named("ChangeFormat", format);
}

std::string KeyRotation() {
    return named("KeyRotation");
}

std::string PlayTrack(int first, int second) {
    return named("PlayTrack", first, second);
}

std::string PlayTrack(Folder folder, File file, int kind) {
    return PlayTrack((folder.id << FOLDER_SHIFT) + file.id, kind);
}

std::string PlayChapter(int chapter) {
    return named("PlayChapter", chapter);
}

std::string PlayTitle(int title) {
    return named("PlayTitle", title);
}

std::string GotoSubList(int type, int folder) {
    return named("GotoSubList", type, folder);
}

std::string RequestSource(int first, int second) {
    return named("RequestSource", first, second);
}

std::string SendTsPos(int x, int y) {
    return named("SendTsPos", x, y);
}

} // namespace zm::test
