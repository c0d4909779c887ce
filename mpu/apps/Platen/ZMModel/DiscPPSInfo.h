#pragma once

#include "zmcar/FileTagInfo.h"

/*
 * The PPS objects that the program reads and writes, and every name that stands in them. Flags are the
 * target's numbers: 258 read, write and create; 770 the same and truncate; 257 write and create. Mode 438 is
 * 0666 octal.
 */

/** Numbers under which changes of the objects are reported; 5 is not used. */
enum DISC_PPS_KEY_EN {
    PPS_KEY_CONTROL = 0,
    PPS_KEY_STATUS = 1,
    PPS_KEY_DEVICE = 2,
    PPS_KEY_PLAYING = 3,
    PPS_KEY_MPEGINFO = 4,
    PPS_KEY_VIDEO_COMMAND = 6,
    PPS_KEY_VIDEO_STATUS = 7,
    PPS_KEY_SYSTEM = 8,
    PPS_KEY_NOWPLAYING = 9,
};

// Inline, so that they are filled before any global of a source file that includes this header.
inline const fileTagInfo g_DiscControlPPSInfo{PPS_KEY_CONTROL, "/pps/zelmar/disc/control?delta", 770, 438};
inline const fileTagInfo g_DiscStatusPPSInfo{PPS_KEY_STATUS, "/pps/zelmar/disc/status?delta", 258, 438};
inline const fileTagInfo g_DiscDevicePPSInfo{PPS_KEY_DEVICE, "/pps/zelmar/disc/device?delta", 258, 438};
inline const fileTagInfo g_DiscPlayingPPSInfo{PPS_KEY_PLAYING, "/pps/zelmar/disc/playing?delta", 258, 438};
inline const fileTagInfo g_DiscMpegInfoPPSInfo{PPS_KEY_MPEGINFO, "/pps/zelmar/disc/mpeginfo?delta", 258, 438};
inline const fileTagInfo g_DiscVideoCommandPPSInfo{
    PPS_KEY_VIDEO_COMMAND, "/pps/zelmar/videoservice/command?delta,nopersist", 257, 438};
inline const fileTagInfo g_DiscVideoStatusPPSInfo{PPS_KEY_VIDEO_STATUS,
                                                  "/pps/zelmar/videoservice/status?delta", 258, 438};
inline const fileTagInfo g_DiscSystemPPSInfo{PPS_KEY_SYSTEM, "/pps/zelmar/system/dev_status?delta", 258, 438};
inline const fileTagInfo g_DiscNowPlayingPPSInfo{
    PPS_KEY_NOWPLAYING, "/pps/zelmar/navigator/nowplaying?delta,nopersist", 258, 438};

inline constexpr const char* PPS_ENCODING_JSON = "json";

// Status object.
inline constexpr const char* STATUS_DISCSTATE = "discstate";
inline constexpr const char* STATUS_PLAYSTATE = "playstate";
inline constexpr const char* STATUS_PLAYSTATE_REPEAT = "repeat";
inline constexpr const char* STATUS_PLAYSTATE_SHUFFLE = "shuffle";
inline constexpr const char* STATUS_PLAYSTATE_SCAN = "scan";
inline constexpr const char* STATUS_ROOTMENU = "rootmenu";
inline constexpr const char* STATUS_PARENTAL = "parental";
inline constexpr const char* STATUS_TRUE = "true";
inline constexpr const char* STATUS_UPDATEDB = "updatedb";
inline constexpr const char* STATUS_DVDSTATE = "dvdstate";
inline constexpr const char* STATUS_DVDSTATE_AUDIOTYPE = "audiotype";
inline constexpr const char* STATUS_DVDSTATE_AUDIOCHANNEL = "audiochannel";
inline constexpr const char* STATUS_DVDSTATE_CURAUDIOLAN = "curaudiolan";
inline constexpr const char* STATUS_DVDSTATE_CURAUDIOMODE = "curaudiomode";
inline constexpr const char* STATUS_DVDSTATE_TOTALAUDIOMODE = "totalaudiomode";
inline constexpr const char* STATUS_DVDSTATE_CURSUBTITLELAN = "cursubtitlelan";
inline constexpr const char* STATUS_DVDSTATE_CURSUBTITLENUM = "cursubtitlenum";
inline constexpr const char* STATUS_DVDSTATE_TOTALSUBTITLE = "totalsubtitle";
inline constexpr const char* STATUS_DVDSTATE_CURANGLE = "curangle";
inline constexpr const char* STATUS_DVDSTATE_TOTALANGLE = "totalangle";
inline constexpr const char* STATUS_AUDIOCHANNEL = "audiochannel";
inline constexpr const char* STATUS_PLAYSPEED = "playspeed";
inline constexpr const char* STATUS_KEYINVALID = "keyinvalid";
inline constexpr const char* STATUS_MSGTIP = "msgtip";

// Device object.
inline constexpr const char* DEVICE_DISC = "disc";
inline constexpr const char* DEVICE_MEDIATYPE = "mediatype";
inline constexpr const char* DEVICE_MIXEDTYPE = "mixedtype";
inline constexpr const char* DEVICE_MIXEDSWITCHING = "mixedswitching";
inline constexpr const char* DEVICE_ERRORSTATUS = "errorstatus";
inline constexpr const char* DEVICE_VIDEOMODE = "videomode";

