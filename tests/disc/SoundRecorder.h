#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

using GstElement = struct _GstElement;

namespace zm::test {

/** Listens to what is played, in time, and tells its pitch. Outlives the elements it has made. Any thread. */
class SoundRecorder {
public:
    /** A sink for a pipeline; the reference is floating. */
    GstElement* makeSink();
    /** Waits until a quarter of a second in a row had a pure tone of `hertz`, within 3 %. */
    bool waitForTone(int hertz, std::chrono::milliseconds timeout = std::chrono::seconds(10));
    /** Pitch of the last quarter of a second; 0 for silence. */
    int tone() const;
    /** The loudest of it, 0 to 1. */
    double peak() const;
    /** When sound began after at least a fifth of a second of silence, since `forget`. */
    std::vector<std::chrono::steady_clock::time_point> beeps() const;
    /** The longest that nothing was heard between two sounds since `forget`. */
    std::chrono::milliseconds longestPause() const;
    void forget();
    /** From now on the sink hangs in the middle of a sound, as a broken device does; until `false`. */
    void hang(bool hangs);

private:
    void add(const int16_t* samples, size_t frames, int64_t begin);
    int pitch() const;

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<int16_t> m_left;
    std::vector<std::chrono::steady_clock::time_point> m_beeps;
    bool m_hangs = false;
    size_t m_silent = 0; ///< samples in a row
    // In nanoseconds of the system's clock.
    int64_t m_lastLoud = 0; ///< when the last sample that was heard ended; 0 none
    int64_t m_longestPause = 0;
};

} // namespace zm::test
