#pragma once

#include <string>

namespace zm::test {

/*
 * Player commands as Unit::commands() gives them: by name. Expected ones are written with these functions.
 *
 *     EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(Folder{3}, File{1}, KIND_MUSIC)));
 *
 * Which number each name stands for is proven by tests/views/CommandsTest.cpp alone.
 */

/** What is sent as number `code` with two parameters. */
std::string commandName(int code, int first, int second);

struct Folder {
    int id;
};
struct File {
    int id;
};
/** Second parameter of PlayTrack beside a folder and a file. */
enum : int { KIND_NONE = 0, KIND_MUSIC = 1, KIND_PICTURE = 2, KIND_VIDEO = 3 };

std::string NextClip();
std::string PreviousClip();
std::string FastForward();
std::string FastBackward();
std::string PlayPause();
std::string SetShuffleMode(int mode);
std::string SetRepeatMode(int mode);
std::string SelectAudioChannel();
std::string KeyAngle();
std::string Eject();
std::string SelectSubtitle();
std::string PlaybackControl();
std::string Zoom();
std::string ReturnToMenu();
std::string StopPlayBack();
std::string Pause();
std::string Play();
std::string ChangeFormat(int format);
std::string KeyRotation();
/** Two numbers as they are, whatever they mean there. */
std::string PlayTrack(int first, int second);
/** A file of a folder, both packed into the first number. */
std::string PlayTrack(Folder folder, File file, int kind);
std::string PlayChapter(int chapter);
std::string PlayTitle(int title);
std::string GotoSubList(int type, int folder);
std::string RequestSource(int first, int second);
std::string SendTsPos(int x, int y);

} // namespace zm::test