// Playing object.
inline constexpr const char* PLAYING_TRACKINFO = "trackinfo";
inline constexpr const char* PLAYING_TRACKINFO_CURMEDIAID = "curmediaid";
inline constexpr const char* PLAYING_TRACKINFO_CURMEDIAIDS = "curmediaids";
inline constexpr const char* PLAYING_TRACKINFO_MEDIAID = "mediaid";
inline constexpr const char* PLAYING_TRACKINFO_MEDIAIDS = "mediaids";
inline constexpr const char* PLAYING_TRACKINFO_CHAPTER = "chapter";
inline constexpr const char* PLAYING_TRACKINFO_CHAPTERS = "chapters";
inline constexpr const char* PLAYING_TRACKINFO_TITLE = "title";
inline constexpr const char* PLAYING_TRACKINFO_TITLES = "titles";
inline constexpr const char* PLAYING_TRACKINFO_PARENTFOLDER = "parentFolder";
inline constexpr const char* PLAYING_PLAYTIME = "playtime";
inline constexpr const char* PLAYING_PLAYTIME_TIME = "time";
inline constexpr const char* PLAYING_PLAYTIME_TRACKTIME = "tracktime";
inline constexpr const char* PLAYING_PLAYTIME_TIMES = "times";
inline constexpr const char* PLAYING_ID3 = "ID3";
inline constexpr const char* PLAYING_ID3_TITLE = "title";
inline constexpr const char* PLAYING_ID3_ARTIST = "artist";
inline constexpr const char* PLAYING_ID3_ALBUM = "album";

// Decoder information object.
inline constexpr const char* MPEGINFO_VERSION = "version";

// Video service: status and command objects.
/** One text object for all source files, as its identity is asked for. */
inline constexpr char VIDEO_STATUS_ZMDISC[] = "zmdisc";
inline constexpr const char* VIDEO_STATUS_ZMDISC_VALID = "valid";
inline constexpr const char* VIDEO_STATUS_ZMDISC_TYPE = "type";
inline constexpr const char* VIDEO_COMMAND_OBJECT = "@command";
inline constexpr const char* VIDEO_ZMVIDEO = "zmvideo";
inline constexpr const char* VIDEO_ZMVIDEO_STATUS = "status";
inline constexpr const char* VIDEO_ZMVIDEO_ON = "on";
inline constexpr const char* VIDEO_ZMVIDEO_OFF = "off";
inline constexpr const char* VIDEO_ZMVIDEO_WNDGP_ID = "wndgp_id";
inline constexpr const char* VIDEO_ZMVIDEO_WND_ID = "wnd_id";
inline constexpr const char* VIDEO_ZMVIDEO_SRC = "src";

// System object.
inline constexpr const char* SYSTEM_AUTODISCIN = "autodiscin";
inline constexpr const char* SYSTEM_DISCSTATUS = "discstatus";
inline constexpr const char* SYSTEM_ON = "on";
inline constexpr const char* SYSTEM_OFF = "off";

// Control object.
inline constexpr const char* DISC_CMD_OBJECT = "@control";
inline constexpr const char* DISC_CMD = "zmcmd";
inline constexpr const char* DISC_CMD_cmd = "cmd";
inline constexpr const char* DISC_CMD_param1 = "param1";
inline constexpr const char* DISC_CMD_param2 = "param2";

// Now-playing object.
inline constexpr const char* NOWPLAYING_OBJECT = "@nowplaying";
inline constexpr const char* NOWPLAYING_TRACK = "zmdisc";
inline constexpr const char* NOWPLAYING_TRACK_NAME = "name";
inline constexpr const char* NOWPLAYING_TRACK_INFO0 = "info0";
inline constexpr const char* NOWPLAYING_TRACK_INFO1 = "info1";
inline constexpr const char* NOWPLAYING_TRACK_INFO2 = "info2";
inline constexpr const char* NOWPLAYING_TRACK_ICONPATH = "iconpath";
inline constexpr const char* NOWPLAYING_NAME_DISC = "Disc";
inline constexpr const char* NOWPLAYING_MEDIAINFO = "zmdisc_mediainfo";
inline constexpr const char* NOWPLAYING_MEDIAINFO_STATUS = "status";
inline constexpr const char* NOWPLAYING_MEDIAINFO_MEDIATYPE = "mediatype";
inline constexpr const char* NOWPLAYING_MEDIAINFO_PLAYTIME = "playtime";
inline constexpr const char* NOWPLAYING_MEDIAINFO_TOTALTIME = "totaltime";
inline constexpr const char* NOWPLAYING_MEDIAINFO_FILENUM = "filenum";
inline constexpr const char* NOWPLAYING_MEDIAINFO_TOTALFILENUM = "totalfilenum";
inline constexpr const char* NOWPLAYING_STATUS_STOP = "stop";
inline constexpr const char* NOWPLAYING_STATUS_LOADING = "loading";
inline constexpr const char* NOWPLAYING_STATUS_PLAY = "play";
inline constexpr const char* NOWPLAYING_STATUS_PAUSE = "pause";
inline constexpr const char* NOWPLAYING_STATUS_ERR_DEVICE = "err_device";
inline constexpr const char* NOWPLAYING_STATUS_EJECTING = "ejecting";
inline constexpr const char* NOWPLAYING_STATUS_IDLE = "idle";
inline constexpr const char* NOWPLAYING_STATUS_NO_DEVICE = "no_device";
inline constexpr const char* NOWPLAYING_TYPE_DVD = "dvd";
inline constexpr const char* NOWPLAYING_TYPE_CD = "cd";
inline constexpr const char* NOWPLAYING_TYPE_MUSIC = "music";
inline constexpr const char* NOWPLAYING_TYPE_VIDEO = "video";
inline constexpr const char* NOWPLAYING_TYPE_PHOTO = "photo";
inline constexpr const char* NOWPLAYING_TYPE_VCD = "vcd";
inline constexpr const char* NOWPLAYING_TYPE_UNKNOWN = "unknown";
