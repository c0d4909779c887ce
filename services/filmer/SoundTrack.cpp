#include "services/filmer/SoundTrack.h"

#include <algorithm>

namespace zm::filmer {

using film::Millisecond;
using film::Moment;
using film::Second;

namespace {

constexpr size_t Channels = 2;
// Sound that follows so closely follows without a gap: moments of a device's sound are not exact.
constexpr Moment Tolerance = 15 * Millisecond;
// What is further off is no moment at which something could have been heard.
constexpr Moment Far = 5 * Second;
constexpr uint32_t LowestRate = 8000;
constexpr uint32_t HighestRate = 192000;
constexpr Moment LongestSilence = Second;

} // namespace

SoundTrack::SoundTrack(std::unique_ptr<film::SharedSound> heard, Moment begin, Add add)
    : m_heard(std::move(heard)), m_begin(begin), m_add(std::move(add)), m_anchor(begin) {
    if (m_heard) {
        m_heard->listen();
        m_next = m_heard->next();
    }
}

Moment SoundTrack::end() const {
    return m_anchor + static_cast<Moment>(m_frames * static_cast<uint64_t>(Second) / m_rate);
}

void SoundTrack::fetch() {
    if (!m_heard) {
        return;
    }
    m_heard->listen();
    const Moment now = film::now();
    film::HeardSound sound;
    while (m_heard->read(m_next, sound)) {
        const bool sane = sound.rate >= LowestRate && sound.rate <= HighestRate && sound.moment > now - Far &&
                          sound.moment < now + Far;
        if (sane) {
            m_waiting.push_back(std::move(sound));
        }
    }
}

void SoundTrack::pass(Moment until) {
    fetch();
    while (!m_waiting.empty() && m_waiting.front().moment < until) {
        film::HeardSound sound = std::move(m_waiting.front());
        m_waiting.pop_front();
        give(std::move(sound));
    }
    fill(until);
}

void SoundTrack::give(film::HeardSound sound) {
    const Moment gap = sound.moment - end();
    size_t cut = 0;
    if (gap > Tolerance) {
        fill(sound.moment);
        m_anchor = sound.moment;
        m_frames = 0;
    } else if (gap < -Tolerance) {
        cut = std::min(static_cast<size_t>(-gap) * sound.rate / Second * Channels, sound.samples.size());
    }
    if (sound.rate != m_rate) {
        m_anchor = end();
        m_frames = 0;
    }
    add(sound.rate, std::span(sound.samples).subspan(cut));
}

void SoundTrack::fill(Moment until) {
    static const std::vector<int16_t> silence(static_cast<size_t>(HighestRate) * Channels);
    while (end() < until) {
        const Moment length = std::min(until - end(), LongestSilence);
        const size_t frames = static_cast<size_t>(length) * m_rate / Second;
        if (frames == 0) {
            return;
        }
        add(m_rate, std::span(silence).first(frames * Channels));
    }
}

void SoundTrack::add(uint32_t rate, std::span<const int16_t> samples) {
    if (samples.empty()) {
        return;
    }
    const Moment time = end() - m_begin;
    m_rate = rate;
    m_frames += samples.size() / Channels;
    m_add(rate, samples, std::max<Moment>(time, 0));
}

} // namespace zm::filmer
