#include "services/disc/player/TrackAnnouncer.h"

#include "services/disc/player/PlayStatus.h"

namespace zm::disc::player {

void TrackAnnouncer::begin() {
    if (m_announced != m_queue.kind()) {
        type();
    }
    const bool music = m_queue.kind() == model::MediaKind::Music;
    m_state.videoMode(music ? model::VideoMode::NoPicture : model::VideoMode::Picture);
    track();
}

void TrackAnnouncer::type() {
    m_state.mixedSwitching(true);
    m_state.mediaType(m_queue.contents().mediaType(m_queue.kind()));
    m_announced = m_queue.kind();
    m_state.mixedSwitching(false);
}

void TrackAnnouncer::track() {
    m_state.track(m_queue.trackInfo());
    texts();
    onItem(m_queue.kind(), m_queue.item());
}

void TrackAnnouncer::texts() {
    const auto& item = m_queue.item();
    const model::TrackTexts texts{item.name, item.tags.artist, item.tags.album};
    if (m_queue.kind() == model::MediaKind::Music) {
        m_texts.publish(texts);
    } else {
        m_texts.publishNow(texts);
    }
}

void TrackAnnouncer::again() {
    texts();
    if (!m_queue.contents().hasFolders()) {
        m_again = afterDelay(m_loop, PageTime, [this] { track(); });
    }
}

} // namespace zm::disc::player
