#include "services/disc/player/FilePlayer.h"

#include "services/disc/log/Log.h"
#include "services/disc/text/Charset.h"

#include <algorithm>
#include <random>

namespace zm::disc::player {

namespace {

// "cursubtitlenum" of the first subtitle, less one; smaller numbers stand for no subtitle.
constexpr int SubtitleOffset = 80;

// Music that follows is prepared this long before the end: enough for a drive that has to jump to it.
constexpr engine::Milliseconds PrepareTime{5000};

// How long each photo of a slide show stands.
constexpr engine::Milliseconds SlideTime{5000};

// The application takes the number and texts of a track only on its play page, which it opens some time after
// it has been told the type and the state.
constexpr engine::Milliseconds PageTime{300};

// On a voice request the application first opens the list of music. Were its rows still on their way when music
// plays and the song is found, the list would come up over the song's page.
constexpr engine::Milliseconds ListTime{500};

// An item that has played this long counts as playable, whatever happens later.
constexpr engine::Milliseconds PlayableAfter{1000};

// "Previous" begins an item anew that has played this long.
constexpr engine::Milliseconds RestartAfter{3000};

struct RepeatRow {
    Repeat mode;
    model::Tip tip;
};
constexpr RepeatRow repeatRows[] = {{Repeat::Off, model::Tip::RepeatOff},
                                    {Repeat::All, model::Tip::RepeatAll},
                                    {Repeat::Folder, model::Tip::RepeatFolder},
                                    {Repeat::One, model::Tip::RepeatOne}};

struct ShuffleRow {
    int requested;
    Shuffle mode;
};
// 0 steps on, so that "off" needs a number of its own.
constexpr ShuffleRow shuffleRows[] = {{1, Shuffle::All}, {2, Shuffle::Folder}, {4, Shuffle::Off}};

struct ScanRow {
    ScanDirection direction;
    model::PlayState state;
    model::Tip firstTip;
};
constexpr ScanRow scanRows[] = {
    {ScanDirection::Forward, model::PlayState::Forward, model::Tip::ForwardX2},
    {ScanDirection::Backward, model::PlayState::Backward, model::Tip::BackwardX2}};

std::vector<int> foldersOf(const std::vector<model::Item>& items) {
    std::vector<int> folders;
    folders.reserve(items.size());
    std::transform(items.begin(), items.end(), std::back_inserter(folders),
                   [](const model::Item& item) { return item.folderId; });
    return folders;
}

} // namespace

FilePlayer::FilePlayer(EventLoop& loop, model::DiscState& state, model::PlayModes& modes,
                       engine::Engine& engine, std::shared_ptr<medium::Medium> medium,
                       std::shared_ptr<const model::Contents> contents, DiscResume& resume,
                       std::function<void()> unplayable)
    : m_loop(loop), m_state(state), m_modes(modes), m_engine(engine), m_medium(std::move(medium)),
      m_contents(std::move(contents)), m_resume(resume), m_unplayable(std::move(unplayable)),
      m_kind(resume.item().kind), m_browsed(m_kind), m_announced(m_kind), m_position(resume.position()),
      m_texts(loop, state), m_skip(loop, state) {
    for (const auto& row : model::kinds) {
        if (const auto& items = m_contents->of(row.kind); !items.empty()) {
            auto& made =
                m_orders[model::kindIndex(row.kind)].emplace(foldersOf(items), std::random_device{}());
            made.setModes(static_cast<Repeat>(m_modes.repeat), static_cast<Shuffle>(m_modes.shuffle));
        }
    }
    order().jumpTo(resume.item().index);
}

FilePlayer::~FilePlayer() {
    m_engine.stop();
    m_resume.flush();
}

void FilePlayer::refuse() {
    m_state.keyInvalid();
    m_state.tip(model::Tip::NotAvailable);
}

// ---- source

void FilePlayer::sourceOn() {
    m_state.repeatTypeAndState();
    announceTrackAgain();
    if (!std::exchange(m_source, true) && m_playState != model::PlayState::Error) {
        begin(m_position, m_mode);
    }
}

void FilePlayer::sourceOff() {
    if (std::exchange(m_source, false)) {
        halt(model::PlayState::Stopped);
    }
}

void FilePlayer::playMusic() {
    if (m_source && m_kind != model::MediaKind::Music && !m_contents->of(model::MediaKind::Music).empty()) {
        m_toMusic = afterDelay(m_loop, ListTime, [this] {
            choose(model::MediaKind::Music);
            begin(engine::Milliseconds{0});
        });
    }
}

// ---- what plays

void FilePlayer::choose(model::MediaKind kind) {
    m_kind = kind;
    m_browsed = kind;
}

void FilePlayer::announceType() {
    const bool switching = m_announced != m_kind;
    if (switching) {
        m_state.mixedSwitching(true);
    }
    m_state.mediaType(m_contents->mediaType(m_kind));
    m_announced = m_kind;
    if (switching) {
        m_state.mixedSwitching(false);
    }
}

void FilePlayer::announceTrack() {
    m_state.track(trackInfo());
    announceTexts();
}

void FilePlayer::announceTexts() {
    const auto& tags = item().tags;
    const model::TrackTexts texts{item().name, tags.artist, tags.album};
    if (m_kind == model::MediaKind::Music) {
        m_texts.publish(texts);
    } else {
        m_texts.publishNow(texts);
    }
}

void FilePlayer::announceTrackAgain() {
    announceTexts();
    if (!m_contents->hasFolders()) {
        m_again = afterDelay(m_loop, PageTime, [this] { announceTrack(); });
    }
}

void FilePlayer::begin(engine::Milliseconds position, engine::StartMode mode) {
    enter(position, mode);
    m_engine.start(playable(order().current()), *this, position, mode);
}

engine::Playable FilePlayer::playable(size_t index) const {
    const model::Item& item = m_contents->of(m_kind)[index];
    return {m_medium, m_contents->pathOf(item), m_kind, std::chrono::seconds(item.tags.seconds)};
}

// Publishes the current item, which begins.
void FilePlayer::enter(engine::Milliseconds position, engine::StartMode mode) {
    m_after.reset();
    m_skip.cancel();
    m_passage.clear();
    m_slide.reset();
    m_toMusic.reset();
    m_view = {};
    forgetStreams();
    leaveScan();
    m_source = true;
    m_mode = mode;
    m_position = position;
    m_length = std::chrono::seconds(item().tags.seconds);
    if (m_announced != m_kind) {
        announceType();
    }
    m_state.videoMode(m_kind == model::MediaKind::Music ? model::VideoMode::NoPicture
                                                        : model::VideoMode::Picture);
    announceTrack();
    publishTime();
}

model::TrackInfo FilePlayer::trackInfo() {
    model::TrackInfo info;
    info.inFolder = item().fileId;
    info.filesInFolder = m_contents->folder(item().folderId).counts[model::kindIndex(m_kind)].files;
    info.onDisc = static_cast<int>(order().current()) + 1;
    info.filesOnDisc = static_cast<int>(m_contents->of(m_kind).size());
    info.folder = item().folderId;
    return info;
}

void FilePlayer::advance() {
    if (order().advance()) {
        begin(engine::Milliseconds{0});
        return;
    }
    m_position = engine::Milliseconds{0};
    halt(model::PlayState::Stopped);
    announceTrack();
    publishTime();
    if (m_kind == model::MediaKind::Video && m_contents->hasFolders()) {
        m_state.videoMode(model::VideoMode::BackToList);
    }
}

void FilePlayer::halt(model::PlayState state) {
    m_skip.cancel();
    m_slide.reset();
    m_toMusic.reset();
    leaveScan();
    forgetStreams();
    m_after.reset();
    m_engine.stop();
    publishState(state);
}

void FilePlayer::publishState(model::PlayState state) {
    m_playState = state;
    m_state.playState(state);
    m_resume.flush();
}

void FilePlayer::publishTime() {
    const int length = engine::wholeSeconds(m_length);
    const int elapsed = engine::wholeSeconds(m_position);
    m_state.time({length > 0 ? std::min(elapsed, length) : elapsed, length, length});
    noteResume();
}

void FilePlayer::noteResume() {
    m_resume.moved({m_kind, order().current()}, m_position, m_modes);
}

void FilePlayer::publishStreams() {
    model::DvdDetail detail;
    detail.audios = static_cast<int>(m_streams.audio.size());
    if (detail.audios > 0) {
        const auto& heard = m_streams.audio[static_cast<size_t>(m_choice.audio)];
        detail.audio = m_choice.audio + 1;
        detail.audioType = heard.format;
        detail.audioLanguage = heard.language;
    }
    detail.subtitles = static_cast<int>(m_streams.subtitles.size());
    if (m_choice.subtitle != engine::StreamChoice::NoSubtitle) {
        detail.subtitle = SubtitleOffset + m_choice.subtitle + 1;
        detail.subtitleLanguage = m_streams.subtitles[static_cast<size_t>(m_choice.subtitle)].language;
    }
    m_state.dvd(detail);
}

void FilePlayer::forgetStreams() {
    if (!m_streams.audio.empty() || !m_streams.subtitles.empty()) {
        m_streams = {};
        m_choice = {};
        publishStreams();
    }
}

void FilePlayer::publishModes() {
    for (auto& each : m_orders) {
        if (each) {
            each->setModes(static_cast<Repeat>(m_modes.repeat), static_cast<Shuffle>(m_modes.shuffle));
        }
    }
    forgetNext();
    m_state.modes(m_modes);
    noteResume();
}

// ---- reports of the engine

void FilePlayer::engineStreams(const engine::Streams& streams) {
    m_streams = streams;
    if (m_contents->trackType == model::MediaType::Vcd) {
        m_sound.fit(streams.audio.size());
        m_choice = m_sound.choice();
        if (!m_sound.isUsual()) {
            m_engine.choose(m_choice);
        }
        m_state.audioChannel(m_sound.published());
    }
    publishStreams();
}

void FilePlayer::engineStarted(engine::Milliseconds length) {
    m_length = length;
    publishTime();
    publishState(m_mode == engine::StartMode::Playing ? model::PlayState::Playing : model::PlayState::Paused);
    announceTrackAgain();
    showSlide();
}

void FilePlayer::showSlide() {
    if (m_kind == model::MediaKind::Photo && m_mode == engine::StartMode::Playing) {
        forgetFailures();
        m_slide = afterDelay(m_loop, SlideTime, [this] { advance(); });
    }
}

void FilePlayer::engineMoved(engine::Milliseconds position, engine::Milliseconds length) {
    m_position = position;
    m_length = length;
    if (position >= PlayableAfter) {
        forgetFailures();
    }
    publishTime();
    if (const auto back = m_passage.jumpFrom(position); back && !m_scan.active()) {
        m_after.reset();
        m_engine.seek(*back);
    }
    prepareNext();
}

// What would follow by itself at the end; whatever the user does before that, it has not been played.
void FilePlayer::prepareNext() {
    const bool nearEnd = m_length > engine::Milliseconds{0} && m_length - m_position <= PrepareTime;
    if (m_after || !nearEnd || m_kind != model::MediaKind::Music ||
        m_playState != model::PlayState::Playing || m_passage.isOn()) {
        return;
    }
    PlayOrder after = order();
    if (after.advance()) {
        m_engine.follow(playable(after.current()));
        m_after = std::move(after);
    }
}

void FilePlayer::forgetNext() {
    if (m_after) {
        m_after.reset();
        m_engine.followNothing();
    }
}

void FilePlayer::engineFollowed(engine::Milliseconds length) {
    forgetFailures();
    order() = std::move(*m_after);
    enter(engine::Milliseconds{0}, m_mode);
    engineStarted(length);
}

void FilePlayer::engineEnded() {
    forgetFailures();
    advance();
}

void FilePlayer::engineScanned(engine::ScanEdge edge) {
    if (edge == engine::ScanEdge::End) {
        advance();
        return;
    }
    begin(engine::Milliseconds{0});
}

void FilePlayer::engineFailed(const std::string& reason) {
    logWarning("%s: %s\n", text::cleanText(m_contents->pathOf(item())).c_str(), reason.c_str());
    if (m_kind != model::MediaKind::Music) {
        m_state.tip(model::Tip::NotAvailable);
    }
    ++m_failures;
    using enum ReadErrorSkip::Counting;
    m_skip.begin(trackInfo(), m_contents->hasFolders() ? InFolder : OnDisc, [this] { skipUnreadable(); });
}

void FilePlayer::forgetFailures() {
    m_failures = 0;
    m_brokenKinds = 0;
}

// The first kind, in the order of preference, of which not a whole round has failed; null without one.
const model::KindNumbers* FilePlayer::kindToTry() const {
    const int left = m_contents->mixedMask() & ~m_brokenKinds;
    const auto row =
        std::find_if(model::kinds.begin(), model::kinds.end(),
                     [left](const model::KindNumbers& each) { return (each.mixedBit & left) != 0; });
    return row == model::kinds.end() ? nullptr : &*row;
}

// Nothing of this kind can be played; the disc may hold others.
void FilePlayer::leaveKind() {
    m_failures = 0;
    m_brokenKinds |= model::numbersOf(m_kind).mixedBit;
    if (const auto* other = kindToTry()) {
        choose(other->kind);
        begin(engine::Milliseconds{0});
        return;
    }
    m_brokenKinds = 0;
    halt(model::PlayState::Error);
    m_unplayable();
}

void FilePlayer::skipUnreadable() {
    if (m_failures >= order().roundSize()) {
        leaveKind();
    } else if (m_modes.repeat == static_cast<int>(Repeat::Off)) {
        advance();
    } else {
        // With "repeat one" the same item would only fail again.
        order().next();
        begin(engine::Milliseconds{0});
    }
}

// ---- commands

void FilePlayer::next() {
    order().next();
    begin(engine::Milliseconds{0});
    m_state.tip(model::Tip::Next);
}

void FilePlayer::previous() {
    if (m_position < RestartAfter) {
        order().previous();
    }
    begin(engine::Milliseconds{0});
    m_state.tip(model::Tip::Previous);
}

void FilePlayer::scan(ScanDirection direction) {
    const bool running = m_playState == model::PlayState::Playing ||
                         m_playState == model::PlayState::Paused || m_scan.active();
    if (!running || m_kind == model::MediaKind::Photo) {
        refuse();
        return;
    }
    m_scan.press(direction);
    m_after.reset();
    m_engine.scan(m_scan.factor());
    const auto& row = *std::find_if(std::begin(scanRows), std::end(scanRows),
                                    [&](const ScanRow& each) { return each.direction == direction; });
    m_state.playSpeed(m_scan.factor());
    publishState(row.state);
    m_state.tip(row.firstTip, static_cast<int>(m_scan.step()));
}

void FilePlayer::leaveScan() {
    m_scan.end();
    m_state.playSpeed(1);
}

void FilePlayer::pause() {
    if (m_playState != model::PlayState::Playing && !m_scan.active()) {
        return;
    }
    leaveScan();
    m_slide.reset();
    m_mode = engine::StartMode::Paused;
    m_engine.pause();
    publishState(model::PlayState::Paused);
    m_state.tip(model::Tip::Pause);
}

void FilePlayer::play() {
    if (m_playState == model::PlayState::Playing) {
        return;
    }
    m_mode = engine::StartMode::Playing;
    if (m_playState == model::PlayState::Paused || m_scan.active()) {
        leaveScan();
        m_engine.resume();
        publishState(model::PlayState::Playing);
        showSlide();
    } else {
        begin(m_position);
    }
    m_state.tip(model::Tip::Play);
}

void FilePlayer::stop() {
    m_position = engine::Milliseconds{0};
    halt(model::PlayState::Stopped);
    publishTime();
    m_state.tip(model::Tip::Stop);
}

void FilePlayer::repeat(int mode) {
    const bool hasFolders = m_contents->hasFolders();
    const Repeat wanted =
        mode == 0 ? nextRepeat(static_cast<Repeat>(m_modes.repeat), hasFolders) : static_cast<Repeat>(mode);
    const auto row = std::find_if(std::begin(repeatRows), std::end(repeatRows),
                                  [&](const RepeatRow& each) { return each.mode == wanted; });
    if (row == std::end(repeatRows) || (wanted == Repeat::Folder && !hasFolders)) {
        refuse();
        return;
    }
    m_modes.repeat = static_cast<int>(wanted);
    publishModes();
    m_state.tip(row->tip);
}

void FilePlayer::shuffle(int mode) {
    const auto row = std::find_if(std::begin(shuffleRows), std::end(shuffleRows),
                                  [&](const ShuffleRow& each) { return each.requested == mode; });
    const bool hasFolders = m_contents->hasFolders();
    if (mode != 0 && (row == std::end(shuffleRows) || (row->mode == Shuffle::Folder && !hasFolders))) {
        refuse();
        return;
    }
    const Shuffle wanted =
        mode == 0 ? nextShuffle(static_cast<Shuffle>(m_modes.shuffle), hasFolders) : row->mode;
    m_modes.shuffle = static_cast<int>(wanted);
    publishModes();
}

void FilePlayer::repeatPassage() {
    if (m_playState != model::PlayState::Playing || m_kind == model::MediaKind::Photo) {
        refuse();
        return;
    }
    const auto change = m_passage.press(m_position);
    if (change == PassageRepeat::Change::On) {
        forgetNext();
    }
    if (change != PassageRepeat::Change::Begun) {
        m_state.tip(change == PassageRepeat::Change::On ? model::Tip::RepeatAbOn : model::Tip::RepeatAbOff);
    }
}

void FilePlayer::audioChannel() {
    if (m_contents->trackType == model::MediaType::Vcd && !m_streams.audio.empty()) {
        m_sound.step();
        useStreams(m_sound.choice());
        m_state.audioChannel(m_sound.published());
        return;
    }
    if (m_streams.audio.size() < 2) {
        refuse();
        return;
    }
    const int count = static_cast<int>(m_streams.audio.size());
    useStreams({(m_choice.audio + 1) % count, m_choice.subtitle});
}

void FilePlayer::subtitle() {
    if (m_streams.subtitles.empty()) {
        refuse();
        return;
    }
    const int last = static_cast<int>(m_streams.subtitles.size()) - 1;
    const bool off = m_choice.subtitle == last;
    useStreams({m_choice.audio, off ? engine::StreamChoice::NoSubtitle : m_choice.subtitle + 1});
}

void FilePlayer::useStreams(const engine::StreamChoice& choice) {
    m_choice = choice;
    m_engine.choose(choice);
    publishStreams();
}

void FilePlayer::playbackControl() {
    if (m_contents->trackType != model::MediaType::Vcd) {
        refuse();
        return;
    }
    if (m_takeOver) {
        m_takeOver();
        return;
    }
    m_playbackControl = !m_playbackControl;
    m_state.tip(m_playbackControl ? model::Tip::PbcOn : model::Tip::PbcOff);
}

void FilePlayer::zoom() {
    changeView(&engine::PictureView::nextZoom);
}

void FilePlayer::rotate() {
    changeView(&engine::PictureView::turn);
}

void FilePlayer::changeView(void (engine::PictureView::*change)()) {
    if (m_kind == model::MediaKind::Music) {
        refuse();
        return;
    }
    (m_view.*change)();
    m_engine.view(m_view);
    if (m_slide.active()) {
        showSlide(); // the user wants to look at this one
    }
}

void FilePlayer::playTrack(int first, int second) {
    if (m_skip.swallows(first, second)) {
        return;
    }
    const TrackContext context{{m_kind, order().current()}, m_browsed};
    const auto place = resolveTrack(*m_contents, context, first, second);
    if (!place) {
        refuse();
        return;
    }
    choose(place->kind);
    order().jumpTo(place->index);
    begin(engine::Milliseconds{0});
}

void FilePlayer::seek(std::chrono::seconds position) {
    const bool running = m_playState == model::PlayState::Playing ||
                         m_playState == model::PlayState::Paused || m_scan.active();
    if (!running || m_kind == model::MediaKind::Photo) {
        refuse();
        return;
    }
    const engine::Milliseconds wanted = std::max(position, std::chrono::seconds(0));
    m_position = m_length > engine::Milliseconds{0} ? std::min(wanted, m_length) : wanted;
    m_after.reset();
    m_engine.seek(m_position);
    if (m_scan.active()) {
        leaveScan();
        m_engine.resume();
        publishState(model::PlayState::Playing);
    }
    publishTime();
}

void FilePlayer::browse(int mediaType, int folder) {
    const auto* row = model::kindOfMediaType(mediaType);
    if (!row) {
        refuse();
        return;
    }
    m_browsed = row->kind;
    // The catalogue was complete before playing began, so that there is nothing more to fetch.
    m_state.catalogue(model::Reading::Complete, std::max(1, folder));
}

} // namespace zm::disc::player
