#pragma once

#include "services/disc/engine/Engine.h"
#include "services/dvd/Wire.h"

#include <memory>
#include <string>
#include <vector>

namespace zm::disc::dvd {

/** What there is on a DVD. */
struct Titles {
    std::vector<zm::dvd::TitleInfo> titles;
};

/** What can be heard and read at a place of the disc. */
struct Streams {
    std::vector<zm::dvd::SoundInfo> sounds;
    std::vector<zm::dvd::SubtitleInfo> subtitles;
};

/** A place in a title, and what is heard and read there. */
struct DvdPlace {
    int title = 1;
    int chapter = 1;
    engine::Milliseconds position{0}; ///< in the title
    int sound = -1;                   ///< logical number; -1 as the disc wants it
    int subtitle = -1;                ///< the same, or dvd::NoSubtitle
};

/** What is on the screen. */
struct Scene {
    int title = 0; ///< 0 outside titles
    int chapter = 0;
    int angle = 0;
    int angles = 0;
    bool buttons = false;    ///< there is something to press
    uint32_t prohibited = 0; ///< bits of dvd::Prohibition
    engine::Milliseconds position{0};
    engine::Milliseconds length{0};
    int sound = -1; ///< logical numbers; -1 none
    int subtitle = -1;
    std::shared_ptr<const Streams> streams;
};

/** Is told what becomes of a DVD. On the service's loop. */
class Listener {
public:
    virtual ~Listener() = default;
    virtual void dvdOpened(const Titles& titles) = 0;
    /** Picture or sound of the beginning, or of the place that a jump led to, is there. */
    virtual void dvdArrived() = 0;
    /** Several times a second while playing or scanning, and when something changes. */
    virtual void dvdShows(const Scene& scene) = 0;
    /** The disc does not do what was asked last. */
    virtual void dvdRefused() = 0;
    /** A button that was touched is carried out. */
    virtual void dvdPressed() = 0;
    /** A fast scan has reached the title's beginning or end; it stands there. */
    virtual void dvdScanned(engine::ScanEdge edge) = 0;
    /** Part of the film cannot be read; it goes on with the next chapter. */
    virtual void dvdGaveUpChapter() = 0;
    /** The disc's program has come to its end. */
    virtual void dvdEnded() = 0;
    /** Nothing more can be played. */
    virtual void dvdFailed(const std::string& reason) = 0;
};

} // namespace zm::disc::dvd
