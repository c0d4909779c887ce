#pragma once

#include "parts/NumberPad.h"
#include "parts/SourceGroup.h"
#include "parts/StatusBar.h"

/* The ids of DISC.zmrc_device. What both views have in common stands with the parts included above. */

/** Pages of the main view's resource. */
enum : int {
    WND_DISC_LOADING = 1, ///< loading, no disc, ejecting, region error
    WND_AUDIO_PLAY = 6,
    WND_PARKING = 10,
    WND_VIDEO = 17, ///< transparent, over the video
    WND_GOTO = GOTO_WINDOW,
    WND_DISC_ERROR = 22,
    WND_MEDIA_LIST = 24,
    WND_FOLDER_LIST = 25,
    WND_CD_LIST = 27,
    WND_LAST = WND_CD_LIST
};

/** Items of the pages; an id means the same item on every page that has it. */
enum : int {
    ITEM_HOME = 3,                       ///< on the parking page: the wording for video
    ITEM_BACK = 4,                       ///< on the parking page: the wording for photos
    ITEM_SRC_BUTTON = OSD_CTRL_SRC_OPEN, ///< shows the name of the source
    ITEM_MENU_CLOSE = 500,
    ITEM_MENU_OPEN = 501,
    ITEM_TAB_MUSIC = 503,
    ITEM_TAB_VIDEO = 504,
    ITEM_TAB_PHOTO = 505,
    ITEM_FOLDER_MENU = 506,
    ITEM_ALL_MUSIC = 542,
    ITEM_ALL_VIDEO = 545,
    ITEM_ALL_PHOTO = 546,
    ITEM_FOLDER_TITLE = 1012,
    BTN_FOLDER_UP = 1013,
    ITEM_LIST = 2000,
    ITEM_LIST_TIP = 2003, ///< text over an empty list
    ITEM_ARTIST = 2061,
    ITEM_ALBUM = 2063,
    ITEM_TITLE = 2065,
    ITEM_ELAPSED = 2067,
    ITEM_TOTAL = 2068,
    ITEM_PROGRESS = 2069,
    ITEM_TYPE_ICON = 2071,
    ITEM_TO_PLAYING = 2073, ///< return to the playing page, shows the current title
    ITEM_TRACK = 2075,
    PARK_CTRL_CONTINUE = 2103,
    ITEM_MENU = 5002,
    ITEM_NOP_6003 = 6003,
    ITEM_NOP_6004 = 6004,
    ITEM_NOP_6005 = 6005,
    ITEM_SHUFFLE = 6503,
    ITEM_REPEAT = 6504,
    ITEM_GOTO = 6505,
    ITEM_TO_LIST = 6508,
    ITEM_PREVIOUS = 6521,
    ITEM_PLAY = 6522,
    ITEM_PAUSE = 6523,
    ITEM_NEXT = 6524,
    ITEM_EQUALISER = 6525,
    ITEM_GOTO_PAD = 6545,
    ITEM_BUSY = 7003,
    ITEM_MESSAGE = 7004,
    ITEM_ERROR_TEXT = 7034
};

/** Controls of the parking page. */
enum : int { PARK_CTRL_HOME = ITEM_HOME, PARK_CTRL_BACK = ITEM_BACK };

/** Slots of a list's row. */
enum : int { ROW_SLOT_KIND = 0, ROW_SLOT_PLAYING = 2 };

/** Texts. */
enum : int {
    TXT_SOURCE_NAME = 30,
    TXT_LIST_WAIT = 33, ///< what is loaded, the disc or a list
    TXT_NO_DISC = 34,
    TXT_NO_PHOTO = 70,
    TXT_NO_MUSIC = 71,
    TXT_NO_VIDEO = 72,
    TXT_EJECTING = 110,
    TXT_DISC_ERROR = 13007,
    TXT_REGION_ERROR = 13067,
    TXT_GOTO_CAPTION = 14122
};

/** Pictures; those of a play mode's button while it is pressed follow theirs. */
enum : int {
    ICON_NONE = 0,
    ICON_REPEAT_ALL = 53,
    ICON_TYPE_PHOTO = 55,
    ICON_TYPE_VIDEO = 80,
    ICON_REPEAT_ONE = 83,
    ICON_REPEAT_FOLDER = 85,
    ICON_SHUFFLE_FOLDER = 87,
    ICON_TYPE_MUSIC = 90,
    ICON_SHUFFLE_OFF = 94,
    ICON_REGION_ERROR = 125,
    ICON_NO_DISC = 133,
    ICON_EJECTING = 134,
    ICON_ROW_PHOTO = 137,
    ICON_ROW_FOLDER = 138,
    ICON_ROW_VIDEO = 139,
    ICON_ROW_MUSIC = 140,
    ICON_ROW_PLAYING = 143,
    ICON_REPEAT_OFF = 161,
    ICON_SHUFFLE_ALL = 165
};
