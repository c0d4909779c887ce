#pragma once

#include "DiscViewItems.h"

/*
 * Ids of the overlay's resource. Those that both resources share are defined with their part (StatusBar.h,
 * SourceGroup.h, NumberPad.h) or, where a bar repeats an item of the main view, take that item's number.
 */

/** Windows. */
enum : int {
    OSD_WND_DVD = 1,
    OSD_WND_VIDEO = 2,
    OSD_WND_VCD = 4,
    OSD_WND_PICTURE = 11,
    OSD_WND_GOTO = WND_GOTO
};

/** Items of the overlay's bars; an id means the same item on each of them. */
enum : int {
    OSD_ITEM_TOP_3 = ITEM_HOME,
    OSD_ITEM_TOP_4 = ITEM_BACK,
    OSD_ITEM_PIC_TEXT = ITEM_SRC_BUTTON,
    OSD_ITEM_ELAPSED = ITEM_ELAPSED,
    OSD_ITEM_TOTAL = ITEM_TOTAL,
    OSD_ITEM_PROGRESS = ITEM_PROGRESS,
    OSD_ITEM_STATE_PIC = 2078,
    OSD_ITEM_TRACK = 2152,
    OSD_ITEM_CHAPTER = 2154,
    OSD_ITEM_STATE_TEXT = 2155
};

/** What can be touched on the bars. */
enum : int {
    OSD_CTRL_HOME = OSD_ITEM_TOP_3,
    OSD_CTRL_RETURN = OSD_ITEM_TOP_4,
    OSD_CTRL_PROGRESS = OSD_ITEM_PROGRESS,
    OSD_CTRL_NOP_5007 = 5007,
    OSD_CTRL_NOP_5008 = 5008,
    OSD_CTRL_SHUFFLE = ITEM_SHUFFLE,
    OSD_CTRL_REPEAT = ITEM_REPEAT,
    OSD_CTRL_GOTO = ITEM_GOTO,
    OSD_CTRL_NOP_6506 = 6506,
    OSD_CTRL_NOP_6507 = 6507,
    OSD_CTRL_PREV = ITEM_PREVIOUS,
    OSD_CTRL_PLAY = ITEM_PLAY,
    OSD_CTRL_PAUSE = ITEM_PAUSE,
    OSD_CTRL_NEXT = ITEM_NEXT,
    OSD_CTRL_EQ = ITEM_EQUALISER,
    OSD_CTRL_AUDIO = 6535,
    OSD_CTRL_STOP = 6551,
    OSD_CTRL_SUBTITLE = 6555,
    OSD_CTRL_ANGLE = 6556,
    OSD_CTRL_MENU = 6557,
    OSD_CTRL_NOFUNC = 6558,
    OSD_CTRL_PBC = 6561,
    OSD_CTRL_ZOOM = 6571,
    OSD_CTRL_ROTATE = 6574,
    OSD_CTRL_NOP_6603 = 6603
};

/** The same as items that are shown and hidden. */
enum : int { OSD_ITEM_PLAY = OSD_CTRL_PLAY, OSD_ITEM_PAUSE = OSD_CTRL_PAUSE };

/** Which control was pressed last, so that the player's next report is shown as its answer. */
enum : int {
    OSD_KEY_NONE = 0,
    OSD_KEY_PLAY_PAUSE = 5,
    OSD_KEY_SHUFFLE = 7,
    OSD_KEY_REPEAT = 9,
    OSD_KEY_DVD_AUDIO = 11,
    OSD_KEY_DVD_ANGLE = 12,
    OSD_KEY_DVD_SUBTITLE = 18,
    OSD_KEY_DVD_MENU = 21,
    OSD_KEY_STOP = 22,
    OSD_KEY_VCD_AUDIO = 69
};

/** What the number pad selects. */
enum : int { OSD_GOTO_TRACK = 1, OSD_GOTO_TITLE = 2, OSD_GOTO_CHAPTER = 3 };

/** Pictures of the state display. */
enum : int {
    OSD_PIC_NONE = 0,
    OSD_PIC_FORWARD = 256,
    OSD_PIC_BACKWARD = 257,
    OSD_PIC_REPEAT_OFF = 258,
    OSD_PIC_PAUSE = 259,
    OSD_PIC_SUBTITLE = 260,
    OSD_PIC_NEXT = 262,
    OSD_PIC_PREVIOUS = 263,
    OSD_PIC_AB = 264,
    OSD_PIC_REPEAT = 265,
    OSD_PIC_AUDIO = 266,
    OSD_PIC_REPEAT_ONE = 267,
    OSD_PIC_PLAY = 268,
    OSD_PIC_AB_OFF = 270,
    OSD_PIC_STOP = 272,
    OSD_PIC_NO_FUNCTION = 275,
    OSD_PIC_PBC = 276,
    OSD_PIC_ANGLE = 277
};

/** Texts of the state display and of the number pad. */
enum : int {
    OSD_TXT_PIC_TITLE = 107,
    OSD_TXT_PAUSE = 112,
    OSD_TXT_NEXT = 113,
    OSD_TXT_PREVIOUS = 114,
    OSD_TXT_PLAY = 129,
    OSD_TXT_STOP = 133,
    OSD_TXT_REPEAT_ONE = 154,
    OSD_TXT_REPEAT_ALL = 155,
    OSD_TXT_REPEAT_OFF = 156,
    OSD_TXT_REPEAT_AB = 157,
    OSD_TXT_SUBTITLE_OFF = 160,
    OSD_TXT_PBC_ON = 161,
    OSD_TXT_PBC_OFF = 162,
    OSD_TXT_NO_FUNCTION = 163,
    OSD_TXT_REPEAT_FOLDER = 164,
    OSD_TXT_GOTO_TITLE = 166,
    OSD_TXT_GOTO_CHAPTER = 167,
    OSD_TXT_GOTO_TRACK = 168,
    OSD_TXT_CHANNEL_RIGHT = 169,
    OSD_TXT_CHANNEL_LEFT = 170,
    OSD_TXT_CHANNEL_BOTH = 171
};
