#include "services/disc/dvd/DvdSession.h"

#include "services/disc/dvd/WireRecord.h"
#include "services/disc/engine/PicturePlace.h"
#include "services/disc/log/Log.h"

#include <algorithm>
#include <utility>

namespace zm::disc {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int64_t TicksPerSecond = 90000;
constexpr int64_t TicksPerMillisecond = 90;
// Units are pushed this long before they are shown.
constexpr int64_t Ahead = TicksPerSecond;
// The disc is told this long before the last picture that all have been shown, so that a menu that begins
// anew does not stop for a moment.
constexpr int64_t WaitMargin = 150 * TicksPerMillisecond;
// The first picture behind a still one comes this long after now.
constexpr int64_t StillMargin = 40 * TicksPerMillisecond;
constexpr Milliseconds Tick{20};
constexpr Milliseconds ReportTime{250};
constexpr Milliseconds ScanTick{125};
constexpr int64_t ScanEnd = TicksPerSecond / 2;
// As for any read of a disc.
constexpr std::chrono::seconds ReadDeadline{8};
constexpr int PacketsAtOnce = 64;

constexpr int TouchWidth = 720;

DvdPad padOf(dvd::SoundKind kind) {
    switch (kind) {
    case dvd::SoundKind::Mpeg:
        return DvdPad::Mpeg;
    case dvd::SoundKind::Lpcm:
        return DvdPad::Lpcm;
    case dvd::SoundKind::Dts:
        return DvdPad::Dts;
    default:
        return DvdPad::Ac3;
    }
}

Milliseconds milliseconds(int64_t ticks) {
    return Milliseconds(ticks / TicksPerMillisecond);
}

dvd::Command command(dvd::Operation operation, int first = 0, int second = 0, int third = 0) {
    dvd::Command made;
    made.operation = operation;
    made.first = first;
    made.second = second;
    made.third = third;
    return made;
}

} // namespace

DvdSession::DvdSession(EventLoop& loop, DvdListener& listener, FrameSink& frames, const SoundMaker& makeSound)
    : m_loop(loop), m_listener(listener), m_frames(frames), m_makeSound(makeSound) {
    m_sound.stream = -1;
}

void DvdSession::start(const std::string& path, StartMode mode) {
    m_mode = mode;
    auto reader = ReaderProcess::start(path);
    if (!reader) {
        fail(reader.error());
        return;
    }
    m_reader.emplace(std::move(*reader));
    m_pipeline.emplace(m_loop, m_frames, m_makeSound,
                       DvdPipelineEvents{[this] { m_prerolled = true; },
                                         [this](const std::string& reason) { fail(reason); }});
    if (!m_pipeline->failure().empty()) {
        fail(m_pipeline->failure());
        return;
    }
    if (mode == StartMode::Playing) {
        m_pipeline->play();
    }
    m_heard = Clock::now();
    m_ticks = everyInterval(m_loop, Tick, [this] { tick(); });
    readOn();
}

void DvdSession::fail(const std::string& reason) {
    m_readable.reset();
    m_ticks.reset();
    m_reader.reset();
    m_listener.dvdFailed(reason);
}

// ---- what comes from the reader

bool DvdSession::farEnough() const {
    if (m_reader->outstanding()) {
        return false;
    }
    // Of a scan only the first picture of each place counts.
    const bool scanned = m_scanSpeed != 0 && m_idle == Idle::Wait;
    return scanned || m_idle == Idle::Repeat ||
           (m_unitBegun && m_unit.begin > m_pipeline->runningTime() + Ahead);
}

void DvdSession::readOn() {
    std::vector<uint8_t> packet;
    for (int i = 0; i < PacketsAtOnce && m_reader && !farEnough(); ++i) {
        switch (m_reader->next(packet)) {
        case ReaderDialogue::Found::Packet:
            m_heard = Clock::now();
            take(packet);
            break;
        case ReaderDialogue::Found::Jumped:
            m_heard = Clock::now();
            arriveElsewhere();
            break;
        case ReaderDialogue::Found::Refused:
            if (m_scanSpeed == 0) {
                m_listener.dvdRefused();
            }
            break;
        case ReaderDialogue::Found::Ended:
            fail(m_reader->ending());
            return;
        case ReaderDialogue::Found::Nothing:
            if (!m_readable.active()) {
                m_readable = watchFd(m_loop, m_reader->fd(), IoEvent::Readable, [this] { readOn(); });
            }
            return;
        }
    }
    m_readable.reset(); // the next tick looks again
}

