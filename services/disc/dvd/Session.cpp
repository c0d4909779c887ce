#include "services/disc/dvd/Session.h"

#include "services/disc/dvd/Redraws.h"
#include "services/disc/dvd/TouchedPoint.h"
#include "services/disc/dvd/WireRecord.h"
#include "services/disc/log/Log.h"

#include <algorithm>
#include <utility>

namespace zm::disc::dvd {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int64_t TicksPerMillisecond = 90;
// Units are pushed this long before they are shown.
constexpr int64_t Ahead = TicksPerSecond;
// The disc is told this long before the last picture that all have been shown, so that a menu that begins
// anew does not stop for a moment.
constexpr int64_t WaitMargin = 150 * TicksPerMillisecond;
// The first picture behind a still one comes this long after now.
constexpr int64_t StillMargin = 40 * TicksPerMillisecond;
constexpr engine::Milliseconds Tick{20};
constexpr engine::Milliseconds ReportTime{250};
constexpr engine::Milliseconds ScanTick{125};
constexpr int64_t ScanEnd = TicksPerSecond / 2;
// As for any read of a disc.
constexpr std::chrono::seconds ReadDeadline{8};
// What a decoder may take for the first picture.
constexpr std::chrono::milliseconds PictureDeadline{1000};
// What the change to pause or play may take.
constexpr std::chrono::milliseconds PauseDeadline{200};
constexpr int PacketsAtOnce = 64;

engine::Milliseconds milliseconds(int64_t ticks) {
    return engine::Milliseconds(ticks / TicksPerMillisecond);
}

zm::dvd::Command command(zm::dvd::Operation operation, int first = 0, int second = 0, int third = 0) {
    zm::dvd::Command made;
    made.operation = operation;
    made.first = first;
    made.second = second;
    made.third = third;
    return made;
}

void highlight(Pipeline& pipeline, const NavPack& pack, int button, uint32_t MenuButton::*colours) {
    if (button < 1 || static_cast<size_t>(button) > pack.buttons.size()) {
        pipeline.noHighlight();
        return;
    }
    const auto& chosen = pack.buttons[static_cast<size_t>(button) - 1];
    pipeline.highlight(button, chosen, chosen.*colours);
}

} // namespace

Session::Session(EventLoop& loop, Listener& listener, engine::FrameSink& frames, const SoundMaker& makeSound)
    : m_loop(loop), m_listener(listener), m_frames(frames), m_makeSound(makeSound) {}

void Session::start(const std::string& path, engine::StartMode mode, const std::optional<DvdPlace>& place) {
    m_mode = mode;
    m_begin = place;
    auto reader = ReaderProcess::start(path);
    if (!reader) {
        fail(reader.error());
        return;
    }
    m_readerProcess = (*reader)->pid();
    m_reader.emplace(std::move(*reader));
    m_pipeline.emplace(
        m_loop, m_frames, m_makeSound,
        PipelineEvents{[this] { m_prerolled = true; }, [this](const std::string& reason) { fail(reason); }});
    if (!m_pipeline->failure().empty()) {
        fail(m_pipeline->failure());
        return;
    }
    m_feed.emplace(*m_pipeline);
    if (mode == engine::StartMode::Playing) {
        m_pipeline->play();
    }
    m_heard = Clock::now();
    m_ticks = everyInterval(m_loop, Tick, [this, redraws = Redraws()]() mutable {
        tick();
        if (m_shown && redraws.isDue(m_drawn)) {
            drawButton(&MenuButton::chosen);
        }
    });
    readOn();
}

void Session::fail(const std::string& reason) {
    m_readable.reset();
    m_ticks.reset();
    m_readerProcess = 0;
    m_reader.reset();
    m_listener.dvdFailed(reason);
}

// ---- what comes from the reader

bool Session::farEnough() const {
    if (m_reader->outstanding()) {
        return false;
    }
    // Of a scan only the first picture of each place counts.
    const bool scanned = m_scanSpeed != 0 && m_idle == Idle::Wait;
    return scanned || m_idle == Idle::Repeat ||
           (m_feed->begun() && m_feed->unit().begin > m_pipeline->runningTime() + Ahead);
}

