#pragma once

#include "services/disc/player/DiscResume.h"
#include "services/disc/player/FilmStreams.h"
#include "services/disc/player/PassageRepeat.h"
#include "services/disc/player/PlayStatus.h"
#include "services/disc/player/ReadErrorSkip.h"
#include "services/disc/player/TrackAnnouncer.h"

#include <functional>
#include <memory>

namespace zm::disc::player {

/** Plays the items of a queue, one after the other; what the user wants of them is said by `FilePlayer`. */
class FilePlayback : private engine::Listener {
public:
    /** `unplayable` is called when not one item of a whole round could be played. */
    FilePlayback(EventLoop& loop, model::DiscState& state, model::PlayModes& modes, engine::Engine& engine,
                 std::shared_ptr<medium::Medium> medium, std::shared_ptr<const model::Contents> contents,
                 DiscResume& resume, std::function<void()> unplayable);
    ~FilePlayback() override;

    FileQueue& queue() { return m_queue; }
    FilmStreams& streams() { return m_streams; }
    PlayStatus& status() { return m_status; }
    TrackAnnouncer& announcer() { return m_announcer; }
    engine::Milliseconds position() const { return m_position; }

    /** As `Transport` says. */
    void sourceOn();
    void sourceOff();
    void playMusic();

    /** Plays the queue's current item. */
    void begin(engine::Milliseconds position = engine::Milliseconds{0},
               engine::StartMode mode = engine::StartMode::Playing);
    /** The current item goes on, or begins where it was left. */
    void play();
    void pause();
    void stop();
    void scan(ScanDirection direction);
    void seek(engine::Milliseconds position);
    PassageRepeat::Change pressPassage();
    void changeView(void (engine::PictureView::*change)());
    /** The user's modes are others. */
    void modesChanged();
    /** Whether "PlayTrack(first, second)" is the application's answer to a read error; then it is dealt with. */
    bool swallows(int first, int second) { return m_skip.swallows(first, second); }

private:
    void engineStreams(const engine::Streams& streams) override;
    void engineStarted(engine::Milliseconds length) override;
    void engineMoved(engine::Milliseconds position, engine::Milliseconds length) override;
    void engineEnded() override;
    void engineFollowed(engine::Milliseconds length) override;
    void engineScanned(engine::ScanEdge edge) override;
    void engineFailed(const std::string& reason) override;

    engine::Playable playable(size_t index) const;
    void enter(engine::Milliseconds position, engine::StartMode mode);
    void prepareNext();
    void forgetNext();
    void advance();
    void skipUnreadable();
    void halt(model::PlayState state);
    void resume();
    void showSlide();
    void publishState(model::PlayState state);
    void publishTime();
    void noteResume();

    EventLoop& m_loop;
    model::DiscState& m_state;
    model::PlayModes& m_modes;
    engine::Engine& m_engine;
    std::shared_ptr<medium::Medium> m_medium;
    DiscResume& m_resume;
    std::function<void()> m_unplayable;
    FileQueue m_queue;
    FilmStreams m_streams;
    PlayStatus m_status;
    TrackAnnouncer m_announcer;
    bool m_source = false;
    engine::StartMode m_mode = engine::StartMode::Playing;
    engine::Milliseconds m_position{0};
    engine::Milliseconds m_length{0};
    PassageRepeat m_passage;
    engine::PictureView m_view;
    SourceHandle m_slide;   ///< runs while a photo is shown in a slide show
    SourceHandle m_toMusic; ///< runs from a voice request until music begins
    ReadErrorSkip m_skip;
};

} // namespace zm::disc::player
