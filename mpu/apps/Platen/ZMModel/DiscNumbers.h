#pragma once

/* The numbers with which the disc service reports. */

/** Play types: the media type of the device status. */
enum PlayType : int {
    PLAY_TYPE_DVD = 0,
    PLAY_TYPE_CD = 1,
    PLAY_TYPE_MUSIC = 2,
    PLAY_TYPE_VIDEO = 3,
    PLAY_TYPE_PHOTO = 4,
    PLAY_TYPE_VCD = 5,
    PLAY_TYPE_UNKNOWN = 255
};

/** Bits of the mixed-type mask: which media types the disc holds. */
enum : int { MIXED_MUSIC = 2, MIXED_VIDEO = 4, MIXED_PHOTO = 8 };

/** Disc states of the play status. */
enum : int {
    DISC_STATE_STOPPED = 0,
    DISC_STATE_LOADING = 1,
    DISC_STATE_PLAYING = 2,
    DISC_STATE_PAUSED = 6,
    DISC_STATE_ERROR = 9,
    DISC_STATE_FAST_FORWARD = 10,
    DISC_STATE_FAST_BACKWARD = 11,
    DISC_STATE_EJECTING = 20
};

/** What the device's video mode asks for. */
enum : int { VIDEO_MODE_ON = 1, VIDEO_MODE_OFF = 2, VIDEO_MODE_TO_LIST = 3 };

/** Error codes of the device status. */
enum : int {
    ERROR_STATUS_READ = 32,
    ERROR_STATUS_SURFACE = 34,
    ERROR_STATUS_READ_2 = 35,
    ERROR_STATUS_TEMP = 48,
    ERROR_STATUS_REGION = 144
};
