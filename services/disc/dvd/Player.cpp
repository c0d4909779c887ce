#include "services/disc/dvd/Player.h"

#include "services/disc/log/Log.h"
#include "services/disc/medium/FaultGate.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zm::disc::dvd {

namespace {

// "cursubtitlenum" of the first subtitle, less one; smaller numbers stand for no subtitle.
constexpr int SubtitleOffset = 80;

// How repeat modes of files are understood; a folder is a title, one file a chapter.
struct RepeatRow {
    int mode;
    int next;
    model::Tip tip;
    Repeat repeat;
};
constexpr RepeatRow repeatRows[] = {
    {1, 2, model::Tip::RepeatOff, Repeat::Nothing},
    {2, 8, model::Tip::RepeatAll, Repeat::Nothing},
    {8, 4, model::Tip::RepeatOne, Repeat::Chapter},
    {4, 1, model::Tip::RepeatFolder, Repeat::Title},
};

const RepeatRow& repeatRow(int mode) {
    const auto* row = std::find_if(std::begin(repeatRows), std::end(repeatRows),
                                   [=](const RepeatRow& each) { return each.mode == mode; });
    return row == std::end(repeatRows) ? repeatRows[0] : *row;
}

constexpr int RepeatAllMode = 2;

std::string languageText(uint32_t code) {
    const auto letter = [](uint32_t value) { return std::string(1, static_cast<char>(value & 0x7f)); };
    const std::string text = code ? letter(code >> 8) + letter(code) : "";
    return std::all_of(text.begin(), text.end(), [](char each) { return each >= 'a' && each <= 'z'; })
               ? text
               : std::string();
}

std::string soundText(zm::dvd::SoundKind kind) {
    switch (kind) {
    case zm::dvd::SoundKind::Ac3:
        return "AC-3";
    case zm::dvd::SoundKind::Mpeg:
        return "MPEG";
    case zm::dvd::SoundKind::Lpcm:
        return "LPCM";
    case zm::dvd::SoundKind::Dts:
        return "DTS";
    default:
        return "";
    }
}

// The sixth channel is the one for effects.
std::string channelText(int channels) {
    return channels <= 0   ? ""
           : channels >= 6 ? std::to_string(channels - 1) + ".1"
                           : std::to_string(channels) + ".0";
}

// Place of the stream with the logical number `logical`; -1 if there is none.
template <class Streams>
int placeOf(const Streams& streams, int logical) {
    const auto found = std::find_if(streams.begin(), streams.end(),
                                    [=](const auto& each) { return each.logical == logical; });
    return found == streams.end() ? -1 : static_cast<int>(found - streams.begin());
}

} // namespace

Player::Player(EventLoop& loop, model::DiscState& state, model::PlayModes& modes,
               std::unique_ptr<Engine> engine, DvdResume& resume, std::string path, Failed failed)
    : m_loop(loop), m_state(state), m_modes(modes), m_engine(std::move(engine)), m_resume(resume),
      m_path(std::move(path)), m_failed(std::move(failed)) {}

void Player::refuse() {
    m_state.keyInvalid();
    m_state.tip(model::Tip::NotAvailable);
}

// ---- source

void Player::sourceOn() {
    m_state.repeatTypeAndState();
    if (std::exchange(m_source, true) || m_playState == model::PlayState::Error) {
        return;
    }
    m_state.videoMode(model::VideoMode::Picture);
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
    publishState(m_mode == engine::StartMode::Playing ? model::PlayState::Playing : model::PlayState::Paused);
}

void Player::sourceOff() {
    if (std::exchange(m_source, false) && m_playState != model::PlayState::Error) {
        halt();
    }
}

// The picture goes, the place stays.
void Player::halt() {
    leaveScan();
    m_engine->post([](Session& session) {
        session.pause();
        session.cover(true);
    });
    publishState(model::PlayState::Stopped);
    m_resume.flush();
}

// ---- what is published

void Player::publishState(model::PlayState state) {
    m_playState = state;
    m_state.playState(state);
}

int Player::chaptersOf(int title) const {
    const auto index = static_cast<size_t>(title) - 1;
    return title > 0 && index < m_titles.titles.size() ? m_titles.titles[index].chapters : 0;
}

