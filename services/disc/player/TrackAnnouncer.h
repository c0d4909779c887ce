#pragma once

#include "base/EventLoop.h"
#include "services/disc/model/DiscState.h"
#include "services/disc/player/FileQueue.h"
#include "services/disc/player/LateTexts.h"

#include <functional>

namespace zm::disc::player {

/** Tells the head unit which item of a queue plays: type of the disc, number, texts. */
class TrackAnnouncer {
public:
    /** The kind of the queue's item has been told already. */
    TrackAnnouncer(EventLoop& loop, model::DiscState& state, const FileQueue& queue)
        : m_loop(loop), m_state(state), m_queue(queue), m_announced(queue.kind()), m_texts(loop, state) {}

    /** Is called with each item that is announced, also when it is the one before. */
    std::function<void(model::MediaKind kind, const model::Item& item)> onItem = [](auto, const auto&) {};

    /** The current item begins. */
    void begin();
    void track();
    /** The application may have come to its play page only now. */
    void again();

private:
    void type();
    void texts();

    EventLoop& m_loop;
    model::DiscState& m_state;
    const FileQueue& m_queue;
    model::MediaKind m_announced; ///< kind of the "mediatype" published last
    LateTexts m_texts;
    SourceHandle m_again; ///< runs until a track is announced once more
};

} // namespace zm::disc::player
