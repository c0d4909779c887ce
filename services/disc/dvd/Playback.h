#pragma once

#include "services/disc/dvd/Announcer.h"
#include "services/disc/dvd/DvdResume.h"
#include "services/disc/dvd/Engine.h"
#include "services/disc/dvd/Film.h"
#include "services/disc/model/DiscState.h"
#include "services/disc/player/PassageRepeat.h"
#include "services/disc/player/ScanSpeed.h"

#include <functional>
#include <memory>
#include <string>

namespace zm::disc::dvd {

/**
 * A DVD as it runs: what the engine is told of play, pause, scan and jumps, and what the head unit is told of all that
 * becomes of it. Whether the disc allows something is asked of `film` before. On the service's loop.
 */
class Playback : private Listener {
public:
    /** Says why the disc cannot be played (any further). */
    using Failed = std::function<void(const std::string& reason)>;

    Playback(model::DiscState& state, model::PlayModes& modes, std::unique_ptr<Engine> engine,
             DvdResume& resume, std::string path, Failed failed);

    const Film& film() const { return m_film; }
    bool is(model::PlayState state) const { return m_playState == state; }
    /** It plays, is paused or scans. */
    bool running() const;

    /** Begins where `resume` says, later goes on as it did before the halt. */
    void on();
    /** The picture goes, the place stays. */
    void halt();
    void play();
    void pause();
    /** The second time, the disc will begin anew. */
    void stop();
    void scan(player::ScanDirection direction);
    /** Jumps, and plays. */
    void go(zm::dvd::Operation operation, int first = 0, int second = 0);
    void callMenu(zm::dvd::Operation operation);
    /** Jumps, and stays paused if it is. */
    void seek(std::chrono::seconds position);
    player::PassageRepeat::Change repeatPassage();
    void modesChanged();
    void post(std::function<void(Session&)> task) { m_engine->post(std::move(task)); }
    /** Tells the user that something is not possible. */
    void refuse();

private:
    void dvdOpened(const Titles& titles) override;
    void dvdArrived() override;
    void dvdShows(const Scene& scene) override;
    void dvdRefused() override { refuse(); }
    void dvdPressed() override { play(); }
    void dvdScanned(engine::ScanEdge edge) override;
    void dvdGaveUpChapter() override;
    void dvdEnded() override;
    void dvdFailed(const std::string& reason) override;

    void jump(zm::dvd::Operation operation, int first = 0, int second = 0);
    void leaveScan();
    void publish(model::PlayState state);
    /** Playing or paused, as it was last. */
    void publishMode();
    void followModes();
    void remember();

    model::DiscState& m_state;
    model::PlayModes& m_modes;
    std::unique_ptr<Engine> m_engine;
    DvdResume& m_resume;
    std::string m_path;
    Failed m_failed;
    bool m_started = false;
    bool m_fromBeginning = false; ///< it was stopped twice, or has come to its end
    engine::StartMode m_mode = engine::StartMode::Playing;
    model::PlayState m_playState = model::PlayState::Loading;
    Film m_film;
    Announcer m_announcer;
    player::ScanSpeed m_scan;
    player::PassageRepeat m_passage;
};

} // namespace zm::disc::dvd
