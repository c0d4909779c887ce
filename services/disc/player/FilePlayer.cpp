#include "services/disc/player/FilePlayer.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zm::disc::player {

namespace {

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

} // namespace

FilePlayer::FilePlayer(EventLoop& loop, model::DiscState& state, model::PlayModes& modes,
                       engine::Engine& engine, std::shared_ptr<medium::Medium> medium,
                       std::shared_ptr<const model::Contents> contents, DiscResume& resume,
                       std::function<void()> unplayable)
    : m_state(state), m_modes(modes), m_playback(loop, state, modes, engine, std::move(medium),
                                                 std::move(contents), resume, std::move(unplayable)),
      m_queue(m_playback.queue()), m_status(m_playback.status()) {}

bool FilePlayer::isVcd() const {
    return m_queue.contents().trackType == model::MediaType::Vcd;
}

// ---- from item to item

void FilePlayer::next() {
    m_queue.next();
    m_playback.begin();
    m_state.tip(model::Tip::Next);
}

void FilePlayer::previous() {
    if (m_playback.position() < RestartAfter) {
        m_queue.previous();
    }
    m_playback.begin();
    m_state.tip(model::Tip::Previous);
}

void FilePlayer::playTrack(int first, int second) {
    if (m_playback.swallows(first, second)) {
        return;
    }
    const auto place = m_queue.named(first, second);
    if (!place) {
        refuse();
        return;
    }
    m_queue.choose(*place);
    m_playback.begin();
}

void FilePlayer::browse(int mediaType, int folder) {
    const auto* row = model::kindOfMediaType(mediaType);
    if (!row) {
        refuse();
        return;
    }
    m_queue.browse(row->kind);
    // The catalogue was complete before playing began, so that there is nothing more to fetch.
    m_state.catalogue(model::Reading::Complete, std::max(1, folder));
}

// ---- through an item

void FilePlayer::pause() {
    if (m_status.playing() || m_status.scanning()) {
        m_playback.pause();
        m_state.tip(model::Tip::Pause);
    }
}

void FilePlayer::play() {
    if (!m_status.playing()) {
        m_playback.play();
        m_state.tip(model::Tip::Play);
    }
}

void FilePlayer::stop() {
    m_playback.stop();
    m_state.tip(model::Tip::Stop);
}

void FilePlayer::scan(ScanDirection direction) {
    if (!m_status.running() || shows(model::MediaKind::Photo)) {
        refuse();
        return;
    }
    m_playback.scan(direction);
}

void FilePlayer::seek(std::chrono::seconds position) {
    if (!m_status.running() || shows(model::MediaKind::Photo)) {
        refuse();
        return;
    }
    m_playback.seek(position);
}

void FilePlayer::repeatPassage() {
    if (!m_status.playing() || shows(model::MediaKind::Photo)) {
        refuse();
        return;
    }
    const auto change = m_playback.pressPassage();
    if (change != PassageRepeat::Change::Begun) {
        m_state.tip(change == PassageRepeat::Change::On ? model::Tip::RepeatAbOn : model::Tip::RepeatAbOff);
    }
}

// ---- modes

void FilePlayer::repeat(int mode) {
    const bool hasFolders = m_queue.contents().hasFolders();
    const Repeat wanted =
        mode == 0 ? nextRepeat(static_cast<Repeat>(m_modes.repeat), hasFolders) : static_cast<Repeat>(mode);
    const auto row = std::find_if(std::begin(repeatRows), std::end(repeatRows),
                                  [&](const RepeatRow& each) { return each.mode == wanted; });
    if (row == std::end(repeatRows) || (wanted == Repeat::Folder && !hasFolders)) {
        refuse();
        return;
    }
    m_modes.repeat = static_cast<int>(wanted);
    m_playback.modesChanged();
    m_state.tip(row->tip);
}

void FilePlayer::shuffle(int mode) {
    const auto row = std::find_if(std::begin(shuffleRows), std::end(shuffleRows),
                                  [&](const ShuffleRow& each) { return each.requested == mode; });
    const bool hasFolders = m_queue.contents().hasFolders();
    if (mode != 0 && (row == std::end(shuffleRows) || (row->mode == Shuffle::Folder && !hasFolders))) {
        refuse();
        return;
    }
    const Shuffle wanted =
        mode == 0 ? nextShuffle(static_cast<Shuffle>(m_modes.shuffle), hasFolders) : row->mode;
    m_modes.shuffle = static_cast<int>(wanted);
    m_playback.modesChanged();
}

void FilePlayer::playbackControl() {
    if (!isVcd()) {
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

// ---- how a film or photo is seen and heard

void FilePlayer::audioChannel() {
    if (!m_playback.streams().nextSound()) {
        refuse();
    }
}

void FilePlayer::subtitle() {
    if (!m_playback.streams().nextSubtitle()) {
        refuse();
    }
}

void FilePlayer::zoom() {
    changeView(&engine::PictureView::nextZoom);
}

void FilePlayer::rotate() {
    changeView(&engine::PictureView::turn);
}

void FilePlayer::changeView(void (engine::PictureView::*change)()) {
    if (shows(model::MediaKind::Music)) {
        refuse();
        return;
    }
    m_playback.changeView(change);
}

} // namespace zm::disc::player
