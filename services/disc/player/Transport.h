#pragma once

namespace zm::disc::medium {
enum class DriveFault;
} // namespace zm::disc::medium

namespace zm::disc::player {

/**
 * What the user can ask of a disc that plays. Numbers are those of the command, 0 where it has none. A kind
 * of disc that cannot do something says so with `refuse`. All calls on the service's loop; none waits for the
 * disc.
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

    virtual void next(int, int) { refuse(); }
    virtual void previous(int, int) { refuse(); }
    virtual void fastForward(int, int) { refuse(); }
    virtual void fastBackward(int, int) { refuse(); }
    virtual void playPause(int, int) { refuse(); }
    virtual void pause(int, int) { refuse(); }
    virtual void play(int, int) { refuse(); }
    virtual void stop(int, int) { refuse(); }
    virtual void shuffle(int mode, int) { refuse(); }
    virtual void repeat(int mode, int) { refuse(); }
    virtual void repeatPassage(int, int) { refuse(); }
    virtual void audioChannel(int, int) { refuse(); }
    virtual void angle(int, int) { refuse(); }
    virtual void subtitle(int, int) { refuse(); }
    virtual void playbackControl(int, int) { refuse(); }
    virtual void zoom(int, int) { refuse(); }
    virtual void rotate(int, int) { refuse(); }
    virtual void menu(int, int) { refuse(); }
    virtual void titleMenu(int, int) { refuse(); }
    virtual void playTrack(int first, int second) { refuse(); }
    virtual void playChapter(int chapter, int) { refuse(); }
    virtual void playTitle(int title, int) { refuse(); }
    /** Position in seconds. */
    virtual void seek(int position, int) { refuse(); }
    virtual void browse(int mediaType, int folder) { refuse(); }
    virtual void touch(int x, int y) { refuse(); }
    virtual void password(int code, int) { refuse(); }

protected:
    /** Tells the user that this is not possible. */
    virtual void refuse() = 0;
};

} // namespace zm::disc::player
