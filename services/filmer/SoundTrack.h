#pragma once

#include "services/film/SharedSound.h"

#include <deque>
#include <functional>
#include <memory>

namespace zm::filmer {

/** The sound of a film: what is heard, each at its moment, and silence between. */
class SoundTrack {
public:
    using Add = std::function<void(uint32_t rate, std::span<const int16_t> samples, film::Moment time)>;

    /** What is heard from `begin` on goes to `add`, which gets times from there on. Without `heard` all is silence. */
    SoundTrack(std::unique_ptr<film::SharedSound> heard, film::Moment begin, Add add);

    /** Adds all up to `until`, by when it has been heard and written. */
    void pass(film::Moment until);

private:
    void fetch();
    film::Moment end() const;
    void fill(film::Moment until);
    void give(film::HeardSound sound);
    void add(uint32_t rate, std::span<const int16_t> samples);

    const std::unique_ptr<film::SharedSound> m_heard;
    const film::Moment m_begin;
    const Add m_add;
    uint64_t m_next = 0;
    std::deque<film::HeardSound> m_waiting;
    // The end of what was added: so many samples behind a moment, so that no rounding adds up.
    film::Moment m_anchor;
    uint64_t m_frames = 0;
    uint32_t m_rate = 48000;
};

} // namespace zm::filmer
