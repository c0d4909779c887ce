#pragma once

#include "ZMModel/DiscNumbers.h"

#include <cstdint>
#include <string>

/** What is known of the drive and the disc in it. */
struct T_MPEG_DEVICE_STATUS {
    bool bConnected = false;      ///< the drive is connected
    bool bExisting = false;       ///< a disc is present
    bool bMixedSwitching = false; ///< the service switches between the kinds of a mixed disc
    int32_t nMediaType = PLAY_TYPE_UNKNOWN;
    int32_t nMixedType = 128; ///< mask of the kinds on a mixed disc: MIXED_...
    int32_t nErrorStatus = 0; ///< device error code: ERROR_STATUS_...
    int32_t nVideoMode = 0;   ///< video output mode: VIDEO_MODE_...
};

/** The track that is played; the plural fields are the counts that go with the numbers. */
struct T_MPEG_MEDIA_INFO {
    int32_t clipsType = 0;
    int32_t curMediaId = 0;  ///< number within the current folder
    int32_t curMediaIds = 0; ///< files in the current folder
    int32_t mediaId = 0;     ///< number on the disc
    int32_t mediaIds = 0;    ///< files on the disc
    int32_t chapter = 0;
    int32_t title = 0;
    int32_t chapters = 0;
    int32_t titles = 0;
    int32_t parentFolder = 0;
};

struct T_PLAY_STATUS {
    int32_t discState = -1; ///< DISC_STATE_...
    int32_t repeat = -1;
    int32_t shuffle = -1;
    int32_t scan = -1;
};

/** Play time in seconds. */
struct T_PLAYTIME_INFO {
    int32_t time = 0; ///< elapsed
    int32_t trackTime = 0;
    int32_t times = 0;
};

struct T_ID3_INFO {
    std::string title;
    std::string artist;
    std::string album;
};

struct T_DVD_DETAIL {
    int32_t curAngle = 0;
    int32_t totalAngle = 0;
    std::string audioType;
    std::string audioChannel;
    std::string curAudioLan;
    int32_t curAudioMode = 0;
    int32_t totalAudioMode = 0;
    std::string curSubtitleLan;
    int32_t curSubtitleNum = 0;
    int32_t totalSubtitle = 0;
};
