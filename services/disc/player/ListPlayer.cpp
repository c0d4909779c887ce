#include "services/disc/player/ListPlayer.h"

#include "services/disc/log/Log.h"

#include <algorithm>
#include <utility>

namespace zm::disc::player {

namespace {

// Lists that show nothing and lead to each other.
constexpr int MaxHops = 100;
constexpr size_t MaxFailures = 20;
// A picture can be seen, however short the disc wants it to stand; so do lists that lead to each other take their time.
constexpr engine::Milliseconds ShortestPicture{500};
// A film as short as that is a picture: not every authoring program marks them.
constexpr engine::Milliseconds ShortestFilm{500};

} // namespace

ListPlayer::ListPlayer(EventLoop& loop, model::DiscState& state, model::PlayModes& modes,
                       engine::Engine& engine, std::shared_ptr<medium::Medium> medium,
                       std::shared_ptr<const model::Contents> contents, DiscResume& resume, Begin begin,
                       Exits exits)
    : m_loop(loop), m_state(state), m_modes(modes), m_engine(engine), m_medium(std::move(medium)),
      m_contents(std::move(contents)), m_resume(resume), m_exits(std::move(exits)), m_status(state),
      m_skip(loop, state) {
    const int track = static_cast<int>(m_resume.item().index);
    const auto left = listOf(track);
    if (begin == Begin::WhereLeft && left && (track > 0 || m_resume.position() > engine::Milliseconds{0})) {
        m_list = *left;
        m_position = m_resume.position();
    }
}

ListPlayer::~ListPlayer() {
    m_engine.stop();
    m_state.audioChannel(0);
    m_resume.flush();
}

// The first list that begins with the whole track.
std::optional<size_t> ListPlayer::listOf(int track) const {
    const auto& lists = m_contents->playLists->lists;
    const auto found = std::find_if(lists.begin(), lists.end(), [=](const model::PlayList& each) {
        return each.kind == model::PlayList::Kind::Items && !each.items.empty() &&
               each.items[0].track == track && each.items[0].begin == engine::Milliseconds{0};
    });
    return found == lists.end() ? std::nullopt : std::optional(static_cast<size_t>(found - lists.begin()));
}

// ---- source

void ListPlayer::sourceOn() {
    m_state.repeatTypeAndState();
    publishTrack();
    if (std::exchange(m_source, true) || m_status.state() == model::PlayState::Error) {
        return;
    }
    if (m_position > engine::Milliseconds{0}) {
        begin(m_position);
    } else {
        enter(m_list);
    }
}

void ListPlayer::sourceOff() {
    if (std::exchange(m_source, false) && m_status.state() != model::PlayState::Error) {
        halt(model::PlayState::Stopped);
    }
}

// ---- what plays

void ListPlayer::enter(size_t target) {
    m_mode = engine::StartMode::Playing;
    for (int hops = 0; hops < MaxHops; ++hops) {
        m_list = target;
        m_item = 0;
        m_plays = 0;
        m_before = engine::Milliseconds{0};
        if (list().kind == model::PlayList::Kind::End ||
            (!inMenu() && list().items.empty() && !list().next)) {
            end();
            return;
        }
        if (inMenu() || !list().items.empty()) {
            begin(item() ? item()->begin : engine::Milliseconds{0});
            return;
        }
        target = *list().next;
    }
    logWarning("playback control leads in a circle and is switched off\n");
    m_exits.toTracks();
}

bool ListPlayer::goTo(const model::PlayList::Target& target) {
    if (target) {
        enter(*target);
    } else {
        refuse();
    }
    return target.has_value();
}

void ListPlayer::begin(engine::Milliseconds position) {
    m_wait.reset();
    m_skip.cancel();
    m_waits = false;
    m_view = {};
    m_status.leaveScan();
    m_position = position;
    m_length = knownLength();
    m_picture = false;
    m_state.videoMode(model::VideoMode::Picture);
    publishTrack();
    publishTime();
    if (!item()) {
        // A menu without a picture.
        m_engine.stop();
        publishState(model::PlayState::Playing);
        itemOver();
        return;
    }
    m_engine.start({m_medium, item()->path, model::MediaKind::Video, m_length}, *this, position, m_mode);
}

engine::Milliseconds ListPlayer::knownLength() const {
    const bool track = item() && item()->track >= 0;
    return std::chrono::seconds(
        track ? m_contents->of(model::MediaKind::Video)[static_cast<size_t>(item()->track)].tags.seconds : 0);
}

void ListPlayer::wait(std::chrono::milliseconds time, std::function<void()> then) {
    m_wait = afterDelay(m_loop, time, std::move(then));
}

// The item has been shown; its last picture stands.
void ListPlayer::itemOver() {
    const bool still = !showsFilm();
    ++m_plays;
    if (inMenu() && !still && (list().plays == 0 || m_plays < list().plays)) {
        begin(item()->begin);
        return;
    }
    m_waits = true;
    if (list().wait) {
        const engine::Milliseconds time = *list().wait;
        wait(still ? std::max(time, ShortestPicture) : time, [this] { waitOver(); });
    }
}

void ListPlayer::waitOver() {
    m_wait.reset();
    if (inMenu()) {
        if (list().timeout) {
            enter(*list().timeout);
        }
        return;
    }
    if (m_item + 1 < list().items.size()) {
        m_before += m_position - item()->begin;
        ++m_item;
        begin(item()->begin);
    } else if (list().next) {
        enter(*list().next);
    } else {
        end();
    }
}

// The disc's way is over; from here on it begins anew.
void ListPlayer::end() {
    m_list = 0;
    m_item = 0;
    m_position = engine::Milliseconds{0};
    m_length = engine::Milliseconds{0};
    halt(model::PlayState::Stopped);
    publishTrack();
    publishTime();
}

void ListPlayer::halt(model::PlayState state) {
    m_wait.reset();
    m_skip.cancel();
    m_waits = false;
    m_status.leaveScan();
    m_engine.stop();
    publishState(state);
}

// ---- what is published

void ListPlayer::publishState(model::PlayState state) {
    m_status.publish(state);
    m_resume.flush();
}

// Of a menu: no track, and as many as the highest number that can be chosen.
model::TrackInfo ListPlayer::trackInfo() const {
    model::TrackInfo info;
    info.folder = 1;
    info.onDisc = item() ? item()->track + 1 : 0;
    info.filesOnDisc = inMenu() ? list().firstNumber + static_cast<int>(list().choices.size()) - 1
                                : static_cast<int>(m_contents->of(model::MediaKind::Video).size());
    info.inFolder = info.onDisc;
    info.filesInFolder = info.filesOnDisc;
    return info;
}

void ListPlayer::publishTrack() {
    m_state.track(trackInfo());
    const bool track = item() && item()->track >= 0;
    m_state.texts(
        {track ? m_contents->of(model::MediaKind::Video)[static_cast<size_t>(item()->track)].name : "", "",
         ""});
}

void ListPlayer::publishTime() {
    constexpr engine::Milliseconds None{0};
    m_status.publishTime(showsFilm() ? m_position : None, showsFilm() ? m_length : None);
    const bool track = item() && item()->track >= 0;
    m_resume.moved({model::MediaKind::Video, track ? static_cast<size_t>(item()->track) : 0},
                   track ? m_position : engine::Milliseconds{0}, m_modes);
}

// ---- reports of the engine

void ListPlayer::engineStreams(const engine::Streams& streams) {
    m_sound.fit(streams.audio.size());
    if (!m_sound.isUsual()) {
        m_engine.choose(m_sound.choice());
    }
    m_state.audioChannel(m_sound.published());
}

void ListPlayer::engineStarted(engine::Milliseconds length) {
    m_failures = 0;
    m_length = length;
    m_picture = length < ShortestFilm;
    publishTime();
    m_status.publishStarted(m_mode);
    m_resume.flush();
    m_again = afterDelay(m_loop, PageTime, [this] { publishTrack(); });
}

void ListPlayer::engineMoved(engine::Milliseconds position, engine::Milliseconds length) {
    m_position = position;
    m_length = length;
    publishTime();
    const bool limited = list().length > engine::Milliseconds{0} && !inMenu() && !m_status.scanning();
    if (limited && m_before + position - item()->begin >= list().length) {
        m_item = list().items.size() - 1;
        m_engine.pause();
        itemOver();
    }
}

void ListPlayer::engineEnded() {
    itemOver();
}

void ListPlayer::engineScanned(engine::ScanEdge edge) {
    if (edge == engine::ScanEdge::End) {
        m_status.leaveScan();
        publishState(model::PlayState::Playing);
        itemOver();
    } else {
        begin(item()->begin);
    }
}

void ListPlayer::engineFailed(const std::string& reason) {
    logWarning("%s: %s\n", item()->path.c_str(), reason.c_str());
    m_state.tip(model::Tip::NotAvailable);
    if (++m_failures >= MaxFailures) {
        halt(model::PlayState::Error);
        m_exits.unplayable();
        return;
    }
    m_skip.begin(trackInfo(), ReadErrorSkip::Counting::OnDisc, [this] {
        publishState(model::PlayState::Playing);
        m_waits = true;
        if (!inMenu()) {
            waitOver();
        } else if (list().wait) {
            wait(*list().wait, [this] { waitOver(); });
        }
    });
}

// ---- commands

void ListPlayer::next() {
    const auto& target = list().next ? list().next : list().standard;
    if (!m_status.running() || !goTo(target)) {
        return;
    }
    m_state.tip(model::Tip::Next);
}

void ListPlayer::previous() {
    if (m_status.running() && goTo(list().previous)) {
        m_state.tip(model::Tip::Previous);
    }
}

void ListPlayer::menu() {
    goTo(list().back);
}

void ListPlayer::titleMenu() {
    enter(0);
}

void ListPlayer::playTrack(int first, int second) {
    if (m_skip.swallows(first, second)) {
        return;
    }
    const auto& choices = list().choices;
    if (!inMenu()) {
        goTo(listOf(first - 1));
    } else if (first >= list().firstNumber && first - list().firstNumber < static_cast<int>(choices.size())) {
        goTo(choices[static_cast<size_t>(first - list().firstNumber)]);
    } else {
        refuse();
    }
}

void ListPlayer::scan(ScanDirection direction) {
    if (!m_status.running() || inMenu() || stands()) {
        refuse();
        return;
    }
    const int factor = m_status.pressScan(direction);
    m_engine.scan(factor);
    m_status.publishScan();
    m_resume.flush();
}

void ListPlayer::pause() {
    if (stands() || (!m_status.playing() && !m_status.scanning())) {
        return;
    }
    m_status.leaveScan();
    m_mode = engine::StartMode::Paused;
    m_engine.pause();
    publishState(model::PlayState::Paused);
    m_state.tip(model::Tip::Pause);
}

// Where a picture stands it goes on from there.
void ListPlayer::play() {
    if (m_status.playing() && inMenu() && stands()) {
        goTo(list().standard);
    } else if (m_waits) {
        waitOver();
    } else if (m_status.paused() || m_status.scanning()) {
        m_status.leaveScan();
        m_mode = engine::StartMode::Playing;
        m_engine.resume();
        publishState(model::PlayState::Playing);
        m_state.tip(model::Tip::Play);
    } else if (m_status.state() == model::PlayState::Stopped) {
        enter(m_list);
        m_state.tip(model::Tip::Play);
    }
}

void ListPlayer::stop() {
    end();
    m_state.tip(model::Tip::Stop);
}

void ListPlayer::audioChannel() {
    if (!m_status.running() || !m_sound.hasAny()) {
        m_state.audioChannel(0);
        refuse();
        return;
    }
    m_sound.step();
    m_engine.choose(m_sound.choice());
    m_state.audioChannel(m_sound.published());
}

void ListPlayer::playbackControl() {
    m_exits.toTracks();
}

void ListPlayer::zoom() {
    changeView(&engine::PictureView::nextZoom);
}

void ListPlayer::rotate() {
    changeView(&engine::PictureView::turn);
}

void ListPlayer::changeView(void (engine::PictureView::*change)()) {
    (m_view.*change)();
    m_engine.view(m_view);
}

void ListPlayer::seek(std::chrono::seconds position) {
    if (!m_status.running() || inMenu() || stands()) {
        refuse();
        return;
    }
    const engine::Milliseconds wanted = std::max(position, std::chrono::seconds(0));
    m_position = m_length > engine::Milliseconds{0} ? std::min(wanted, m_length) : wanted;
    m_engine.seek(m_position);
    if (m_status.scanning()) {
        m_status.leaveScan();
        m_engine.resume();
        publishState(model::PlayState::Playing);
    }
    publishTime();
}

} // namespace zm::disc::player
