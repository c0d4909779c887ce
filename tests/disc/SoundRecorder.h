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
    void forget();

private:
    void add(const int16_t* samples, size_t frames);
    int pitch() const;

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<int16_t> m_left;
    std::vector<std::chrono::steady_clock::time_point> m_beeps;
    size_t m_silent = 0; ///< samples in a row
};

} // namespace zm::test
