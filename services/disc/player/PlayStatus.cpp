#include "services/disc/player/PlayStatus.h"

#include <algorithm>

namespace zm::disc::player {

void PlayStatus::publish(model::PlayState state) {
    m_playState = state;
    m_state.playState(state);
}

void PlayStatus::publishStarted(engine::StartMode mode) {
    publish(mode == engine::StartMode::Playing ? model::PlayState::Playing : model::PlayState::Paused);
}

int PlayStatus::pressScan(ScanDirection direction) {
    m_scan.press(direction);
    return m_scan.factor();
}

void PlayStatus::publishScan() {
    const bool forward = m_scan.direction() == ScanDirection::Forward;
    m_state.playSpeed(m_scan.factor());
    publish(forward ? model::PlayState::Forward : model::PlayState::Backward);
    m_state.tip(forward ? model::Tip::ForwardX2 : model::Tip::BackwardX2, static_cast<int>(m_scan.step()));
}

void PlayStatus::leaveScan() {
    m_scan.end();
    m_state.playSpeed(1);
}

void PlayStatus::publishTime(engine::Milliseconds position, engine::Milliseconds length) {
    const int whole = engine::wholeSeconds(length);
    const int elapsed = engine::wholeSeconds(position);
    m_state.time({whole > 0 ? std::min(elapsed, whole) : elapsed, whole, whole});
}

void PlayStatus::refuse() {
    m_state.keyInvalid();
    m_state.tip(model::Tip::NotAvailable);
}

} // namespace zm::disc::player
