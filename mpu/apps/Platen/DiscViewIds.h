#pragma once

#include "ZMModel/DiscNumbers.h"

/** View states: which family of pages is current. */
enum ViewState : int {
    VIEW_STATE_MUSIC_LIST = 2,
    VIEW_STATE_VIDEO_LIST = 3,
    VIEW_STATE_PHOTO_LIST = 4,
    VIEW_STATE_AUDIO_PLAY = 5,
    VIEW_STATE_VIDEO_PLAY = 6,
    VIEW_STATE_PHOTO_PLAY = 7,
    VIEW_STATE_GOTO = 10,
    VIEW_STATE_LOADING = 11,
    VIEW_STATE_EXIT = 12,
    VIEW_STATE_NO_DISC = 13,
    VIEW_STATE_DISC_ERROR = 14,
    VIEW_STATE_15 = 15, ///< never entered; the no-disc timer closes the application in it
    VIEW_STATE_16 = 16, ///< never entered; the no-disc timer ejects in it
    VIEW_STATE_REGION_ERROR = 17
};

/** States of the list pages. */
constexpr bool IsListState(ViewState state) {
    return state >= VIEW_STATE_MUSIC_LIST && state <= VIEW_STATE_PHOTO_LIST;
}

/** States of the pages of what plays. */
constexpr bool IsPlayState(ViewState state) {
    return state >= VIEW_STATE_AUDIO_PLAY && state <= VIEW_STATE_PHOTO_PLAY;
}

/** Types whose picture is video; they share state and pages. */
constexpr bool IsVideoType(int type) {
    return type == PLAY_TYPE_DVD || type == PLAY_TYPE_VIDEO || type == PLAY_TYPE_VCD;
}

/** Types that play on the music play page. */
constexpr bool IsAudioType(int type) {
    return type == PLAY_TYPE_CD || type == PLAY_TYPE_MUSIC;
}

/** Which list a play page returns to. */
enum PlayList : int {
    PLAY_LIST_MUSIC = 0,
    PLAY_LIST_VIDEO = 1,
    PLAY_LIST_PHOTO = 2,
    PLAY_LIST_MUSIC_FOLDER = 3,
    PLAY_LIST_VIDEO_FOLDER = 4,
    PLAY_LIST_PHOTO_FOLDER = 5,
    PLAY_LIST_CD = 6,
    PLAY_LIST_SEARCH = 7
};

/** Something is in the player, running or paused: its page may be shown. */
constexpr bool IsRunning(int discState) {
    return discState == DISC_STATE_PLAYING || discState == DISC_STATE_PAUSED;
}

/** Hard keys. */
enum : int {
    K_PLAY = 17,
    K_PAUSE = 18,
    K_NEXT = 20,
    K_PREV = 21,
    K_FASTF = 22,
    K_FASTB = 23,
    K_GOTO = 44,
    K_Up = 45,
    K_Down = 46,
    K_Left = 47,
    K_Right = 48,
    K_Enter = 49,
    K_Return = 50,
    K_PRESET_UP = 64,
    K_PRESET_DN = 65,
    K_ENCODER_INC = 87,
    K_ENCODER_DEC = 88,
    K_SHUFFLE_FOLDER = 160,
    K_REPEAT_ALL = 161,
    K_SHUFFLE = 162,
    K_RESTART = 163
};

/** What the overlay is told of hard keys. */
enum : int {
    OSD_KEY_TYPE_NEXT = 1,
    OSD_KEY_TYPE_PREVIOUS = 2,
    OSD_KEY_TYPE_FORWARD = 3,
    OSD_KEY_TYPE_BACKWARD = 4
};

/** Button states of a click. */
enum : int { BT_STATE_PRESSED = 0, BT_STATE_RELEASED = 1, BT_STATE_HELD = 4 };

/** States of an item: which of its pictures or looks. */
enum : int { ITEM_STATE_PRESSED = 1, ITEM_STATE_NORMAL = 2, ITEM_STATE_SELECTED = 3, ITEM_STATE_ALL = 4 };

inline constexpr int SCREEN_WIDTH = 800;
inline constexpr int SCREEN_HEIGHT = 480;

/** Also the name under which the head unit knows the application. */
inline constexpr char MAIN_VIEW_NAME[] = "zmdisc";
inline constexpr char OSD_VIEW_NAME[] = "Disc_osd";
