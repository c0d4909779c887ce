#pragma once

#include "services/disc/engine/Loudness.h"
#include "services/disc/engine/PictureView.h"
#include "services/disc/engine/Streams.h"
#include "services/disc/medium/Medium.h"
#include "services/disc/model/Media.h"

#include <chrono>
#include <memory>
#include <string>

namespace zm::disc::engine {

using Milliseconds = std::chrono::milliseconds;

/** Whole seconds of a time, as they are published. */
constexpr int wholeSeconds(Milliseconds time) {
    return static_cast<int>(std::chrono::duration_cast<std::chrono::seconds>(time).count());
}

/** One file to be played. */
struct Playable {
    std::shared_ptr<medium::Medium> medium;
    std::string path;
    model::MediaKind kind = model::MediaKind::Music;
    Milliseconds length{0}; ///< from its tags; 0 when unknown
};

/** Within this time what was stopped is silent; so long its bytes are still asked for. */
inline constexpr Milliseconds LongestFade{400};

enum class StartMode { Playing, Paused };
enum class ScanEdge { Beginning, End };

/** Is told what becomes of the playable started last. On the service's loop. */
class Listener {
public:
    virtual ~Listener() = default;
    /** What the user can choose from; comes before "started", for videos only. */
    virtual void engineStreams(const Streams& streams) = 0;
    /** Sound or picture is there. A length of 0 is not known. */
    virtual void engineStarted(Milliseconds length) = 0;
    /** Several times a second while playing or scanning, and after a seek. */
    virtual void engineMoved(Milliseconds position, Milliseconds length) = 0;
    virtual void engineEnded() = 0;
    /** What was to follow is heard now, from its beginning; the item before has ended. */
    virtual void engineFollowed(Milliseconds length) = 0;
    /** A fast scan has reached the beginning or the end; it stands there. */
    virtual void engineScanned(ScanEdge edge) = 0;
    /** It cannot be read or decoded (any further). */
    virtual void engineFailed(const std::string& reason) = 0;
};

/**
 * Plays one thing at a time. No call waits for the disc or for a decoder; a call takes back what earlier ones
 * have not yet done. After `stop` and after a new `start` nothing more is reported of what was played before.
 * All calls on the service's loop.
 */
class Engine {
public:
    virtual ~Engine() = default;
    /** `listener` lives until `stop`, the next `start` or the engine's end. */
    virtual void start(const Playable& playable, Listener& listener, Milliseconds position,
                       StartMode mode) = 0;
    virtual void pause() = 0;
    /** Goes on at normal speed from where it stands, also out of a scan. */
    virtual void resume() = 0;
    virtual void seek(Milliseconds position) = 0;
    /** Runs silently through the item `speed` times as fast, backwards if negative. */
    virtual void scan(int speed) = 0;
    /** Looks at the picture in another way, until the next `start`. */
    virtual void view(const PictureView& view) = 0;
    /** Goes over to these streams of those reported, until the next `start`. */
    virtual void choose(const StreamChoice& choice) = 0;
    /** Has `next` follow what plays without a gap, where that is possible: `engineFollowed` comes in the place of
     * `engineEnded`. The next call of another kind than `pause` and `resume` takes it back. For music behind music. */
    virtual void follow(const Playable& next) = 0;
    virtual void followNothing() = 0;
    /** Sound goes down to silence first; `stop` returns at once. */
    virtual void stop() = 0;
    /** From now on all sound is so loud. */
    virtual void loudness(const Loudness& loudness) = 0;
    /** Stops, and leaves the sound device to others until the next `start`. */
    virtual void rest() { stop(); }
};

} // namespace zm::disc::engine
