#include "services/disc/dvd/Playback.h"

#include "services/disc/dvd/RepeatModes.h"

#include <utility>

namespace zm::disc::dvd {

Playback::Playback(model::DiscState& state, model::PlayModes& modes, std::unique_ptr<Engine> engine,
                   DvdResume& resume, std::string path, Failed failed)
    : m_state(state), m_modes(modes), m_engine(std::move(engine)), m_resume(resume), m_path(std::move(path)),
      m_failed(std::move(failed)), m_announcer(state) {}

void Playback::refuse() {
    m_state.keyInvalid();
    m_state.tip(model::Tip::NotAvailable);
}

bool Playback::running() const {
    return is(model::PlayState::Playing) || is(model::PlayState::Paused) || m_scan.active();
}

// ---- play, pause, stop

void Playback::on() {
    if (!std::exchange(m_started, true)) {
        m_engine->start(m_path, *this, m_mode, m_resume.place());
        followModes();
        return;
    }
    if (std::exchange(m_fromBeginning, false)) {
        jump(zm::dvd::Operation::Restart);
    }
    m_engine->post([mode = m_mode](Session& session) {
        session.cover(false);
        mode == engine::StartMode::Playing ? session.play() : session.pause();
    });
    publishMode();
}

void Playback::halt() {
    leaveScan();
    m_engine->post([](Session& session) {
        session.pause();
        session.cover(true);
    });
    publish(model::PlayState::Stopped);
    m_resume.flush();
}

void Playback::play() {
    if (is(model::PlayState::Playing) || is(model::PlayState::Loading) || is(model::PlayState::Error)) {
        return;
    }
    leaveScan();
    m_mode = engine::StartMode::Playing;
    if (std::exchange(m_fromBeginning, false)) {
        jump(zm::dvd::Operation::Restart);
    }
    m_engine->post([](Session& session) {
        session.cover(false);
        session.play();
    });
    publish(model::PlayState::Playing);
    m_state.tip(model::Tip::Play);
}

void Playback::pause() {
    leaveScan();
    m_mode = engine::StartMode::Paused;
    m_engine->post([](Session& session) { session.pause(); });
    publish(model::PlayState::Paused);
    m_resume.flush();
    m_state.tip(model::Tip::Pause);
}

void Playback::stop() {
    m_fromBeginning = is(model::PlayState::Stopped);
    if (m_fromBeginning) {
        m_film.show({});
        m_resume.beginsAnew(m_modes);
        m_announcer.track(m_film);
        m_announcer.time(m_film);
    }
    m_mode = engine::StartMode::Playing;
    halt();
    m_state.tip(model::Tip::Stop);
}

// ---- scans, jumps, repeats

void Playback::scan(player::ScanDirection direction) {
    const bool forward = direction == player::ScanDirection::Forward;
    m_scan.press(direction);
    m_engine->post([speed = m_scan.factor()](Session& session) { session.scan(speed); });
    m_state.playSpeed(m_scan.factor());
    publish(forward ? model::PlayState::Forward : model::PlayState::Backward);
    m_state.tip(forward ? model::Tip::ForwardX2 : model::Tip::BackwardX2, static_cast<int>(m_scan.step()));
}

void Playback::leaveScan() {
    m_scan.end();
    m_state.playSpeed(1);
}

void Playback::jump(zm::dvd::Operation operation, int first, int second) {
    m_passage.clear();
    m_engine->post([=](Session& session) { session.jump(operation, first, second); });
}

void Playback::go(zm::dvd::Operation operation, int first, int second) {
    leaveScan();
    m_fromBeginning = false;
    jump(operation, first, second);
    play();
}

void Playback::callMenu(zm::dvd::Operation operation) {
    if (m_film.inTitle()) {
        m_resume.menuCalled();
    }
    go(operation);
}

void Playback::seek(std::chrono::seconds position) {
    const bool scanning = m_scan.active();
    leaveScan();
    jump(zm::dvd::Operation::Time, static_cast<int>(engine::Milliseconds(position).count()));
    if (scanning) {
        play();
    }
}

player::PassageRepeat::Change Playback::repeatPassage() {
    return m_passage.press(m_film.scene().position);
}

void Playback::modesChanged() {
    remember();
    followModes();
}

void Playback::followModes() {
    m_engine->post(
        [repeat = repeatMode(m_modes.repeat).repeat](Session& session) { session.repeat(repeat); });
}

void Playback::remember() {
    if (!m_fromBeginning) {
        m_resume.shows(m_film.scene(), m_modes);
    }
}

void Playback::publish(model::PlayState state) {
    m_playState = state;
    m_state.playState(state);
}

void Playback::publishMode() {
    publish(m_mode == engine::StartMode::Playing ? model::PlayState::Playing : model::PlayState::Paused);
}

// ---- reports of the engine

void Playback::dvdOpened(const Titles& titles) {
    m_film.open(titles);
    m_announcer.track(m_film);
}

void Playback::dvdArrived() {
    if (is(model::PlayState::Loading)) {
        publishMode();
    }
}

void Playback::dvdShows(const Scene& scene) {
    m_announcer.scene(m_film.show(scene), m_film);
    remember();
    if (const auto back = m_passage.jumpFrom(scene.position); back && !m_scan.active() && m_film.inTitle()) {
        const int begin = static_cast<int>(back->count());
        m_engine->post([begin](Session& session) { session.jump(zm::dvd::Operation::Time, begin); });
    }
}

void Playback::dvdScanned(engine::ScanEdge) {
    leaveScan();
    m_mode = engine::StartMode::Playing;
    m_engine->post([](Session& session) { session.play(); });
    publish(model::PlayState::Playing);
}

void Playback::dvdGaveUpChapter() {
    m_state.error(model::DeviceError::Read);
    m_state.error(model::DeviceError::None);
}

void Playback::dvdEnded() {
    jump(zm::dvd::Operation::Restart);
    if (m_modes.repeat == RepeatAllMode) {
        return;
    }
    m_mode = engine::StartMode::Playing;
    m_resume.beginsAnew(m_modes);
    m_fromBeginning = true;
    halt();
    m_state.tip(model::Tip::Stop);
}

void Playback::dvdFailed(const std::string& reason) {
    leaveScan();
    m_state.rootMenu(false);
    m_playState = model::PlayState::Error;
    m_failed(reason);
}

} // namespace zm::disc::dvd
