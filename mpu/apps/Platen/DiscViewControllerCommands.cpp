#include "DiscViewController.h"

/** The disc service's command numbers. */
enum DISC_CMD_EN {
    CMD_NEXT_CLIP = 1,
    CMD_PREVIOUS_CLIP = 2,
    CMD_FAST_FORWARD = 3,
    CMD_FAST_BACKWARD = 4,
    CMD_PLAY_PAUSE = 5,
    CMD_SHUFFLE_MODE = 7,
    CMD_REPEAT_MODE = 9,
    CMD_REPEAT_AB = 10,
    CMD_AUDIO_CHANNEL = 11,
    CMD_ANGLE = 12,
    CMD_EJECT = 13,
    CMD_SUBTITLE = 18,
    CMD_PBC = 19,
    CMD_ZOOM = 20,
    CMD_RETURN_TO_MENU = 21,
    CMD_STOP = 22,
    CMD_PAUSE = 130,
    CMD_PLAY = 131,
    CMD_CHANGE_FORMAT = 142,
    CMD_RETURN_TO_TITLE = 145,
    CMD_ROTATION = 163,
    CMD_PLAY_TRACK = 182,
    CMD_PLAY_CHAPTER = 183,
    CMD_PLAY_TITLE = 184,
    CMD_SEEK = 185,
    CMD_GOTO_SUB_LIST = 186,
    CMD_REQUEST_SOURCE = 187,
    CMD_TOUCH_POSITION = 188,
    CMD_CHECK_PASSWORD = 189,
};

bool DiscViewController::NextClip() {
    return m_control.PublishCmdCommmand(CMD_NEXT_CLIP, 0, 0);
}

bool DiscViewController::PreviousClip() {
    return m_control.PublishCmdCommmand(CMD_PREVIOUS_CLIP, 0, 0);
}

bool DiscViewController::FastForward() {
    return m_control.PublishCmdCommmand(CMD_FAST_FORWARD, 0, 0);
}

bool DiscViewController::FastBackward() {
    return m_control.PublishCmdCommmand(CMD_FAST_BACKWARD, 0, 0);
}

bool DiscViewController::PlayPause() {
    return m_control.PublishCmdCommmand(CMD_PLAY_PAUSE, 0, 0);
}

bool DiscViewController::SetShuffleMode(int mode) {
    return m_control.PublishCmdCommmand(CMD_SHUFFLE_MODE, mode, 0);
}

bool DiscViewController::SetRepeatMode(int mode) {
    return m_control.PublishCmdCommmand(CMD_REPEAT_MODE, mode, 0);
}

bool DiscViewController::RepeatAB() {
    return m_control.PublishCmdCommmand(CMD_REPEAT_AB, 0, 0);
}

bool DiscViewController::SelectAudioChannel() {
    return m_control.PublishCmdCommmand(CMD_AUDIO_CHANNEL, 0, 0);
}

bool DiscViewController::SelectMainSubAudio() {
    return m_control.PublishCmdCommmand(CMD_AUDIO_CHANNEL, 0, 0);
}

bool DiscViewController::KeyAngle() {
    return m_control.PublishCmdCommmand(CMD_ANGLE, 0, 0);
}

bool DiscViewController::Eject() {
    return m_control.PublishCmdCommmand(CMD_EJECT, 0, 0);
}

bool DiscViewController::SelectSubtitle() {
    return m_control.PublishCmdCommmand(CMD_SUBTITLE, 0, 0);
}

bool DiscViewController::VCD_PBC() {
    return m_control.PublishCmdCommmand(CMD_PBC, 0, 0);
}

bool DiscViewController::Zoom() {
    return m_control.PublishCmdCommmand(CMD_ZOOM, 0, 0);
}

bool DiscViewController::ReturnToMenu() {
    return m_control.PublishCmdCommmand(CMD_RETURN_TO_MENU, 0, 0);
}

bool DiscViewController::StopPlayBack() {
    return m_control.PublishCmdCommmand(CMD_STOP, 0, 0);
}

bool DiscViewController::Pause() {
    return m_control.PublishCmdCommmand(CMD_PAUSE, 0, 0);
}

bool DiscViewController::Play() {
    return m_control.PublishCmdCommmand(CMD_PLAY, 0, 0);
}

bool DiscViewController::ChangeFormat(int format) {
    return m_control.PublishCmdCommmand(CMD_CHANGE_FORMAT, format, 0);
}

bool DiscViewController::ReturnToTitle() {
    return m_control.PublishCmdCommmand(CMD_RETURN_TO_TITLE, 0, 0);
}

bool DiscViewController::KeyRotation() {
    return m_control.PublishCmdCommmand(CMD_ROTATION, 0, 0);
}

bool DiscViewController::PlayTrack(int first, int second) {
    return m_control.PublishCmdCommmand(CMD_PLAY_TRACK, first, second);
}

bool DiscViewController::PlayChapter(int chapter) {
    return m_control.PublishCmdCommmand(CMD_PLAY_CHAPTER, chapter, 0);
}

bool DiscViewController::PlayTitle(int title) {
    return m_control.PublishCmdCommmand(CMD_PLAY_TITLE, title, 0);
}

bool DiscViewController::Seek(int position) {
    return m_control.PublishCmdCommmand(CMD_SEEK, position, 0);
}

bool DiscViewController::GotoSubList(int first, int second) {
    return m_control.PublishCmdCommmand(CMD_GOTO_SUB_LIST, first, second);
}

bool DiscViewController::RequestSource(int first, int second) {
    return m_control.PublishCmdCommmand(CMD_REQUEST_SOURCE, first, second);
}

bool DiscViewController::SendTsPos(int x, int y) {
    return m_control.PublishCmdCommmand(CMD_TOUCH_POSITION, x, y);
}

bool DiscViewController::CheckPassword(int code) {
    return m_control.PublishCmdCommmand(CMD_CHECK_PASSWORD, code, 0);
}