void Player::publishTrack() {
    model::TrackInfo info;
    info.title = m_scene.title;
    info.titles = static_cast<int>(m_titles.titles.size());
    info.chapter = m_scene.chapter;
    info.chapters = chaptersOf(m_scene.title);
    m_state.track(info);
}

void Player::publishTime() {
    const int length = engine::wholeSeconds(m_scene.length);
    const int elapsed = engine::wholeSeconds(m_scene.position);
    m_state.time({length > 0 ? std::min(elapsed, length) : elapsed, length, length});
}

void Player::publishDetail() {
    model::DvdDetail detail;
    if (m_scene.streams && inTitle()) {
        const auto& streams = *m_scene.streams;
        detail.audios = static_cast<int>(streams.sounds.size());
        detail.subtitles = static_cast<int>(streams.subtitles.size());
        if (const int place = placeOf(streams.sounds, m_scene.sound); place >= 0) {
            const auto& sound = streams.sounds[static_cast<size_t>(place)];
            detail.audio = place + 1;
            detail.audioType = soundText(sound.kind);
            detail.audioChannel = channelText(sound.channels);
            detail.audioLanguage = languageText(sound.language);
        }
        if (const int place = placeOf(streams.subtitles, m_scene.subtitle); place >= 0) {
            detail.subtitle = SubtitleOffset + place + 1;
            detail.subtitleLanguage = languageText(streams.subtitles[static_cast<size_t>(place)].language);
        }
    }
    detail.angle = inTitle() ? m_scene.angle : 0;
    detail.angles = inTitle() ? m_scene.angles : 0;
    m_state.dvd(detail);
}

// ---- reports of the engine

void Player::dvdOpened(const Titles& titles) {
    m_titles = titles;
    publishTrack();
}

void Player::dvdArrived() {
    if (m_playState == model::PlayState::Loading) {
        publishState(m_mode == engine::StartMode::Playing ? model::PlayState::Playing
                                                          : model::PlayState::Paused);
    }
}

void Player::dvdShows(const Scene& scene) {
    const Scene before = std::exchange(m_scene, scene);
    m_state.rootMenu(scene.buttons);
    if (before.title != scene.title || before.chapter != scene.chapter) {
        publishTrack();
    }
    if (before.sound != scene.sound || before.subtitle != scene.subtitle || before.angle != scene.angle ||
        before.angles != scene.angles || before.streams != scene.streams || before.title != scene.title) {
        publishDetail();
    }
    publishTime();
    remember();
    if (const auto back = m_passage.jumpFrom(scene.position); back && !m_scan.active() && inTitle()) {
        const int begin = static_cast<int>(back->count());
        m_engine->post([begin](Session& session) { session.jump(zm::dvd::Operation::Time, begin); });
    }
}

// A menu that the user has called is a look aside; one to which the disc itself has come is its end.
void Player::remember() {
    if (m_fromBeginning) {
        return;
    }
    if (inTitle()) {
        m_menuCalled = false;
        m_resume.moved(m_scene, m_modes);
    } else if (!m_menuCalled) {
        m_resume.beginsAnew(m_modes);
    }
}

void Player::dvdRefused() {
    refuse();
}

void Player::dvdPressed() {
    play();
}

void Player::dvdScanned(engine::ScanEdge) {
    leaveScan();
    m_mode = engine::StartMode::Playing;
    m_engine->post([](Session& session) { session.play(); });
    publishState(model::PlayState::Playing);
}

void Player::dvdGaveUpChapter() {
    m_state.error(model::DeviceError::Read);
    m_state.error(model::DeviceError::None);
}

