#include "services/disc/player/FilePlayer.h"

#include "services/disc/log/Log.h"
#include "services/disc/text/Charset.h"

#include <algorithm>
#include <random>

namespace zm::disc {

namespace {

// "cursubtitlenum" of the first subtitle, less one; smaller numbers stand for no subtitle.
constexpr int SubtitleOffset = 80;

// Music that follows is prepared this long before the end: enough for a drive that has to jump to it.
constexpr Milliseconds PrepareTime{5000};

// How long each photo of a slide show stands.
constexpr Milliseconds SlideTime{5000};

// The application takes the number and texts of a track only on its play page, which it opens some time after
// it has been told the type and the state.
constexpr Milliseconds PageTime{300};

// On a voice request the application first opens the list of music. Were its rows still on their way when music
// plays and the song is found, the list would come up over the song's page.
constexpr Milliseconds ListTime{500};

// An item that has played this long counts as playable, whatever happens later.
constexpr Milliseconds PlayableAfter{1000};

// "Previous" begins an item anew that has played this long.
constexpr Milliseconds RestartAfter{3000};

struct RepeatRow {
    Repeat mode;
    Tip tip;
};
constexpr RepeatRow repeatRows[] = {{Repeat::Off, Tip::RepeatOff},
                                    {Repeat::All, Tip::RepeatAll},
                                    {Repeat::Folder, Tip::RepeatFolder},
                                    {Repeat::One, Tip::RepeatOne}};

struct ShuffleRow {
    int requested;
    Shuffle mode;
};
// 0 steps on, so that "off" needs a number of its own.
constexpr ShuffleRow shuffleRows[] = {{1, Shuffle::All}, {2, Shuffle::Folder}, {4, Shuffle::Off}};

struct ScanRow {
    ScanDirection direction;
    PlayState state;
    Tip firstTip;
};
constexpr ScanRow scanRows[] = {{ScanDirection::Forward, PlayState::Forward, Tip::ForwardX2},
                                {ScanDirection::Backward, PlayState::Backward, Tip::BackwardX2}};

int seconds(Milliseconds time) {
    return static_cast<int>(std::chrono::duration_cast<std::chrono::seconds>(time).count());
}

std::vector<int> foldersOf(const std::vector<Item>& items) {
    std::vector<int> folders;
    folders.reserve(items.size());
    std::transform(items.begin(), items.end(), std::back_inserter(folders),
                   [](const Item& item) { return item.folderId; });
    return folders;
}

} // namespace

FilePlayer::FilePlayer(EventLoop& loop, DiscState& state, PlayModes& modes, Engine& engine,
                       std::shared_ptr<Medium> medium, std::shared_ptr<const Contents> contents,
                       DiscResume& resume, std::function<void()> unplayable)
    : m_loop(loop), m_state(state), m_modes(modes), m_engine(engine), m_medium(std::move(medium)),
      m_contents(std::move(contents)), m_resume(resume), m_unplayable(std::move(unplayable)),
      m_kind(resume.item().kind), m_browsed(m_kind), m_announced(m_kind), m_position(resume.position()),
      m_texts(loop, state), m_skip(loop, state) {
    for (const auto& row : kinds) {
        if (const auto& items = m_contents->of(row.kind); !items.empty()) {
            auto& made = m_orders[kindIndex(row.kind)].emplace(foldersOf(items), std::random_device{}());
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
    m_state.tip(Tip::NotAvailable);
}

// ---- source

void FilePlayer::sourceOn() {
    m_state.repeatTypeAndState();
    announceTrackAgain();
    if (!std::exchange(m_source, true) && m_playState != PlayState::Error) {
        begin(m_position, m_mode);
    }
}

void FilePlayer::sourceOff() {
    if (std::exchange(m_source, false)) {
        halt(PlayState::Stopped);
    }
}

void FilePlayer::playMusic() {
    if (m_source && m_kind != MediaKind::Music && !m_contents->of(MediaKind::Music).empty()) {
        m_toMusic = afterDelay(m_loop, ListTime, [this] {
            choose(MediaKind::Music);
            begin(Milliseconds{0});
        });
    }
}

// ---- what plays

void FilePlayer::choose(MediaKind kind) {
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
    const TrackTexts texts{item().name, tags.artist, tags.album};
    if (m_kind == MediaKind::Music) {
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

void FilePlayer::begin(Milliseconds position, StartMode mode) {
    enter(position, mode);
    m_engine.start(playable(order().current()), *this, position, mode);
}

Playable FilePlayer::playable(size_t index) const {
    const Item& item = m_contents->of(m_kind)[index];
    return {m_medium, m_contents->pathOf(item), m_kind, std::chrono::seconds(item.tags.seconds)};
}

// Publishes the current item, which begins.
void FilePlayer::enter(Milliseconds position, StartMode mode) {
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
    m_state.videoMode(m_kind == MediaKind::Music ? VideoMode::NoPicture : VideoMode::Picture);
    announceTrack();
    publishTime();
}

TrackInfo FilePlayer::trackInfo() {
    TrackInfo info;
    info.inFolder = item().fileId;
    info.filesInFolder = m_contents->folder(item().folderId).counts[kindIndex(m_kind)].files;
    info.onDisc = static_cast<int>(order().current()) + 1;
    info.filesOnDisc = static_cast<int>(m_contents->of(m_kind).size());
    info.folder = item().folderId;
    return info;
}

void FilePlayer::advance() {
    if (order().advance()) {
        begin(Milliseconds{0});
        return;
    }
    m_position = Milliseconds{0};
    halt(PlayState::Stopped);
    announceTrack();
    publishTime();
    if (m_kind == MediaKind::Video && m_contents->hasFolders()) {
        m_state.videoMode(VideoMode::BackToList);
    }
}

void FilePlayer::halt(PlayState state) {
    m_skip.cancel();
    m_slide.reset();
    m_toMusic.reset();
    leaveScan();
    forgetStreams();
    m_after.reset();
    m_engine.stop();
    publishState(state);
}

void FilePlayer::publishState(PlayState state) {
    m_playState = state;
    m_state.playState(state);
    m_resume.flush();
}

void FilePlayer::publishTime() {
    const int length = seconds(m_length);
    const int elapsed = seconds(m_position);
    m_state.time({length > 0 ? std::min(elapsed, length) : elapsed, length, length});
    noteResume();
}

void FilePlayer::noteResume() {
    m_resume.moved({m_kind, order().current()}, m_position, m_modes);
}

void FilePlayer::publishStreams() {
    DvdDetail detail;
    detail.audios = static_cast<int>(m_streams.audio.size());
    if (detail.audios > 0) {
        const auto& heard = m_streams.audio[static_cast<size_t>(m_choice.audio)];
        detail.audio = m_choice.audio + 1;
        detail.audioType = heard.format;
        detail.audioLanguage = heard.language;
    }
    detail.subtitles = static_cast<int>(m_streams.subtitles.size());
    if (m_choice.subtitle != StreamChoice::NoSubtitle) {
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

void FilePlayer::engineStreams(const Streams& streams) {
    m_streams = streams;
    publishStreams();
}

void FilePlayer::engineStarted(Milliseconds length) {
    m_length = length;
    publishTime();
    publishState(m_mode == StartMode::Playing ? PlayState::Playing : PlayState::Paused);
    announceTrackAgain();
    showSlide();
}

void FilePlayer::showSlide() {
    if (m_kind == MediaKind::Photo && m_mode == StartMode::Playing) {
        forgetFailures();
        m_slide = afterDelay(m_loop, SlideTime, [this] { advance(); });
    }
}

void FilePlayer::engineMoved(Milliseconds position, Milliseconds length) {
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
    const bool nearEnd = m_length > Milliseconds{0} && m_length - m_position <= PrepareTime;
    if (m_after || !nearEnd || m_kind != MediaKind::Music || m_playState != PlayState::Playing ||
        m_passage.isOn()) {
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

void FilePlayer::engineFollowed(Milliseconds length) {
    forgetFailures();
    order() = std::move(*m_after);
    enter(Milliseconds{0}, m_mode);
    engineStarted(length);
}

void FilePlayer::engineEnded() {
    forgetFailures();
    advance();
}

void FilePlayer::engineScanned(ScanEdge edge) {
    if (edge == ScanEdge::End) {
        advance();
        return;
    }
    begin(Milliseconds{0});
}

void FilePlayer::engineFailed(const std::string& reason) {
    logWarning("%s: %s\n", cleanText(m_contents->pathOf(item())).c_str(), reason.c_str());
    if (m_kind != MediaKind::Music) {
        m_state.tip(Tip::NotAvailable);
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
const KindNumbers* FilePlayer::kindToTry() const {
    const int left = m_contents->mixedMask() & ~m_brokenKinds;
    const auto row = std::find_if(kinds.begin(), kinds.end(),
                                  [left](const KindNumbers& each) { return (each.mixedBit & left) != 0; });
    return row == kinds.end() ? nullptr : &*row;
}

// Nothing of this kind can be played; the disc may hold others.
void FilePlayer::leaveKind() {
    m_failures = 0;
    m_brokenKinds |= numbersOf(m_kind).mixedBit;
    if (const auto* other = kindToTry()) {
        choose(other->kind);
        begin(Milliseconds{0});
        return;
    }
    m_brokenKinds = 0;
    halt(PlayState::Error);
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
        begin(Milliseconds{0});
    }
}

// ---- commands

void FilePlayer::next(int, int) {
    order().next();
    begin(Milliseconds{0});
    m_state.tip(Tip::Next);
}

void FilePlayer::previous(int, int) {
    if (m_position < RestartAfter) {
        order().previous();
    }
    begin(Milliseconds{0});
    m_state.tip(Tip::Previous);
}

void FilePlayer::fastForward(int, int) {
    scan(ScanDirection::Forward);
}

void FilePlayer::fastBackward(int, int) {
    scan(ScanDirection::Backward);
}

void FilePlayer::scan(ScanDirection direction) {
    const bool running =
        m_playState == PlayState::Playing || m_playState == PlayState::Paused || m_scan.active();
    if (!running || m_kind == MediaKind::Photo) {
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

void FilePlayer::playPause(int, int) {
    if (m_playState == PlayState::Playing) {
        pause(0, 0);
    } else {
        play(0, 0);
    }
}

void FilePlayer::pause(int, int) {
    if (m_playState != PlayState::Playing && !m_scan.active()) {
        return;
    }
    leaveScan();
    m_slide.reset();
    m_mode = StartMode::Paused;
    m_engine.pause();
    publishState(PlayState::Paused);
    m_state.tip(Tip::Pause);
}

void FilePlayer::play(int, int) {
    if (m_playState == PlayState::Playing) {
        return;
    }
    m_mode = StartMode::Playing;
    if (m_playState == PlayState::Paused || m_scan.active()) {
        leaveScan();
        m_engine.resume();
        publishState(PlayState::Playing);
        showSlide();
    } else {
        begin(m_position);
    }
    m_state.tip(Tip::Play);
}

void FilePlayer::stop(int, int) {
    m_position = Milliseconds{0};
    halt(PlayState::Stopped);
    publishTime();
    m_state.tip(Tip::Stop);
}

void FilePlayer::repeat(int mode, int) {
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

void FilePlayer::shuffle(int mode, int) {
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

void FilePlayer::repeatPassage(int, int) {
    if (m_playState != PlayState::Playing || m_kind == MediaKind::Photo) {
        refuse();
        return;
    }
    const auto change = m_passage.press(m_position);
    if (change == PassageRepeat::Change::On) {
        forgetNext();
    }
    if (change != PassageRepeat::Change::Begun) {
        m_state.tip(change == PassageRepeat::Change::On ? Tip::RepeatAbOn : Tip::RepeatAbOff);
    }
}

void FilePlayer::audioChannel(int, int) {
    if (m_streams.audio.size() < 2) {
        refuse();
        return;
    }
    const int count = static_cast<int>(m_streams.audio.size());
    useStreams({(m_choice.audio + 1) % count, m_choice.subtitle});
}

void FilePlayer::subtitle(int, int) {
    if (m_streams.subtitles.empty()) {
        refuse();
        return;
    }
    const int last = static_cast<int>(m_streams.subtitles.size()) - 1;
    const bool off = m_choice.subtitle == last;
    useStreams({m_choice.audio, off ? StreamChoice::NoSubtitle : m_choice.subtitle + 1});
}

void FilePlayer::useStreams(const StreamChoice& choice) {
    m_choice = choice;
    m_engine.choose(choice);
    publishStreams();
}

void FilePlayer::playbackControl(int, int) {
    if (m_contents->trackType != MediaType::Vcd) {
        refuse();
        return;
    }
    m_playbackControl = !m_playbackControl;
    m_state.tip(m_playbackControl ? Tip::PbcOn : Tip::PbcOff);
}

void FilePlayer::zoom(int, int) {
    changeView(&PictureView::nextZoom);
}

void FilePlayer::rotate(int, int) {
    changeView(&PictureView::turn);
}

void FilePlayer::changeView(void (PictureView::*change)()) {
    if (m_kind == MediaKind::Music) {
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
    begin(Milliseconds{0});
}

void FilePlayer::seek(int position, int) {
    const bool running =
        m_playState == PlayState::Playing || m_playState == PlayState::Paused || m_scan.active();
    if (!running || m_kind == MediaKind::Photo) {
        refuse();
        return;
    }
    const Milliseconds wanted = std::chrono::seconds(std::max(0, position));
    m_position = m_length > Milliseconds{0} ? std::min(wanted, m_length) : wanted;
    m_after.reset();
    m_engine.seek(m_position);
    if (m_scan.active()) {
        leaveScan();
        m_engine.resume();
        publishState(PlayState::Playing);
    }
    publishTime();
}

void FilePlayer::browse(int mediaType, int folder) {
    const auto* row = kindOfMediaType(mediaType);
    if (!row) {
        refuse();
        return;
    }
    m_browsed = row->kind;
    // The catalogue was complete before playing began, so that there is nothing more to fetch.
    m_state.catalogue(Reading::Complete, std::max(1, folder));
}

} // namespace zm::disc