void Session::readOn() {
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
            takeRefusal();
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

void Session::take(const std::vector<uint8_t>& packet) {
    const auto head = recordIn<zm::dvd::Head>(packet);
    if (!head) {
        return;
    }
    const auto with = [&]<class Record>(auto handle, std::type_identity<Record>) {
        if (const auto record = recordIn<Record>(packet)) {
            handle(*record);
        }
    };
    switch (head->event) {
    case zm::dvd::Event::Disc:
        with(
            [this](const zm::dvd::DiscEvent& event) {
                const size_t count = std::min<size_t>(event.titles, zm::dvd::MaxTitles);
                m_listener.dvdOpened({{event.title.begin(), event.title.begin() + count}});
                if (m_begin) {
                    ask(command(zm::dvd::Operation::Chapter, m_begin->title, m_begin->chapter));
                }
            },
            std::type_identity<zm::dvd::DiscEvent>());
        break;
    case zm::dvd::Event::Blocks:
        if (packet.size() > sizeof(zm::dvd::BlocksEvent)) {
            takeBlocks(behind<zm::dvd::BlocksEvent>(packet));
        }
        break;
    case zm::dvd::Event::Picture:
        if (m_idle == Idle::No) {
            m_feed->pushStandingPicture(behind<zm::dvd::PictureEvent>(packet));
        }
        break;
    case zm::dvd::Event::Place:
        with([&](const zm::dvd::PlaceEvent& event) { takePlace(event, behind<zm::dvd::PlaceEvent>(packet)); },
             std::type_identity<zm::dvd::PlaceEvent>());
        break;
    case zm::dvd::Event::Still:
        with([this](const zm::dvd::StillEvent& event) { takeStill(event.seconds); },
             std::type_identity<zm::dvd::StillEvent>());
        break;
    case zm::dvd::Event::Wait:
        m_idle = Idle::Wait;
        break;
    case zm::dvd::Event::Stopped:
        m_feed->end();
        m_idle = Idle::Stopped;
        break;
    case zm::dvd::Event::Highlight:
        with([this](const zm::dvd::HighlightEvent& event) { takeHighlight(event.button); },
             std::type_identity<zm::dvd::HighlightEvent>());
        break;
    case zm::dvd::Event::Colours:
        with([this](const zm::dvd::ColoursEvent& event) { m_pipeline->colours(event.colours); },
             std::type_identity<zm::dvd::ColoursEvent>());
        break;
    case zm::dvd::Event::Sound:
        with([this](const zm::dvd::SoundEvent& event) { m_feed->choose(event); },
             std::type_identity<zm::dvd::SoundEvent>());
        break;
    case zm::dvd::Event::Subtitle:
        with([this](const zm::dvd::SubtitleEvent& event) { m_feed->choose(event); },
             std::type_identity<zm::dvd::SubtitleEvent>());
        break;
    case zm::dvd::Event::Streams:
        with([this](const zm::dvd::StreamsEvent& event) { takeStreams(event); },
             std::type_identity<zm::dvd::StreamsEvent>());
        break;
    case zm::dvd::Event::ReadError:
        with([this](const zm::dvd::ReadErrorEvent& event) { takeReadError(event.over != 0); },
             std::type_identity<zm::dvd::ReadErrorEvent>());
        break;
    case zm::dvd::Event::Done:
        break;
    }
}

// The disc has been led to the chapter where it is to begin; from there its sounds and times are known.
bool Session::goOnToBegin(const zm::dvd::PlaceEvent& event) {
    const auto place = std::exchange(m_begin, std::nullopt);
    if (!place || event.domain != zm::dvd::Domain::Title || event.title != place->title) {
        return false;
    }
    auto streams = command(zm::dvd::Operation::Streams, place->sound, place->subtitle,
                           static_cast<int>(place->position.count()));
    streams.title = event.title;
    ask(streams);
    return true;
}

void Session::takePlace(const zm::dvd::PlaceEvent& event, std::span<const uint8_t> bytes) {
    m_reader->tell(command(zm::dvd::Operation::Taken));
    auto pack = readNavPack(bytes, event.wide != 0);
    if (goOnToBegin(event)) {
        return;
    }
    // A damaged one takes the place that it has behind the one before, without anything to see.
    const bool lost = !pack;
    if (lost) {
        pack.emplace();
    }
    if (m_scanSpeed != 0 && m_feed->begun()) {
        m_feed->end();
        m_feed->stand(true); // the decoder gives its picture out
        m_idle = Idle::Wait;
        return;
    }
    m_feed->end();
    if (repeats(event)) {
        m_idle = Idle::Repeat;
        return;
    }
    if (event.lines != m_lines) {
        m_lines = event.lines;
        m_pipeline->lines(static_cast<int>(m_lines));
    }
    const int64_t earliest = std::exchange(m_afterStill, false) ? m_pipeline->runningTime() + StillMargin : 0;
    m_feed->begin(*pack, lost, earliest);
    Moment moment;
    moment.span = m_feed->unit();
    moment.generation = m_reader->generation();
    moment.place = withAngle(event);
    moment.button = event.button;
    moment.sound = m_feed->sound();
    moment.subtitle = m_feed->subtitle();
    moment.streams = m_streams;
    const Moment* before = !m_moments.empty() ? &m_moments.back() : m_shown ? &*m_shown : nullptr;
    if (before && pack->buttons.empty() && pack->change >= ButtonChange::Same) {
        pack->buttons = before->pack.buttons;
    }
    moment.pack = std::move(*pack);
    if (!m_prerolled && m_moments.empty()) {
        // The first picture comes with its button; later ones wait behind those that are drawn already.
        highlight(*m_pipeline, moment.pack, moment.button, &MenuButton::chosen);
    }
    m_moments.push_back(std::move(moment));
}

// What the reader had sent before it heard of another angle says so.
zm::dvd::PlaceEvent Session::withAngle(zm::dvd::PlaceEvent place) {
    const bool sameTitle = m_shown && m_shown->place.title == place.title && m_angle <= place.angles;
    if (!sameTitle || place.angle == m_angle) {
        m_angle = 0;
    }
    place.angle = m_angle > 0 ? m_angle : place.angle;
    return place;
}

void Session::takeBlocks(std::span<const uint8_t> blocks) {
    while (blocks.size() >= zm::dvd::BlockBytes && m_reader) {
        for (const auto& each : splitPack(blocks.first(zm::dvd::BlockBytes))) {
            if (each.scrambled) {
                fail("copy-protected: its film is encrypted and cannot be played");
                return;
            }
            if (m_idle == Idle::No) {
                m_feed->push(each, m_scanSpeed == 0 ? Wanted::All : Wanted::Pictures);
            }
        }
        blocks = blocks.subspan(zm::dvd::BlockBytes);
    }
}

// The button that the disc itself has chosen, for what was read last.
void Session::takeHighlight(int button) {
    if (!m_moments.empty()) {
        m_moments.back().button = button;
    } else if (m_shown) {
        m_shown->button = button;
    }
}

void Session::takeStreams(const zm::dvd::StreamsEvent& event) {
    auto streams = std::make_shared<Streams>();
    streams->sounds.assign(event.sound.begin(),
                           event.sound.begin() + std::min<size_t>(event.sounds, zm::dvd::MaxSounds));
    streams->subtitles.assign(event.subtitle.begin(),
                              event.subtitle.begin() +
                                  std::min<size_t>(event.subtitles, zm::dvd::MaxSubtitles));
    m_streams = std::move(streams);
}

void Session::takeStill(int seconds) {
    m_feed->end();
    m_feed->stand(true);
    m_idle = Idle::Still;
    m_stillEnd.reset();
    if (seconds != zm::dvd::EndlessStill) {
        m_stillEnd = m_feed->unit().end + seconds * TicksPerSecond;
    }
}

void Session::takeReadError(bool over) {
    if (over) {
        fail("read error");
        return;
    }
    logWarning("a chapter cannot be read\n");
    m_listener.dvdGaveUpChapter();
}

// Whether the film, in its own course, leaves what shall be repeated.
bool Session::repeats(const zm::dvd::PlaceEvent& next) const {
    const Moment* last = !m_moments.empty() ? &m_moments.back() : m_shown ? &*m_shown : nullptr;
    if (m_repeat == Repeat::Nothing || !m_feed->begun() || !last || !last->inTitle()) {
        return false;
    }
    const bool leavesTitle = next.domain != zm::dvd::Domain::Title || next.title != last->place.title;
    return leavesTitle || (m_repeat == Repeat::Chapter && next.chapter != last->place.chapter);
}

void Session::arriveElsewhere() {
    m_feed->restart();
    m_moments.clear();
    m_afterStill = false;
    m_idle = Idle::No;
    m_stillEnd.reset();
    m_prerolled = false;
    m_arrived = false;
    m_drawn = 0;
}

// ---- what is seen

void Session::tick() {
    followPicture();
    leaveIdle();
    scanStep();
    if (m_reader) {
        readOn();
    }
    watchReader();
    watchPicture();
    watchPause();
    if (m_reader && Clock::now() >= m_nextReport && m_mode == engine::StartMode::Playing &&
        m_scanSpeed == 0) {
        report();
    }
}

void Session::followPicture() {
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

void Session::showMoment(const Moment& moment) {
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

void Session::drawButton(uint32_t MenuButton::*colours) {
    m_drawn = m_shown->button;
    highlight(*m_pipeline, m_shown->pack, m_drawn, colours);
}

void Session::goOn(zm::dvd::Operation operation) {
    m_idle = Idle::No;
    m_heard = Clock::now();
    m_reader->tell(command(operation));
}

void Session::leaveIdle() {
    if (m_idle == Idle::No || m_scanSpeed != 0 || !m_reader || m_reader->outstanding()) {
        return;
    }
    const int64_t now = m_pipeline->runningTime();
    if (m_idle == Idle::Still && m_stillEnd && now >= *m_stillEnd) {
        m_feed->stand(false);
        m_afterStill = true;
        goOn(zm::dvd::Operation::StillOver);
    } else if (m_idle == Idle::Wait && now + WaitMargin >= m_feed->unit().end) {
        goOn(zm::dvd::Operation::WaitOver);
    } else if (m_idle == Idle::Repeat && now >= m_feed->unit().end && m_shown) {
        const bool chapter = m_repeat == Repeat::Chapter;
        jump(zm::dvd::Operation::Chapter, m_shown->place.title, chapter ? m_shown->place.chapter : 1);
    } else if (m_idle == Idle::Stopped && now >= m_feed->unit().end) {
        if (m_repeat != Repeat::Nothing && m_shown && m_shown->inTitle()) {
            m_idle = Idle::Repeat;
            return;
        }
        m_idle = Idle::No;
        m_listener.dvdEnded();
    }
}

void Session::watchReader() {
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

// Where the film holds no picture that can be decoded nothing would begin, not even its sound.
void Session::watchPicture() {
    const bool blind = m_reader && m_feed->begun() && !m_prerolled && (m_idle != Idle::No || farEnough());
    if (!blind) {
        m_blind.reset();
    } else if (!m_blind) {
        m_blind = Clock::now();
    } else if (Clock::now() - *m_blind > PictureDeadline) {
        m_blind.reset();
        m_feed->giveUp();
    }
}

// As its time does not go on meanwhile nothing more would be read.
void Session::watchPause() {
    const bool waits =
        m_reader && m_prerolled && !m_pipeline->settled() && (m_idle != Idle::No || farEnough());
    if (!waits) {
        m_waits.reset();
    } else if (!m_waits) {
        m_waits = Clock::now();
    } else if (Clock::now() - *m_waits > PauseDeadline) {
        m_waits.reset();
        passPause();
    }
}

int64_t Session::position() const {
    return m_shown ? m_shown->position(m_pipeline->runningTime()) : 0;
}

void Session::report() {
    m_nextReport = Clock::now() + ReportTime;
    if (m_shown) {
        m_listener.dvdShows(m_shown->scene(m_scanSpeed != 0 ? m_scanPosition : position()));
    }
}

// ---- commands

void Session::play() {
    m_mode = engine::StartMode::Playing;
    if (!m_reader) {
        return;
    }
    if (m_scanSpeed != 0) {
        jump(zm::dvd::Operation::Time, static_cast<int>(milliseconds(m_scanPosition).count()));
    }
    m_pipeline->play();
}

void Session::pause() {
    m_mode = engine::StartMode::Paused;
    if (m_reader) {
        m_scanSpeed = 0;
        m_pipeline->pause();
        if (m_feed->stands()) {
            passPause();
        }
    }
}

// A change to pause or play waits for the picture and the sound that come next, and for now nothing comes.
void Session::passPause() {
    m_feed->passPicture(m_pipeline->runningTime());
    if (m_idle != Idle::No) {
        m_feed->passSound(m_pipeline->runningTime());
    }
}

void Session::jump(zm::dvd::Operation operation, int first, int second) {
    m_scanSpeed = 0;
    if (operation == zm::dvd::Operation::Time) {
        goToTime(first);
    } else {
        ask(command(operation, first, second));
    }
}

void Session::ask(const zm::dvd::Command& wish) {
    if (m_reader) {
        m_heard = Clock::now();
        m_asked.reset();
        m_reader->ask(wish);
        readOn();
    }
}

// The reader may have gone on into what follows the title; then it is led back.
void Session::askInTitle(zm::dvd::Command wish, const DvdPlace& place) {
    wish.title = place.title;
    if (m_reader) {
        m_heard = Clock::now();
        m_reader->ask(wish);
        m_asked = place;
        readOn();
    }
}

void Session::takeRefusal() {
    if (const auto place = std::exchange(m_asked, std::nullopt)) {
        m_begin = place;
        ask(command(zm::dvd::Operation::Chapter, place->title, place->chapter));
    } else if (m_scanSpeed == 0 && !std::exchange(m_begin, std::nullopt)) {
        m_listener.dvdRefused();
    }
}

void Session::press(int x, int y) {
    if (!m_reader || !m_shown) {
        return;
    }
    const auto [column, line] = pointOfPicture(x, y);
    const int number = m_shown->pack.buttonAt(column, line);
    if (number == 0) {
        return;
    }
    if (m_shown->place.prohibited & zm::dvd::NoButton) {
        m_listener.dvdRefused();
        return;
    }
    m_shown->button = number;
    for (auto& moment : m_moments) {
        moment.button = number; // they were read with the button of before
    }
    drawButton(&MenuButton::pressed);
    auto pressed = command(zm::dvd::Operation::Button, number, static_cast<int>(m_shown->place.number));
    pressed.seen = m_shown->generation;
    ask(pressed);
    m_listener.dvdPressed();
}

void Session::streams(int sound, int subtitle) {
    if (m_shown) {
        const engine::Milliseconds time = milliseconds(position());
        askInTitle(command(zm::dvd::Operation::Streams, sound, subtitle, static_cast<int>(time.count())),
                   {m_shown->place.title, m_shown->place.chapter, time, sound, subtitle});
    }
}

void Session::goToTime(int milliseconds) {
    if (m_shown) {
        askInTitle(
            command(zm::dvd::Operation::Time, milliseconds),
            {m_shown->place.title, m_shown->place.chapter, engine::Milliseconds(milliseconds), -1, -1});
    }
}

void Session::angle(int angle) {
    if (!m_reader || !m_shown) {
        return;
    }
    m_reader->tell(command(zm::dvd::Operation::Angle, angle));
    m_angle = angle;
    m_shown->place.angle = angle;
    for (auto& moment : m_moments) {
        moment.place.angle = angle; // the picture follows as soon as what was read ahead has been shown
    }
    report();
}

void Session::fault(int kind) {
    if (m_reader) {
        m_reader->tell(command(zm::dvd::Operation::Fault, kind));
    }
}

std::pair<int, int> Session::pointOfPicture(int x, int y) const {
    return touchedPoint(x, y, static_cast<int>(m_shown->place.lines), m_shown->place.wide != 0, m_zoom);
}

void Session::view(const engine::PictureView& view) {
    m_zoom = view.zoom();
    if (!m_reader) {
        return;
    }
    m_pipeline->view(view);
    if (m_mode == engine::StartMode::Paused || m_idle == Idle::Still) {
        m_pipeline->repeatPicture();
    }
}

void Session::cover(bool covered) {
    m_frames.cover(covered);
    if (!covered && m_reader) {
        m_pipeline->repeatPicture();
    }
}

void Session::scan(int speed) {
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

void Session::scanStep() {
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
        m_listener.dvdScanned(m_scanPosition == 0 ? engine::ScanEdge::Beginning : engine::ScanEdge::End);
    } else if (!m_reader->outstanding()) {
        // A step that is still being read is not overtaken; the position goes on in its own time.
        goToTime(static_cast<int>(milliseconds(m_scanPosition).count()));
    }
}

} // namespace zm::disc::dvd
