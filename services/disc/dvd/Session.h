#pragma once

#include "base/EventLoop.h"
#include "services/disc/dvd/CurtainFrames.h"
#include "services/disc/dvd/Listener.h"
#include "services/disc/dvd/Moment.h"
#include "services/disc/dvd/Pipeline.h"
#include "services/disc/dvd/ReaderDialogue.h"
#include "services/disc/dvd/UnitFeed.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <utility>

namespace zm::disc::dvd {

/** What is played again and again. */
enum class Repeat { Nothing, Chapter, Title };

/**
 * Plays one DVD from its first play on: takes what the reader process sends, hands it to the decoders about a
 * second before it is seen, and keeps what belongs to each picture until that picture is shown. Everything on
 * the thread of `loop`, where `listener` is called too.
 */
class Session {
public:
    Session(EventLoop& loop, Listener& listener, engine::FrameSink& frames, const SoundMaker& makeSound);

    /** From `place` on where the disc still has that, else from its first play. */
    void start(const std::string& path, engine::StartMode mode, const std::optional<DvdPlace>& place);
    void play();
    void pause();
    /** Goes elsewhere; see dvd::Operation for the numbers. */
    void jump(zm::dvd::Operation operation, int first = 0, int second = 0);
    /** Presses the button at a point of the screen, counted as 720 wide and 480 high; without one nothing happens. */
    void press(int x, int y);
    /** Other sound (or -1) and subtitle (-1, dvd::NoSubtitle); the place stays. */
    void streams(int sound, int subtitle);
    void angle(int angle);
    /** Pictures only, `speed` times as fast; backwards if negative. */
    void scan(int speed);
    void repeat(Repeat repeat) { m_repeat = repeat; }
    void view(const engine::PictureView& view);
    /** Takes the picture away, and shows it again. */
    void cover(bool covered);
    /** See dvd::Operation::Fault. */
    void fault(int kind);
    /** The reader's process, or 0. From any thread. */
    int reader() const { return m_readerProcess; }

private:
    /** What the reader waits for. */
    enum class Idle { No, Still, Wait, Stopped, Repeat };

    void ask(const zm::dvd::Command& wish);
    void goToTime(int milliseconds);
    void askInTitle(zm::dvd::Command wish, const DvdPlace& place);
    void takeRefusal();
    void readOn();
    bool farEnough() const;
    void take(const std::vector<uint8_t>& packet);
    bool goOnToBegin(const zm::dvd::PlaceEvent& event);
    void takePlace(const zm::dvd::PlaceEvent& event, std::span<const uint8_t> pack);
    zm::dvd::PlaceEvent withAngle(zm::dvd::PlaceEvent place);
    void takeBlocks(std::span<const uint8_t> blocks);
    void takeHighlight(int button);
    void takeStreams(const zm::dvd::StreamsEvent& event);
    void takeStill(int seconds);
    void takeReadError(bool over);
    bool repeats(const zm::dvd::PlaceEvent& next) const;
    void arriveElsewhere();

    void tick();
    void followPicture();
    void showMoment(const Moment& moment);
    void drawButton(uint32_t MenuButton::*colours);
    void leaveIdle();
    void goOn(zm::dvd::Operation operation);
    void scanStep();
    void report();
    void watchReader();
    void watchPicture();
    void watchPause();
    void passPause();
    int64_t position() const;
    std::pair<int, int> pointOfPicture(int x, int y) const;
    void fail(const std::string& reason);

    EventLoop& m_loop;
    Listener& m_listener;
    CurtainFrames m_frames;
    SoundMaker m_makeSound;
    std::optional<Pipeline> m_pipeline;
    std::optional<ReaderDialogue> m_reader;
    std::atomic<int> m_readerProcess{0};
    SourceHandle m_readable;
    SourceHandle m_ticks;
    engine::StartMode m_mode = engine::StartMode::Playing;
    std::chrono::steady_clock::time_point m_heard; ///< from the reader

    // What is pushed.
    std::optional<UnitFeed> m_feed;
    std::deque<Moment> m_moments; ///< not yet shown
    bool m_afterStill = false;
    uint32_t m_lines = 0;
    std::shared_ptr<const Streams> m_streams;
    Idle m_idle = Idle::No;
    std::optional<int64_t> m_stillEnd; ///< running time
    Repeat m_repeat = Repeat::Nothing;
    std::optional<DvdPlace> m_begin; ///< where to go first
    std::optional<DvdPlace> m_asked; ///< where in the title that is seen

    // What is seen.
    std::optional<Moment> m_shown;
    int m_drawn = 0; ///< button drawn
    int m_angle = 0; ///< asked for; what is on its way may still be of the one before
    double m_zoom = 1.0;
    bool m_prerolled = false;
    std::optional<std::chrono::steady_clock::time_point> m_blind; ///< since when only a picture is missing
    std::optional<std::chrono::steady_clock::time_point>
        m_waits; ///< since when only the change to pause or play is missing
    bool m_arrived = false;
    int m_scanSpeed = 0;
    int64_t m_scanPosition = 0;
    std::chrono::steady_clock::time_point m_nextStep;
    std::chrono::steady_clock::time_point m_nextReport;
};

} // namespace zm::disc::dvd
