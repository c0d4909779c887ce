#include "tests/disc/SoundRecorder.h"

#include <gst/gst.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace zm::test {

namespace {

constexpr int Rate = 48000;
constexpr size_t Window = Rate / 4;
constexpr int Silence = 200; // of 32767
constexpr double Full = 32767.0;
constexpr int Loud = 1500;
constexpr size_t Pause = Rate / 5;

// When a buffer's first sample is to be heard.
int64_t timeOf(GstElement* sink, GstPad* pad, GstBuffer* buffer) {
    GstEvent* event = gst_pad_get_sticky_event(pad, GST_EVENT_SEGMENT, 0);
    const GstSegment* segment = nullptr;
    gst_event_parse_segment(event, &segment);
    const guint64 running = gst_segment_to_running_time(segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
    gst_event_unref(event);
    return static_cast<int64_t>(gst_element_get_base_time(sink) + running);
}

} // namespace

GstElement* SoundRecorder::makeSink() {
    GstElement* sink = gst_element_factory_make("fakesink", nullptr);
    g_object_set(sink, "sync", TRUE, "signal-handoffs", TRUE, nullptr);
    auto onSound = +[](GstElement* element, GstBuffer* buffer, GstPad* pad, gpointer self) {
        GstMapInfo map;
        if (gst_buffer_map(buffer, &map, GST_MAP_READ)) {
            static_cast<SoundRecorder*>(self)->add(reinterpret_cast<const int16_t*>(map.data), map.size / 4,
                                                   timeOf(element, pad, buffer));
            gst_buffer_unmap(buffer, &map);
        }
    };
    g_signal_connect(sink, "handoff", G_CALLBACK(onSound), this);
    return sink;
}

void SoundRecorder::add(const int16_t* samples, size_t frames, int64_t begin) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_hangs; });
    // The sink gives sound out when its first sample is to be heard.
    const auto now = std::chrono::steady_clock::now();
    for (size_t i = 0; i < frames; ++i) {
        m_left.push_back(samples[2 * i]);
        if (std::abs(static_cast<int>(samples[2 * i])) >= Loud) {
            const int64_t at = begin + static_cast<int64_t>(i) * 1'000'000'000 / Rate;
            m_longestPause = std::max(m_longestPause, m_lastLoud > 0 ? at - m_lastLoud : 0);
            m_lastLoud = at;
        }
        if (std::abs(static_cast<int>(samples[2 * i])) < Loud) {
            ++m_silent;
        } else if (std::exchange(m_silent, 0) >= Pause) {
            m_beeps.push_back(now + std::chrono::microseconds(i * 1'000'000 / Rate));
        }
    }
    if (m_left.size() > Window) {
        m_left.erase(m_left.begin(), m_left.end() - Window);
    }
    m_changed.notify_all();
}

int SoundRecorder::pitch() const {
    if (m_left.size() < Window) {
        return 0;
    }
    int crossings = 0;
    int loudest = 0;
    for (size_t i = 1; i < m_left.size(); ++i) {
        crossings += (m_left[i - 1] < 0) != (m_left[i] < 0);
        loudest = std::max(loudest, std::abs(static_cast<int>(m_left[i])));
    }
    return loudest < Silence ? 0 : crossings * Rate / static_cast<int>(Window) / 2;
}

bool SoundRecorder::waitForTone(int hertz, std::chrono::milliseconds timeout) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, timeout, [&] { return std::abs(pitch() - hertz) * 100 <= hertz * 3; });
}

int SoundRecorder::tone() const {
    std::lock_guard lock(m_mutex);
    return pitch();
}

double SoundRecorder::peak() const {
    std::lock_guard lock(m_mutex);
    int loudest = 0;
    for (const int16_t each : m_left) {
        loudest = std::max(loudest, std::abs(static_cast<int>(each)));
    }
    return loudest / Full;
}

std::vector<std::chrono::steady_clock::time_point> SoundRecorder::beeps() const {
    std::lock_guard lock(m_mutex);
    return m_beeps;
}

std::chrono::milliseconds SoundRecorder::longestPause() const {
    std::lock_guard lock(m_mutex);
    return std::chrono::milliseconds(m_longestPause / 1'000'000);
}

void SoundRecorder::hang(bool hangs) {
    std::lock_guard lock(m_mutex);
    m_hangs = hangs;
    m_changed.notify_all();
}

void SoundRecorder::forget() {
    std::lock_guard lock(m_mutex);
    m_lastLoud = m_longestPause = 0;
    m_left.clear();
    m_beeps.clear();
}

} // namespace zm::test
