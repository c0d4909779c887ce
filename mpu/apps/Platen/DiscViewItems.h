#pragma once

/** Items of the main view's pages; an id means the same item on every page that has it. */
enum : int {
    ITEM_HOME = 3,       ///< on the parking page: the wording for video
    ITEM_BACK = 4,       ///< on the parking page: the wording for photos
    ITEM_SRC_BUTTON = 5, ///< shows the name of the source
    ITEM_FOLDER_MENU = 506,
    ITEM_TAB_MUSIC = 503,
    ITEM_TAB_VIDEO = 504,
    ITEM_TAB_PHOTO = 505,
    ITEM_ALL_MUSIC = 542,
    ITEM_ALL_VIDEO = 545,
    ITEM_ALL_PHOTO = 546,
    ITEM_LIST = 2000,
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
    ITEM_SHUFFLE = 6503,
    ITEM_REPEAT = 6504,
    ITEM_TO_LIST = 6508,
    ITEM_PREVIOUS = 6521,
    ITEM_PLAY = 6522,
    ITEM_PAUSE = 6523,
    ITEM_NEXT = 6524,
    ITEM_EQUALISER = 6525,
    ITEM_BUSY = 7003,
    ITEM_MESSAGE = 7004,
    ITEM_ERROR_TEXT = 7034
};

/** Controls of the parking page. */
enum : int { PARK_CTRL_HOME = ITEM_HOME, PARK_CTRL_BACK = ITEM_BACK };