void DvdSession::take(const std::vector<uint8_t>& packet) {
    const auto head = recordIn<dvd::Head>(packet);
    if (!head) {
        return;
    }
    const auto with = [&]<class Record>(auto handle, std::type_identity<Record>) {
        if (const auto record = recordIn<Record>(packet)) {
            handle(*record);
        }
    };
    switch (head->event) {
    case dvd::Event::Disc:
        with(
            [this](const dvd::DiscEvent& event) {
                const size_t count = std::min<size_t>(event.titles, dvd::MaxTitles);
                m_listener.dvdOpened({{event.title.begin(), event.title.begin() + count}});
            },
            std::type_identity<dvd::DiscEvent>());
        break;
    case dvd::Event::Blocks:
        if (packet.size() > sizeof(dvd::BlocksEvent)) {
            takeBlocks(behind<dvd::BlocksEvent>(packet));
        }
        break;
    case dvd::Event::Place:
        with([&](const dvd::PlaceEvent& event) { takePlace(event, behind<dvd::PlaceEvent>(packet)); },
             std::type_identity<dvd::PlaceEvent>());
        break;
    case dvd::Event::Still:
        with([this](const dvd::StillEvent& event) { takeStill(event.seconds); },
             std::type_identity<dvd::StillEvent>());
        break;
    case dvd::Event::Wait:
        m_idle = Idle::Wait;
        break;
    case dvd::Event::Stopped:
        endUnit();
        m_idle = Idle::Stopped;
        break;
    case dvd::Event::Highlight:
        with([this](const dvd::HighlightEvent& event) { takeHighlight(event.button); },
             std::type_identity<dvd::HighlightEvent>());
        break;
    case dvd::Event::Colours:
        with([this](const dvd::ColoursEvent& event) { m_pipeline->colours(event.colours); },
             std::type_identity<dvd::ColoursEvent>());
        break;
    case dvd::Event::Sound:
        with([this](const dvd::SoundEvent& event) { m_sound = event; },
             std::type_identity<dvd::SoundEvent>());
        break;
    case dvd::Event::Subtitle:
        with(
            [this](const dvd::SubtitleEvent& event) {
                m_subtitle = event;
                m_pipeline->subtitleStream(event.logical, event.stream, event.visible != 0);
            },
            std::type_identity<dvd::SubtitleEvent>());
        break;
    case dvd::Event::Streams:
        with([this](const dvd::StreamsEvent& event) { takeStreams(event); },
             std::type_identity<dvd::StreamsEvent>());
        break;
    case dvd::Event::ReadError:
        with([this](const dvd::ReadErrorEvent& event) { takeReadError(event.over != 0); },
             std::type_identity<dvd::ReadErrorEvent>());
        break;
    case dvd::Event::Done:
        break;
    }
}

void DvdSession::takePlace(const dvd::PlaceEvent& event, std::span<const uint8_t> bytes) {
    m_reader->tell(command(dvd::Operation::Taken));
    auto pack = readNavPack(bytes, event.wide != 0);
    if (!pack) {
        return;
    }
    if (m_scanSpeed != 0 && m_unitBegun) {
        endUnit();
        m_pipeline->still(true); // the decoder gives its picture out
        m_idle = Idle::Wait;
        return;
    }
    endUnit();
    if (repeats(event)) {
        m_idle = Idle::Repeat;
        return;
    }
    if (event.lines != m_lines) {
        m_lines = event.lines;
        m_pipeline->lines(static_cast<int>(m_lines));
    }
    const int64_t earliest = std::exchange(m_afterStill, false) ? m_pipeline->runningTime() + StillMargin : 0;
    m_unit = m_timeline.place(pack->begin, pack->end, earliest);
    m_unitBegun = true;
    m_unitHasSound = false;
    Moment moment;
    moment.span = m_unit;
    moment.generation = m_reader->generation();
    moment.place = event;
    moment.button = event.button;
    moment.sound = m_sound.stream < 0 ? -1 : m_sound.logical;
    moment.subtitle = m_subtitle.visible ? m_subtitle.logical : -1;
    moment.streams = m_streams;
    const Moment* before = !m_moments.empty() ? &m_moments.back() : m_shown ? &*m_shown : nullptr;
    if (before && pack->buttons.empty() && pack->change >= ButtonChange::Same) {
        pack->buttons = before->pack.buttons;
    }
    moment.pack = std::move(*pack);
    m_moments.push_back(std::move(moment));
}

