#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zm::dvd {

/**
 * What the DVD reader and the disc service say to each other: packets of a local SOCK_SEQPACKET socket, each
 * a record of plain numbers in the machine's own order, as both run on the same machine and come from the
 * same build. The reader's end is descriptor `ReaderSocket`. The service trusts no number in what it gets.
 */
inline constexpr int ReaderSocket = 3;

inline constexpr size_t BlockBytes = 2048;
/** Blocks in one packet at most. */
inline constexpr size_t MaxBlocks = 16;
/** Places that the reader sends before one is taken. */
inline constexpr size_t PlacesAhead = 2;
inline constexpr size_t MaxTitles = 99;
inline constexpr size_t MaxSounds = 8;
inline constexpr size_t MaxSubtitles = 32;
/** Seconds of a still picture that stands until the user goes on. */
inline constexpr int EndlessStill = 255;

// ---- from the service to the reader

enum class Operation : uint32_t {
    Restart,  ///< from the disc's first play on
    Title,    ///< first: title
    Chapter,  ///< first: title, second: chapter
    Time,     ///< first: milliseconds in the title
    RootMenu, ///< in a menu: back to where the title was left
    TitleMenu,
    Button,    ///< first: number of the button, second: the place that shows it
    Streams,   ///< first: sound, second: subtitle; each -1 to leave it; then as Time with third
    Angle,     ///< first: angle; what was read stays
    StillOver, ///< goes on behind a still picture
    WaitOver,  ///< everything before has been shown
    Taken,     ///< a place; the reader keeps only a few ahead
    Fault,     ///< first: 0 none, 1 every read fails, 2 no read returns
};

struct Command {
    Operation operation = Operation::Restart;
    /** Of the places that a jump leads to; 0 where it is none. Grows with each jump. */
    uint32_t generation = 0;
    int32_t first = 0;
    int32_t second = 0;
    int32_t third = 0;
    /** The title that the user saw, for Time and Streams: the reader may have gone on into another one. */
    int32_t title = 0;
    /** The generation that the user saw; the reader refuses a button of an earlier one. */
    uint32_t seen = 0;
};

/** Switches a subtitle off, as Streams' second. */
inline constexpr int NoSubtitle = 64;

// ---- from the reader to the service

enum class Event : uint32_t {
    Disc,      ///< once: what there is
    Done,      ///< the answer to a command with a generation
    Blocks,    ///< packs of the film
    Picture,   ///< a pack from before the place: of the picture that stands there
    Place,     ///< a navigation pack: what the following packs are
    Still,     ///< the picture stands; the reader waits
    Wait,      ///< everything sent has to be shown first; the reader waits
    Highlight, ///< the button that is chosen now
    Colours,   ///< of subtitles and menus
    Sound,     ///< which of the pack's sounds is to be heard
    Subtitle,  ///< which of the pack's subtitles is to be seen
    Streams,   ///< what may be chosen from
    Stopped,   ///< the disc has come to its end; the reader waits
    ReadError, ///< a part was left out, or nothing more can be read
};

struct Head {
    Event event = Event::Disc;
    uint32_t generation = 0;
};

struct TitleInfo {
    uint16_t chapters = 0;
    uint16_t angles = 0;
};

struct DiscEvent {
    Head head;
    uint32_t titles = 0;
    std::array<TitleInfo, MaxTitles> title{};
};

enum class Outcome : uint32_t {
    Refused, ///< nothing has changed
    Stayed,  ///< carried out; what was read goes on
    Jumped   ///< what follows is of the new generation
};

struct DoneEvent {
    Head head;
    uint32_t answered = 0; ///< generation of the command
    Outcome outcome = Outcome::Refused;
};

/** Followed by the blocks themselves. */
struct BlocksEvent {
    Head head;
    uint32_t count = 0;
};

/** Followed by the pack itself. */
struct PictureEvent {
    Head head;
};

enum class Domain : uint32_t { FirstPlay, DiscMenu, TitleMenu, Title };

/** Followed by the navigation pack itself. */
struct PlaceEvent {
    Head head;
    uint32_t number = 0; ///< of the place, for Operation::Button
    Domain domain = Domain::FirstPlay;
    int32_t title = 0;
    int32_t chapter = 0;
    int32_t angle = 0;
    int32_t angles = 0;
    int32_t button = 0;   ///< chosen when it was read
    int64_t cellTime = 0; ///< of the cell's beginning in the title, 90 kHz
    int64_t length = 0;   ///< of the title, 90 kHz
    uint32_t prohibited = 0;
    uint32_t wide = 0;  ///< the picture is 16:9
    uint32_t lines = 0; ///< of a whole picture: 480 or 576
};

/** Bits of `prohibited`. */
enum Prohibition : uint32_t {
    NoTimeSearch = 1u << 0,
    NoChapterSearch = 1u << 1,
    NoTitlePlay = 1u << 2,
    NoStop = 1u << 3,
    NoNext = 1u << 4,
    NoPrevious = 1u << 5,
    NoForward = 1u << 6,
    NoBackward = 1u << 7,
    NoTitleMenu = 1u << 8,
    NoRootMenu = 1u << 9,
    NoResume = 1u << 10,
    NoButton = 1u << 11,
    NoPause = 1u << 12,
    NoSoundChange = 1u << 13,
    NoSubtitleChange = 1u << 14,
    NoAngleChange = 1u << 15,
};

struct StillEvent {
    Head head;
    int32_t seconds = 0;
};

struct HighlightEvent {
    Head head;
    int32_t button = 0;
};

struct ColoursEvent {
    Head head;
    std::array<uint32_t, 16> colours{};
};

enum class SoundKind : uint32_t { Ac3, Mpeg, Lpcm, Dts, Unknown };

struct SoundEvent {
    Head head;
    int32_t stream = -1; ///< number within its kind; -1 none
    int32_t logical = 0;
    SoundKind kind = SoundKind::Unknown;
};

struct SubtitleEvent {
    Head head;
    int32_t stream = 0;
    int32_t logical = 0;
    uint32_t visible = 0; ///< else only what is forced
};

struct SoundInfo {
    SoundKind kind = SoundKind::Unknown;
    int32_t logical = 0;
    uint16_t language = 0; ///< two letters, 0 unknown
    uint16_t channels = 0;
};

struct SubtitleInfo {
    int32_t logical = 0;
    uint32_t language = 0;
};

struct StreamsEvent {
    Head head;
    uint32_t sounds = 0;
    uint32_t subtitles = 0;
    std::array<SoundInfo, MaxSounds> sound{};
    std::array<SubtitleInfo, MaxSubtitles> subtitle{};
};

struct ReadErrorEvent {
    Head head;
    uint32_t over = 0; ///< 1: nothing more can be read; else a chapter was given up
};

/** The longest packet. */
inline constexpr size_t MaxPacket = sizeof(BlocksEvent) + MaxBlocks * BlockBytes;

} // namespace zm::dvd
