#pragma once

#include "base/Result.h"
#include "platform/linux/pps/PpsFile.h"
#include "services/disc/model/Media.h"

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zm::disc::model {

/** Values of "discstate". */
enum class PlayState {
    Stopped = 0,
    Loading = 1,
    Playing = 2,
    Paused = 6,
    Error = 9,
    Forward = 10,
    Backward = 11,
    Ejecting = 20
};

/** Values of "disc". */
enum class DiscPresence { None = 0, Present = 1, DriveGone = 2 };

/** Values of "errorstatus". */
enum class DeviceError { None = 0, Read = 32, Surface = 34, Temperature = 48, Region = 144 };

/** Values of "videomode". */
enum class VideoMode { Picture = 1, NoPicture = 2, BackToList = 3 };

/** Values of "msgtip". */
enum class Tip {
    NotAvailable = 1,
    Previous = 2,
    Next = 3,
    Stop = 4,
    Pause = 5,
    Play = 6,
    RepeatOff = 7,
    RepeatAll = 8,
    RepeatOne = 9,
    RepeatFolder = 10,
    RepeatAbOff = 11,
    RepeatAbOn = 12,
    ForwardX2 = 18,
    BackwardX2 = 22,
    PbcOn = 29,
    PbcOff = 30
};

/** Whether a kind's catalogue is still being made, in "updatedb". */
enum class Reading { Unfinished = 0, Complete = 0x10000 };

/** "trackinfo": current and total numbers, 0 when unknown. */
struct TrackInfo {
    int inFolder = 0;
    int filesInFolder = 0;
    int onDisc = 0;
    int filesOnDisc = 0;
    int chapter = 0;
    int chapters = 0;
    int title = 0;
    int titles = 0;
    int folder = 0;
};

/** "playtime" in seconds. */
struct PlayTime {
    int elapsed = 0;
    int track = 0;
    int all = 0;
};

/** "ID3". */
struct TrackTexts {
    std::string title;
    std::string artist;
    std::string album;
};

/** "cover": the picture of the song that plays. Empty while there is none. */
struct Cover {
    std::string path;  ///< of a PNG; it may vanish with the disc
    std::string kind;  ///< "embedded" in the song's tags, "file" beside it, or "drawn"
    std::string color; ///< that it is remembered by, "#RRGGBB"
    int folder = 0;    ///< and number of the song
    int file = 0;
    std::string key{}; ///< not published: the same for the same picture
};

/** "playstate". */
struct PlayModes {
    int repeat = 2;
    int shuffle = 0;
    int scan = 0;
};

/** "dvdstate". */
struct DvdDetail {
    std::string audioType;
    std::string audioChannel;
    std::string audioLanguage;
    int audio = 0;
    int audios = 0;
    std::string subtitleLanguage;
    int subtitle = 0; ///< offset by 80; 0 = none
    int subtitles = 0;
    int angle = 0;
    int angles = 0;
};

/** "drivestate": what the head unit is told of the drive itself. */
struct DriveState {
    std::string state; ///< "empty", "reading", "loaded", "ejecting" or "error"
    std::string path;
    std::string text;   ///< why, when "error"; else why the latest insertion was refused
    std::string kind{}; ///< of a disc that has been read: "DVD-Video", "audio CD", "files: music, video"
    std::string form{}; ///< by what the disc was recognised
    std::string catalogNumber{};      ///< of a CD, empty when unknown
    std::vector<std::string> isrcs{}; ///< numbers of its recordings, by track; none when all are unknown
    std::string device{}; ///< the machine's drive, "none" while there is none; empty without the wish for one
    bool byHand = false;  ///< somebody has put the disc into that drive
};

/** What the drive remembers for a service that is started again: its disc and whether it is the head unit's
 * source. */
struct Tray {
    std::string path;
    bool source = false;
};

/**
 * The objects that the service publishes, and the only place that knows their texts. Each call writes one
 * attribute, also when the value is the same as before, as readers take the change itself for the event.
 * While the objects' service is away values are kept and published when it is back. One thread.
 */
class DiscState {
public:
    /** Opens the objects and publishes the state of an empty drive. */
    static Result<std::unique_ptr<DiscState>> open(const std::string& ppsSocket);

    void disc(DiscPresence presence);
    void mediaType(MediaType type);
    void mixedType(int mask);
    void mixedSwitching(bool on);
    void error(DeviceError error);
    void videoMode(VideoMode mode);
    void playState(PlayState state);
    /** Publishes "mediatype" and then "discstate" again, for an application that has just come. */
    void repeatTypeAndState();
    void modes(const PlayModes& modes);
    void rootMenu(bool shown);
    /** The catalogue of a kind has something new, in `folder`. */
    void catalogue(Reading reading, int folder);
    void dvd(const DvdDetail& detail);
    void audioChannel(int channel);
    /** 1 normal, else the factor, negative backwards. */
    void playSpeed(int speed);
    void keyInvalid();
    void tip(Tip tip, int offset = 0);
    void track(const TrackInfo& info);
    void time(const PlayTime& time);
    void texts(const TrackTexts& texts);
    void cover(const Cover& cover);
    void drive(const DriveState& state);
    void tray(const Tray& tray);

    /** Takes back everything that the disc before has left, its presence and the play state excepted. */
    void forgetDisc();
    /** Writes all values again: the objects' service has been started anew and knows none. */
    void publishAll();

    /** Takes the request to the drive out of its object: it has been seen to. */
    void requestDone();
    /** The object "drive", which also carries requests to the service;
     * for reading beside the writing here. */
    PpsFile& driveFile();
    /** The object "status", for noticing that it has lost its attributes. */
    PpsFile& statusFile();

private:
    enum class Attribute;
    enum class Object;
    struct Row;
    static const Row table[];

    DiscState() = default;
    void publish(Attribute attribute, const std::string& value);
    void publish(Attribute attribute, int value);
    void publishChanged(Attribute attribute, const std::string& value);
    void write(Object object, const std::string& text);
    PpsFile& file(Object object);

    std::vector<PpsFile> m_files;
    std::map<Attribute, std::string> m_values;
    bool m_failing = false;
};

} // namespace zm::disc::model