// At the end of a unit: sound that is not there has to be said, else everything would wait for it.
void DvdSession::endUnit() {
    if (m_unitBegun && !m_unitHasSound) {
        m_pipeline->silence(padOf(m_sound.kind), m_unit.begin, m_unit.end);
        m_unitHasSound = true;
    }
}

void DvdSession::takeBlocks(std::span<const uint8_t> blocks) {
    while (blocks.size() >= dvd::BlockBytes && m_reader) {
        for (const auto& each : splitPack(blocks.first(dvd::BlockBytes))) {
            if (each.scrambled) {
                fail("copy-protected: its film is encrypted and cannot be played");
                return;
            }
            takeFragment(each);
        }
        blocks = blocks.subspan(dvd::BlockBytes);
    }
}

void DvdSession::takeFragment(const Fragment& fragment) {
    // What comes before the first navigation pack has no place in time.
    if (!m_unitBegun || m_idle != Idle::No) {
        return;
    }
    const int64_t shift = m_timeline.shift();
    if (fragment.kind == Fragment::Kind::Video) {
        m_pipeline->push(DvdPad::Video, fragment, shift);
    } else if (fragment.kind == Fragment::Kind::Subtitle) {
        if (fragment.stream == m_subtitle.stream) {
            m_pipeline->push(DvdPad::Subtitle, fragment, shift);
        }
    } else if (fragment.stream == m_sound.stream && m_scanSpeed == 0 &&
               (m_sound.kind == dvd::SoundKind::Unknown || m_sound.kind == fragment.sound)) {
        m_sound.kind = fragment.sound;
        m_unitHasSound = true;
        m_pipeline->push(padOf(fragment.sound), fragment, shift);
    }
}

// The button that the disc itself has chosen, for what was read last.
void DvdSession::takeHighlight(int button) {
    if (!m_moments.empty()) {
        m_moments.back().button = button;
    } else if (m_shown) {
        m_shown->button = button;
    }
}

void DvdSession::takeStreams(const dvd::StreamsEvent& event) {
    auto streams = std::make_shared<DvdStreams>();
    streams->sounds.assign(event.sound.begin(),
                           event.sound.begin() + std::min<size_t>(event.sounds, dvd::MaxSounds));
    streams->subtitles.assign(event.subtitle.begin(),
                              event.subtitle.begin() + std::min<size_t>(event.subtitles, dvd::MaxSubtitles));
    m_streams = std::move(streams);
}

void DvdSession::takeStill(int seconds) {
    endUnit();
    m_pipeline->still(true);
    m_idle = Idle::Still;
    m_stillEnd.reset();
    if (seconds != dvd::EndlessStill) {
        m_stillEnd = m_unit.end + seconds * TicksPerSecond;
    }
}

void DvdSession::takeReadError(bool over) {
    if (over) {
        fail("read error");
        return;
    }
    logWarning("a chapter cannot be read\n");
    m_listener.dvdGaveUpChapter();
}

// Whether the film, in its own course, leaves what shall be repeated.
bool DvdSession::repeats(const dvd::PlaceEvent& next) const {
    const Moment* last = !m_moments.empty() ? &m_moments.back() : m_shown ? &*m_shown : nullptr;
    if (m_repeat == DvdRepeat::Nothing || !m_unitBegun || !last || !last->inTitle()) {
        return false;
    }
    const bool leavesTitle = next.domain != dvd::Domain::Title || next.title != last->place.title;
    return leavesTitle || (m_repeat == DvdRepeat::Chapter && next.chapter != last->place.chapter);
}

void DvdSession::arriveElsewhere() {
    m_pipeline->flush();
    m_timeline.restart();
    m_moments.clear();
    m_unit = {};
    m_unitBegun = false;
    m_afterStill = false;
    m_idle = Idle::No;
    m_stillEnd.reset();
    m_prerolled = false;
    m_arrived = false;
    m_drawn = 0;
}

// ---- what is seen

void DvdSession::tick() {
    followPicture();
    leaveIdle();
    scanStep();
    if (m_reader) {
        readOn();
    }
    watchReader();
    if (m_reader && Clock::now() >= m_nextReport && m_mode == StartMode::Playing && m_scanSpeed == 0) {
        report();
    }
}

