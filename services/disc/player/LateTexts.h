#pragma once

#include "base/EventLoop.h"
#include "services/disc/model/DiscState.h"

#include <cstddef>

namespace zm::disc::player {

/**
 * Publishes a song's texts with its number and again behind it. The application passes a song's title on when it is
 * told the texts, but takes the title up when it gets to the number, which may be later: with the first texts it
 * may still pass on the title of the song before.
 */
class LateTexts {
public:
    LateTexts(EventLoop& loop, model::DiscState& state);
    /** Publishes `texts` at once and several times later; those that were to come again are dropped. */
    void publish(const model::TrackTexts& texts);
    /** Publishes `texts` at once and only once. */
    void publishNow(const model::TrackTexts& texts);

private:
    void wait();

    EventLoop& m_loop;
    model::DiscState& m_state;
    model::TrackTexts m_texts;
    size_t m_step = 0;
    SourceHandle m_timer;
};

} // namespace zm::disc::player
