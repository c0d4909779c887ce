#pragma once

#include "services/disc/player/ScanSpeed.h"

#include <chrono>

namespace zm::disc::medium {
enum class DriveFault;
} // namespace zm::disc::medium

namespace zm::disc::player {

/**
 * What the user can ask of a disc that plays. A kind of disc that cannot do something says so with `refuse`. All calls
 * on the service's loop; none waits for the disc.
 */
class Transport {
public:
    virtual ~Transport() = default;

    /** The head unit listens to the disc from now on, or no longer; playing goes on where it was left. */
    virtual void sourceOn() = 0;
    virtual void sourceOff() = 0;
    /** The user has asked for a song by voice, the application names it once music plays. */
    virtual void playMusic() {}
    /** The drive is given a fault, where what plays reads the disc by itself. */
    virtual void driveFault(medium::DriveFault) {}

    virtual void next() { refuse(); }
    virtual void previous() { refuse(); }
    /** Fast through the film or song, at the next speed each time. */
    virtual void scan(ScanDirection) { refuse(); }
    void playPause() { playing() ? pause() : play(); }
    virtual void pause() { refuse(); }
    virtual void play() { refuse(); }
    virtual void stop() { refuse(); }
    /** `mode` 0 asks for the next one. */
    virtual void shuffle(int mode) { refuse(); }
    virtual void repeat(int mode) { refuse(); }
    /** The beginning of a passage that is repeated, then its end, then no more of it. */
    virtual void repeatPassage() { refuse(); }
    /** The next sound, subtitle (or none), angle. */
    virtual void audioChannel() { refuse(); }
    virtual void angle() { refuse(); }
    virtual void subtitle() { refuse(); }
    virtual void playbackControl() { refuse(); }
    virtual void zoom() { refuse(); }
    virtual void rotate() { refuse(); }
    virtual void menu() { refuse(); }
    virtual void titleMenu() { refuse(); }
    /** The numbers stand for a file in several ways: see TrackAddress.h. */
    virtual void playTrack(int first, int second) { refuse(); }
    virtual void playChapter(int chapter) { refuse(); }
    virtual void playTitle(int title) { refuse(); }
    virtual void seek(std::chrono::seconds position) { refuse(); }
    virtual void browse(int mediaType, int folder) { refuse(); }
    virtual void touch(int x, int y) { refuse(); }
    virtual void password(int code) { refuse(); }

protected:
    virtual bool playing() const = 0;
    /** Tells the user that this is not possible. */
    virtual void refuse() = 0;
};

} // namespace zm::disc::player