void DvdSession::followPicture() {
    const int64_t now = m_pipeline->runningTime();
    while (m_prerolled && !m_moments.empty() && m_moments.front().span.begin <= now) {
        const Moment moment = std::move(m_moments.front());
        m_moments.pop_front();
        showMoment(moment);
    }
    if (m_shown && m_shown->button != m_drawn) {
        drawButton(&MenuButton::chosen);
    }
}

void DvdSession::showMoment(const Moment& moment) {
    const bool otherPlace = !m_shown || m_shown->place.title != moment.place.title ||
                            m_shown->place.chapter != moment.place.chapter ||
                            m_shown->place.domain != moment.place.domain ||
                            m_shown->pack.buttons.empty() != moment.pack.buttons.empty();
    m_shown = moment;
    if (moment.pack.change == ButtonChange::New) {
        m_drawn = 0;
    }
    if (m_scanSpeed != 0) {
        report();
    } else if (!std::exchange(m_arrived, true)) {
        m_listener.dvdArrived();
        report();
    } else if (otherPlace) {
        report();
    }
}

void DvdSession::drawButton(uint32_t MenuButton::*colours) {
    m_drawn = m_shown->button;
    const auto& buttons = m_shown->pack.buttons;
    if (m_drawn < 1 || static_cast<size_t>(m_drawn) > buttons.size()) {
        m_pipeline->noHighlight();
        return;
    }
    const auto& button = buttons[static_cast<size_t>(m_drawn) - 1];
    m_pipeline->highlight(m_drawn, button, button.*colours);
}

void DvdSession::goOn(dvd::Operation operation) {
    m_idle = Idle::No;
    m_heard = Clock::now();
    m_reader->tell(command(operation));
}

void DvdSession::leaveIdle() {
    if (m_idle == Idle::No || m_scanSpeed != 0 || !m_reader || m_reader->outstanding()) {
        return;
    }
    const int64_t now = m_pipeline->runningTime();
    if (m_idle == Idle::Still && m_stillEnd && now >= *m_stillEnd) {
        m_pipeline->still(false);
        m_afterStill = true;
        goOn(dvd::Operation::StillOver);
    } else if (m_idle == Idle::Wait && now + WaitMargin >= m_unit.end) {
        goOn(dvd::Operation::WaitOver);
    } else if (m_idle == Idle::Repeat && now >= m_unit.end && m_shown) {
        const bool chapter = m_repeat == DvdRepeat::Chapter;
        jump(dvd::Operation::Chapter, m_shown->place.title, chapter ? m_shown->place.chapter : 1);
    } else if (m_idle == Idle::Stopped && now >= m_unit.end) {
        if (m_repeat != DvdRepeat::Nothing && m_shown && m_shown->inTitle()) {
            m_idle = Idle::Repeat;
            return;
        }
        m_idle = Idle::No;
        m_listener.dvdEnded();
    }
}

void DvdSession::watchReader() {
    if (!m_reader) {
        return;
    }
    const bool expected = m_reader->outstanding() || (m_idle == Idle::No && !farEnough());
    if (!expected) {
        m_heard = Clock::now();
    } else if (Clock::now() - m_heard > ReadDeadline) {
        fail("no answer from the drive");
    }
}

int64_t DvdSession::position() const {
    if (!m_shown || !m_shown->inTitle()) {
        return 0;
    }
    const int64_t since = m_pipeline->runningTime() - m_shown->span.begin;
    return m_shown->time() + std::clamp<int64_t>(since, 0, m_shown->span.end - m_shown->span.begin);
}

DvdScene DvdSession::scene() const {
    DvdScene scene;
    const auto& place = m_shown->place;
    scene.title = m_shown->inTitle() ? place.title : 0;
    scene.chapter = m_shown->inTitle() ? place.chapter : 0;
    scene.angle = place.angle;
    scene.angles = place.angles;
    scene.buttons = !m_shown->pack.buttons.empty();
    scene.prohibited = place.prohibited;
    scene.position = milliseconds(m_scanSpeed != 0 ? m_scanPosition : position());
    scene.length = m_shown->inTitle() ? milliseconds(place.length) : Milliseconds{0};
    scene.sound = m_shown->sound;
    scene.subtitle = m_shown->subtitle;
    scene.streams = m_shown->streams;
    return scene;
}

void DvdSession::report() {
    m_nextReport = Clock::now() + ReportTime;
    if (m_shown) {
        m_listener.dvdShows(scene());
    }
}

// ---- commands

