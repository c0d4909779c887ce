#pragma once

#include <string>

namespace zm::test {

class Unit;

/** Members of "trackinfo". */
struct Track {
    int curMediaId = 0;
    int curMediaIds = 0;
    int mediaId = 0;
    int mediaIds = 0;
    int chapter = 0;
    int chapters = 0;
    int title = 0;
    int titles = 0;
    int parentFolder = 0;
};

/** Members of "dvdstate". */
struct DvdState {
    std::string audioType = "AC3";
    std::string audioChannel = "2";
    std::string audioLanguage = "English";
    int audio = 1;
    int audios = 1;
    std::string subtitleLanguage = "English";
    int subtitle = 1;
    int subtitles = 1;
    int angle = 1;
    int angles = 1;
};

/** Plays the disc service: publishes what it would publish. */
class DiscPlayer {
public:
    explicit DiscPlayer(Unit& unit) : m_unit(unit) {}

    /**
     * A disc goes in and plays its first item: presence, reading, mixed types, media type, disc state 2, one
     * after the other. `mediaType` 0 DVD, 1 audio CD, 2 music, 3 video, 4 photo, 5 VCD; `mixedType` 2 music,
     * 4 video, 8 photos (0: the bit of the media type).
     */
    void insert(int mediaType = 2, int mixedType = 0);
    /** Ejecting, then no disc. */
    void eject();
    /** "disc": 0 no disc, 1 disc, 2 no drive. */
    void presence(int value);
    void mediaType(int value);
    void mixedType(int mask);
    void mixedSwitching(int value);
    void error(int status);
    void videoMode(int mode);
    /** "discstate": 0 stopped, 1 loading, 2 playing, 6 paused, 10 and 11 fast, 9 error, 20 ejecting. */
    void state(int value);
    void playState(int repeat, int shuffle, int scan);
    void rootMenu(bool shown);
    void updateDb(int state);
    void dvd(const DvdState& state);
    void audioChannel(int value);
    void playSpeed(int value);
    void keyInvalid();
    void tip(int code);
    void track(const Track& track);
    /** Elapsed and total seconds. */
    void playTime(int time, int trackTime, int times = 0);
    void id3(const std::string& title, const std::string& artist, const std::string& album);
    void version(const std::string& text);

private:
    void status(const std::string& line);
    void device(const std::string& line);
    void playing(const std::string& line);

    Unit& m_unit;
};

} // namespace zm::test
