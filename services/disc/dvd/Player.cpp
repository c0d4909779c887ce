#include "services/disc/dvd/Player.h"

#include "services/disc/dvd/RepeatModes.h"
#include "services/disc/medium/FaultGate.h"

#include <utility>

namespace zm::disc::dvd {

using model::PlayState;
using zm::dvd::Operation;

Player::Player(model::DiscState& state, model::PlayModes& modes, std::unique_ptr<Engine> engine,
               DvdResume& resume, std::string path, Playback::Failed failed)
    : m_state(state), m_modes(modes),
      m_playback(state, modes, std::move(engine), resume, std::move(path), std::move(failed)) {}

void Player::sourceOn() {
    m_state.repeatTypeAndState();
    if (std::exchange(m_source, true) || m_playback.is(PlayState::Error)) {
        return;
    }
    m_state.videoMode(model::VideoMode::Picture);
    m_playback.on();
}

void Player::sourceOff() {
    if (std::exchange(m_source, false) && !m_playback.is(PlayState::Error)) {
        m_playback.halt();
    }
}

void Player::next() {
    const auto place = film().next();
    if (!m_playback.running() || !place) {
        refuse();
        return;
    }
    m_playback.go(Operation::Chapter, place->title, place->chapter);
    m_state.tip(model::Tip::Next);
}

void Player::previous() {
    const auto place = film().previous();
    if (!m_playback.running() || !place) {
        refuse();
        return;
    }
    m_playback.go(Operation::Chapter, place->title, place->chapter);
    m_state.tip(model::Tip::Previous);
}

void Player::scan(player::ScanDirection direction) {
    m_playback.running() && film().mayScan(direction) ? m_playback.scan(direction) : refuse();
}

void Player::pause() {
    if (!m_playback.running() || m_playback.is(PlayState::Paused)) {
        return;
    }
    film().allows(zm::dvd::NoPause) ? m_playback.pause() : refuse();
}

void Player::stop() {
    if (m_playback.is(PlayState::Loading) || m_playback.is(PlayState::Error)) {
        return;
    }
    film().allows(zm::dvd::NoStop) ? m_playback.stop() : refuse();
}

void Player::repeat(int mode) {
    const auto& wanted = repeatMode(mode == 0 ? repeatMode(m_modes.repeat).next : mode);
    if (mode != 0 && wanted.mode != mode) {
        refuse();
        return;
    }
    m_modes.repeat = wanted.mode;
    m_state.modes(m_modes);
    m_playback.modesChanged();
    m_state.tip(wanted.tip);
}

void Player::repeatPassage() {
    using Change = player::PassageRepeat::Change;
    if (!playing() || !film().mayRepeatPassage()) {
        refuse();
        return;
    }
    const Change change = m_playback.repeatPassage();
    if (change != Change::Begun) {
        m_state.tip(change == Change::On ? model::Tip::RepeatAbOn : model::Tip::RepeatAbOff);
    }
}

void Player::audioChannel() {
    const auto sound = film().nextSound();
    if (!m_playback.running() || !sound) {
        refuse();
        return;
    }
    m_playback.post([logical = *sound](Session& session) { session.streams(logical, -1); });
}

void Player::subtitle() {
    const auto subtitle = film().nextSubtitle();
    if (!m_playback.running() || !subtitle) {
        refuse();
        return;
    }
    m_playback.post([logical = *subtitle](Session& session) { session.streams(-1, logical); });
}

void Player::angle() {
    const auto angle = film().nextAngle();
    if (!m_playback.running() || !angle) {
        refuse();
        return;
    }
    m_playback.post([wanted = *angle](Session& session) { session.angle(wanted); });
}

void Player::zoom() {
    if (!m_playback.running()) {
        refuse();
        return;
    }
    m_view.nextZoom();
    m_playback.post([view = m_view](Session& session) { session.view(view); });
}

void Player::menu() {
    m_playback.running() && film().mayCallMenu() ? m_playback.callMenu(Operation::RootMenu) : refuse();
}

void Player::titleMenu() {
    m_playback.running() && film().allows(zm::dvd::NoTitleMenu) ? m_playback.callMenu(Operation::TitleMenu)
                                                                : refuse();
}

void Player::playChapter(int chapter) {
    m_playback.running() && film().mayPlayChapter(chapter)
        ? m_playback.go(Operation::Chapter, film().scene().title, chapter)
        : refuse();
}

void Player::playTitle(int title) {
    !m_playback.is(PlayState::Error) && film().mayPlayTitle(title) ? m_playback.go(Operation::Title, title)
                                                                   : refuse();
}

void Player::seek(std::chrono::seconds position) {
    m_playback.running() && film().maySeek(position) ? m_playback.seek(position) : refuse();
}

void Player::touch(int x, int y) {
    if (playing() || m_playback.is(PlayState::Paused)) {
        m_playback.post([=](Session& session) { session.press(x, y); });
    }
}

void Player::driveFault(medium::DriveFault fault) {
    m_playback.post([kind = static_cast<int>(fault)](Session& session) { session.fault(kind); });
}

} // namespace zm::disc::dvd
