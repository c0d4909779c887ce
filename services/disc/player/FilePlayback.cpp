#include "services/disc/player/FilePlayback.h"

#include "services/disc/log/Log.h"
#include "services/disc/text/Charset.h"

#include <algorithm>
#include <utility>

namespace zm::disc::player {

namespace {

// Music that follows is prepared this long before the end: enough for a drive that has to jump to it.
constexpr engine::Milliseconds PrepareTime{5000};

// How long each photo of a slide show stands.
constexpr engine::Milliseconds SlideTime{5000};

// On a voice request the application first opens the list of music. Were its rows still on their way when music
// plays and the song is found, the list would come up over the song's page.
constexpr engine::Milliseconds ListTime{500};

// An item that has played this long counts as playable, whatever happens later.
constexpr engine::Milliseconds PlayableAfter{1000};

} // namespace

FilePlayback::FilePlayback(EventLoop& loop, model::DiscState& state, model::PlayModes& modes,
                           engine::Engine& engine, std::shared_ptr<medium::Medium> medium,
                           std::shared_ptr<const model::Contents> contents, DiscResume& resume,
                           std::function<void()> unplayable)
    : m_loop(loop), m_state(state), m_modes(modes), m_engine(engine), m_medium(std::move(medium)),
      m_resume(resume), m_unplayable(std::move(unplayable)),
      m_queue(std::move(contents), resume.item(), modes),
      m_streams(state, engine, m_queue.contents().trackType == model::MediaType::Vcd), m_status(state),
      m_announcer(loop, state, m_queue), m_position(resume.position()), m_skip(loop, state) {}

FilePlayback::~FilePlayback() {
    m_engine.stop();
    m_resume.flush();
}

// ---- source

void FilePlayback::sourceOn() {
    m_state.repeatTypeAndState();
    m_announcer.again();
    if (!std::exchange(m_source, true) && m_status.state() != model::PlayState::Error) {
        begin(m_position, m_mode);
    }
}

void FilePlayback::sourceOff() {
    if (std::exchange(m_source, false)) {
        halt(model::PlayState::Stopped);
    }
}

void FilePlayback::playMusic() {
    if (m_source && m_queue.kind() != model::MediaKind::Music &&
        !m_queue.contents().of(model::MediaKind::Music).empty()) {
        m_toMusic = afterDelay(m_loop, ListTime, [this] {
            m_queue.choose(model::MediaKind::Music);
            begin();
        });
    }
}

// ---- what plays

void FilePlayback::begin(engine::Milliseconds position, engine::StartMode mode) {
    enter(position, mode);
    m_engine.start(playable(m_queue.place().index), *this, position, mode);
}

engine::Playable FilePlayback::playable(size_t index) const {
    const model::Item& item = m_queue.itemAt(index);
    return {m_medium, m_queue.contents().pathOf(item), m_queue.kind(),
            std::chrono::seconds(item.tags.seconds)};
}

// Publishes the current item, which begins.
void FilePlayback::enter(engine::Milliseconds position, engine::StartMode mode) {
    m_queue.forgetPrepared();
    m_skip.cancel();
    m_passage.clear();
    m_slide.reset();
    m_toMusic.reset();
    m_view = {};
    m_streams.forget();
    m_status.leaveScan();
    m_source = true;
    m_mode = mode;
    m_position = position;
    m_length = std::chrono::seconds(m_queue.item().tags.seconds);
    m_announcer.begin();
    publishTime();
}

void FilePlayback::advance() {
    if (m_queue.advance()) {
        begin();
        return;
    }
    m_position = engine::Milliseconds{0};
    halt(model::PlayState::Stopped);
    m_announcer.track();
    publishTime();
    if (m_queue.kind() == model::MediaKind::Video && m_queue.contents().hasFolders()) {
        m_state.videoMode(model::VideoMode::BackToList);
    }
}

void FilePlayback::halt(model::PlayState state) {
    m_skip.cancel();
    m_slide.reset();
    m_toMusic.reset();
    m_status.leaveScan();
    m_streams.forget();
    m_queue.forgetPrepared();
    m_engine.stop();
    publishState(state);
}

void FilePlayback::publishState(model::PlayState state) {
    m_status.publish(state);
    m_resume.flush();
}

void FilePlayback::publishTime() {
    m_status.publishTime(m_position, m_length);
    noteResume();
}

void FilePlayback::noteResume() {
    m_resume.moved(m_queue.place(), m_position, m_modes);
}

// ---- reports of the engine

void FilePlayback::engineStreams(const engine::Streams& streams) {
    m_streams.begin(streams);
}

void FilePlayback::engineStarted(engine::Milliseconds length) {
    m_length = length;
    publishTime();
    m_status.publishStarted(m_mode);
    m_resume.flush();
    m_announcer.again();
    showSlide();
}

void FilePlayback::showSlide() {
    if (m_queue.kind() == model::MediaKind::Photo && m_mode == engine::StartMode::Playing) {
        m_queue.itemPlayed();
        m_slide = afterDelay(m_loop, SlideTime, [this] { advance(); });
    }
}

void FilePlayback::engineMoved(engine::Milliseconds position, engine::Milliseconds length) {
    m_position = position;
    m_length = length;
    if (position >= PlayableAfter) {
        m_queue.itemPlayed();
    }
    publishTime();
    if (const auto back = m_passage.jumpFrom(position); back && !m_status.scanning()) {
        m_queue.forgetPrepared();
        m_engine.seek(*back);
    }
    prepareNext();
}

void FilePlayback::prepareNext() {
    const bool nearEnd = m_length > engine::Milliseconds{0} && m_length - m_position <= PrepareTime;
    if (m_queue.isPrepared() || !nearEnd || m_queue.kind() != model::MediaKind::Music ||
        !m_status.playing() || m_passage.isOn()) {
        return;
    }
    if (const auto next = m_queue.prepare()) {
        m_engine.follow(playable(*next));
    }
}

void FilePlayback::forgetNext() {
    if (m_queue.forgetPrepared()) {
        m_engine.followNothing();
    }
}

void FilePlayback::engineFollowed(engine::Milliseconds length) {
    m_queue.itemPlayed();
    m_queue.follow();
    enter(engine::Milliseconds{0}, m_mode);
    engineStarted(length);
}

void FilePlayback::engineEnded() {
    m_queue.itemPlayed();
    advance();
}

void FilePlayback::engineScanned(engine::ScanEdge edge) {
    if (edge == engine::ScanEdge::End) {
        advance();
        return;
    }
    begin();
}

void FilePlayback::engineFailed(const std::string& reason) {
    const auto& contents = m_queue.contents();
    logWarning("%s: %s\n", text::cleanText(contents.pathOf(m_queue.item())).c_str(), reason.c_str());
    if (m_queue.kind() != model::MediaKind::Music) {
        m_state.tip(model::Tip::NotAvailable);
    }
    m_queue.itemFailed();
    using enum ReadErrorSkip::Counting;
    m_skip.begin(m_queue.trackInfo(), contents.hasFolders() ? InFolder : OnDisc,
                 [this] { skipUnreadable(); });
}

void FilePlayback::skipUnreadable() {
    if (m_queue.roundFailed()) {
        if (m_queue.leaveKind()) {
            begin();
        } else {
            halt(model::PlayState::Error);
            m_unplayable();
        }
    } else if (m_modes.repeat == static_cast<int>(Repeat::Off)) {
        advance();
    } else {
        // With "repeat one" the same item would only fail again.
        m_queue.next();
        begin();
    }
}

// ---- what the user wants

void FilePlayback::play() {
    m_mode = engine::StartMode::Playing;
    if (m_status.paused() || m_status.scanning()) {
        resume();
        showSlide();
    } else {
        begin(m_position);
    }
}

void FilePlayback::resume() {
    m_status.leaveScan();
    m_engine.resume();
    publishState(model::PlayState::Playing);
}

void FilePlayback::pause() {
    m_status.leaveScan();
    m_slide.reset();
    m_mode = engine::StartMode::Paused;
    m_engine.pause();
    publishState(model::PlayState::Paused);
}

void FilePlayback::stop() {
    m_position = engine::Milliseconds{0};
    halt(model::PlayState::Stopped);
    publishTime();
}

void FilePlayback::scan(ScanDirection direction) {
    const int factor = m_status.pressScan(direction);
    m_queue.forgetPrepared();
    m_engine.scan(factor);
    m_status.publishScan();
    m_resume.flush();
}

void FilePlayback::seek(engine::Milliseconds position) {
    const engine::Milliseconds wanted = std::max(position, engine::Milliseconds{0});
    m_position = m_length > engine::Milliseconds{0} ? std::min(wanted, m_length) : wanted;
    m_queue.forgetPrepared();
    m_engine.seek(m_position);
    if (m_status.scanning()) {
        resume();
    }
    publishTime();
}

PassageRepeat::Change FilePlayback::pressPassage() {
    const auto change = m_passage.press(m_position);
    if (change == PassageRepeat::Change::On) {
        forgetNext();
    }
    return change;
}

void FilePlayback::changeView(void (engine::PictureView::*change)()) {
    (m_view.*change)();
    m_engine.view(m_view);
    if (m_slide.active()) {
        showSlide(); // the user wants to look at this one
    }
}

void FilePlayback::modesChanged() {
    m_queue.setModes(m_modes);
    forgetNext();
    m_state.modes(m_modes);
    noteResume();
}

} // namespace zm::disc::player