void DvdSession::play() {
    m_mode = StartMode::Playing;
    if (!m_reader) {
        return;
    }
    if (m_scanSpeed != 0) {
        jump(dvd::Operation::Time, static_cast<int>(milliseconds(m_scanPosition).count()));
    }
    m_pipeline->play();
}

void DvdSession::pause() {
    m_mode = StartMode::Paused;
    if (m_reader) {
        m_scanSpeed = 0;
        m_pipeline->pause();
    }
}

void DvdSession::jump(dvd::Operation operation, int first, int second) {
    m_scanSpeed = 0;
    ask(command(operation, first, second));
}

void DvdSession::ask(const dvd::Command& wish) {
    if (m_reader) {
        m_heard = Clock::now();
        m_reader->ask(wish);
        readOn();
    }
}

void DvdSession::press(int x, int y) {
    if (!m_reader || !m_shown || (m_shown->place.prohibited & dvd::NoButton)) {
        return;
    }
    const auto [column, line] = pointOfPicture(x, y);
    const int number = m_shown->pack.buttonAt(column, line);
    if (number == 0) {
        return;
    }
    m_shown->button = number;
    for (auto& moment : m_moments) {
        moment.button = number; // they were read with the button of before
    }
    drawButton(&MenuButton::pressed);
    auto pressed = command(dvd::Operation::Button, number, static_cast<int>(m_shown->place.number));
    pressed.seen = m_shown->generation;
    ask(pressed);
}

void DvdSession::streams(int sound, int subtitle) {
    ask(command(dvd::Operation::Streams, sound, subtitle,
                static_cast<int>(milliseconds(position()).count())));
}

void DvdSession::angle(int angle) {
    if (!m_reader || !m_shown) {
        return;
    }
    m_reader->tell(command(dvd::Operation::Angle, angle));
    m_shown->place.angle = angle;
    for (auto& moment : m_moments) {
        moment.place.angle = angle; // the picture follows as soon as what was read ahead has been shown
    }
    report();
}

void DvdSession::fault(int kind) {
    if (m_reader) {
        m_reader->tell(command(dvd::Operation::Fault, kind));
    }
}

// The application counts the screen's width as 720; the picture lies there in its own shape, enlarged or not.
std::pair<int, int> DvdSession::pointOfPicture(int x, int y) const {
    const int lines = static_cast<int>(m_shown->place.lines);
    const bool wide = m_shown->place.wide != 0;
    const auto part =
        placeOnScreen({TouchWidth, lines, (wide ? 16 : 4) * lines, (wide ? 9 : 3) * TouchWidth});
    const auto point = [this](double from, int screen, int shown, int whole) {
        return static_cast<int>(((from - screen / 2.0) / (shown * m_zoom) + 0.5) * whole);
    };
    return {point(double(x) * PictureWidth / TouchWidth, PictureWidth, part.width, TouchWidth),
            point(y, PictureHeight, part.height, lines)};
}

void DvdSession::view(const PictureView& view) {
    m_zoom = view.zoom();
    if (m_reader) {
        m_pipeline->view(view);
    }
}

void DvdSession::cover(bool covered) {
    m_frames.cover(covered);
    if (!covered && m_reader) {
        m_pipeline->repeatPicture();
    }
}

void DvdSession::scan(int speed) {
    if (!m_reader || !m_shown || !m_shown->inTitle()) {
        return;
    }
    if (m_scanSpeed == 0) {
        m_scanPosition = position();
        m_nextStep = Clock::now();
        m_pipeline->pause();
    }
    m_scanSpeed = speed;
}

void DvdSession::scanStep() {
    const auto now = Clock::now();
    if (m_scanSpeed == 0 || now < m_nextStep || !m_reader || !m_shown) {
        return;
    }
    m_nextStep += ScanTick;
    const int64_t step = m_scanSpeed * ScanTick.count() * TicksPerMillisecond;
    const int64_t last = std::max<int64_t>(m_shown->place.length - ScanEnd, 0);
    m_scanPosition = std::clamp<int64_t>(m_scanPosition + step, 0, last);
    if (m_scanPosition == 0 || m_scanPosition == last) {
        m_nextStep = Clock::time_point::max();
        m_listener.dvdScanned(m_scanPosition == 0 ? ScanEdge::Beginning : ScanEdge::End);
    } else if (!m_reader->outstanding()) {
        // A step that is still being read is not overtaken; the position goes on in its own time.
        ask(command(dvd::Operation::Time, static_cast<int>(milliseconds(m_scanPosition).count())));
    }
}

} // namespace zm::disc