void Player::dvdEnded() {
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

void Player::dvdFailed(const std::string& reason) {
    leaveScan();
    m_state.rootMenu(false);
    m_playState = model::PlayState::Error;
    m_failed(reason);
}

// ---- commands

bool Player::running() const {
    return m_playState == model::PlayState::Playing || m_playState == model::PlayState::Paused ||
           m_scan.active();
}

void Player::jump(zm::dvd::Operation operation, int first, int second) {
    m_passage.clear();
    m_engine->post([=](Session& session) { session.jump(operation, first, second); });
}

void Player::next() {
    const int title = m_scene.title;
    const bool last = m_scene.chapter >= chaptersOf(title);
    if (!running() || !inTitle() || !allowed(zm::dvd::NoNext) ||
        (last && (!allowed(zm::dvd::NoTitlePlay) || title >= static_cast<int>(m_titles.titles.size())))) {
        refuse();
        return;
    }
    leaveScan();
    jump(zm::dvd::Operation::Chapter, last ? title + 1 : title, last ? 1 : m_scene.chapter + 1);
    play();
    m_state.tip(model::Tip::Next);
}

void Player::previous() {
    if (!running() || !inTitle() || !allowed(zm::dvd::NoPrevious)) {
        refuse();
        return;
    }
    leaveScan();
    if (m_scene.chapter > 1) {
        jump(zm::dvd::Operation::Chapter, m_scene.title, m_scene.chapter - 1);
    } else {
        const int title = std::max(m_scene.title - 1, 1);
        jump(zm::dvd::Operation::Chapter, title, m_scene.title > 1 ? std::max(chaptersOf(title), 1) : 1);
    }
    play();
    m_state.tip(model::Tip::Previous);
}

void Player::scan(player::ScanDirection direction) {
    const bool forward = direction == player::ScanDirection::Forward;
    if (!running() || !inTitle() || m_scene.length == engine::Milliseconds{0} ||
        !allowed(forward ? zm::dvd::NoForward : zm::dvd::NoBackward)) {
        refuse();
        return;
    }
    m_scan.press(direction);
    m_engine->post([speed = m_scan.factor()](Session& session) { session.scan(speed); });
    m_state.playSpeed(m_scan.factor());
    publishState(forward ? model::PlayState::Forward : model::PlayState::Backward);
    m_state.tip(forward ? model::Tip::ForwardX2 : model::Tip::BackwardX2, static_cast<int>(m_scan.step()));
}

void Player::leaveScan() {
    m_scan.end();
    m_state.playSpeed(1);
}

void Player::pause() {
    if (m_playState != model::PlayState::Playing && !m_scan.active()) {
        return;
    }
    if (!allowed(zm::dvd::NoPause)) {
        refuse();
        return;
    }
    leaveScan();
    m_mode = engine::StartMode::Paused;
    m_engine->post([](Session& session) { session.pause(); });
    publishState(model::PlayState::Paused);
    m_resume.flush();
    m_state.tip(model::Tip::Pause);
}

void Player::play() {
    if (m_playState == model::PlayState::Playing || m_playState == model::PlayState::Loading ||
        m_playState == model::PlayState::Error) {
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
    publishState(model::PlayState::Playing);
    m_state.tip(model::Tip::Play);
}

void Player::stop() {
    if (m_playState == model::PlayState::Loading || m_playState == model::PlayState::Error) {
        return;
    }
    if (!allowed(zm::dvd::NoStop)) {
        refuse();
        return;
    }
    m_fromBeginning = m_playState == model::PlayState::Stopped;
    if (m_fromBeginning) {
        m_scene = {};
        m_resume.beginsAnew(m_modes);
        publishTrack();
        publishTime();
    }
    m_mode = engine::StartMode::Playing;
    halt();
    m_state.tip(model::Tip::Stop);
}

void Player::repeat(int mode) {
    const auto& row = repeatRow(mode == 0 ? repeatRow(m_modes.repeat).next : mode);
    if (mode != 0 && row.mode != mode) {
        refuse();
        return;
    }
    m_modes.repeat = row.mode;
    m_state.modes(m_modes);
    remember();
    followModes();
    m_state.tip(row.tip);
}

void Player::followModes() {
    m_engine->post([repeat = repeatRow(m_modes.repeat).repeat](Session& session) { session.repeat(repeat); });
}

void Player::repeatPassage() {
    if (m_playState != model::PlayState::Playing || !inTitle() || !allowed(zm::dvd::NoTimeSearch)) {
        refuse();
        return;
    }
    const auto change = m_passage.press(m_scene.position);
    if (change != player::PassageRepeat::Change::Begun) {
        m_state.tip(change == player::PassageRepeat::Change::On ? model::Tip::RepeatAbOn
                                                                : model::Tip::RepeatAbOff);
    }
}

void Player::audioChannel() {
    const size_t count = m_scene.streams ? m_scene.streams->sounds.size() : 0;
    if (!running() || !inTitle() || count < 2 || !allowed(zm::dvd::NoSoundChange)) {
        refuse();
        return;
    }
    const auto place = static_cast<size_t>(placeOf(m_scene.streams->sounds, m_scene.sound) + 1) % count;
    const int logical = m_scene.streams->sounds[place].logical;
    m_engine->post([logical](Session& session) { session.streams(logical, -1); });
}

void Player::subtitle() {
    const int count = m_scene.streams ? static_cast<int>(m_scene.streams->subtitles.size()) : 0;
    if (!running() || !inTitle() || count == 0 || !allowed(zm::dvd::NoSubtitleChange)) {
        refuse();
        return;
    }
    // After the last one none.
    const int place = placeOf(m_scene.streams->subtitles, m_scene.subtitle) + 1;
    const int logical =
        place < count ? m_scene.streams->subtitles[static_cast<size_t>(place)].logical : zm::dvd::NoSubtitle;
    m_engine->post([logical](Session& session) { session.streams(-1, logical); });
}

void Player::angle() {
    if (!running() || !inTitle() || m_scene.angles < 2 || !allowed(zm::dvd::NoAngleChange)) {
        refuse();
        return;
    }
    const int wanted = m_scene.angle % m_scene.angles + 1;
    m_engine->post([wanted](Session& session) { session.angle(wanted); });
}

void Player::zoom() {
    if (!running()) {
        refuse();
        return;
    }
    m_view.nextZoom();
    m_engine->post([view = m_view](Session& session) { session.view(view); });
}

void Player::menu() {
    if (!running() || !allowed(inTitle() ? zm::dvd::NoRootMenu : zm::dvd::NoResume)) {
        refuse();
        return;
    }
    leaveScan();
    m_menuCalled = m_menuCalled || inTitle();
    jump(zm::dvd::Operation::RootMenu);
    play();
}

void Player::titleMenu() {
    if (!running() || !allowed(zm::dvd::NoTitleMenu)) {
        refuse();
        return;
    }
    leaveScan();
    m_menuCalled = m_menuCalled || inTitle();
    jump(zm::dvd::Operation::TitleMenu);
    play();
}

void Player::playChapter(int chapter) {
    if (!running() || !inTitle() || chapter < 1 || chapter > chaptersOf(m_scene.title) ||
        !allowed(zm::dvd::NoChapterSearch)) {
        refuse();
        return;
    }
    leaveScan();
    jump(zm::dvd::Operation::Chapter, m_scene.title, chapter);
    play();
}

void Player::playTitle(int title) {
    if (m_playState == model::PlayState::Error || !allowed(zm::dvd::NoTitlePlay) || title < 1 ||
        title > static_cast<int>(m_titles.titles.size())) {
        refuse();
        return;
    }
    leaveScan();
    m_fromBeginning = false;
    jump(zm::dvd::Operation::Title, title);
    play();
}

void Player::seek(std::chrono::seconds position) {
    if (!running() || !inTitle() || position.count() < 0 ||
        position.count() >= engine::wholeSeconds(m_scene.length) || !allowed(zm::dvd::NoTimeSearch)) {
        refuse();
        return;
    }
    const bool scanning = m_scan.active();
    leaveScan();
    jump(zm::dvd::Operation::Time, static_cast<int>(engine::Milliseconds(position).count()));
    if (scanning) {
        play();
    }
}

void Player::touch(int x, int y) {
    if (m_playState == model::PlayState::Playing || m_playState == model::PlayState::Paused) {
        m_engine->post([=](Session& session) { session.press(x, y); });
    }
}

void Player::driveFault(medium::DriveFault fault) {
    m_engine->post([kind = static_cast<int>(fault)](Session& session) { session.fault(kind); });
}

} // namespace zm::disc::dvd
