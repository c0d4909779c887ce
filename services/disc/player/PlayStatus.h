#pragma once

#include "services/disc/engine/Engine.h"
#include "services/disc/model/DiscState.h"
#include "services/disc/player/ScanSpeed.h"

namespace zm::disc::player {

/**
 * The application takes the number and texts of a track only on its play page, which it opens some time after it has
 * been told the type and the state: a track is told once more after this time.
 */
inline constexpr engine::Milliseconds PageTime{300};

/** What the head unit is told of a disc that plays, whatever its kind: state, speed, time, and what is refused. */
class PlayStatus {
public:
    explicit PlayStatus(model::DiscState& state) : m_state(state) {}

    model::PlayState state() const { return m_playState; }
    bool playing() const { return m_playState == model::PlayState::Playing; }
    bool paused() const { return m_playState == model::PlayState::Paused; }
    bool scanning() const { return m_scan.active(); }
    /** Something plays, runs fast or stands. */
    bool running() const { return playing() || paused() || scanning(); }

    void publish(model::PlayState state);
    /** What was started that way is there. */
    void publishStarted(engine::StartMode mode);
    /** The next speed in that direction; its factor is the engine's. */
    int pressScan(ScanDirection direction);
    void publishScan();
    void leaveScan();
    /** A length of 0 is not known. */
    void publishTime(engine::Milliseconds position, engine::Milliseconds length);
    /** Tells the user that this is not possible. */
    void refuse();

private:
    model::DiscState& m_state;
    model::PlayState m_playState = model::PlayState::Loading;
    ScanSpeed m_scan;
};

} // namespace zm::disc::player
