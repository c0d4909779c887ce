#pragma once

#include "services/disc/engine/Engine.h"
#include "services/disc/model/Contents.h"
#include "services/disc/model/DiscState.h"
#include "services/disc/player/DiscResume.h"
#include "services/disc/player/LateTexts.h"
#include "services/disc/player/PassageRepeat.h"
#include "services/disc/player/PlayOrder.h"
#include "services/disc/player/ReadErrorSkip.h"
#include "services/disc/player/ScanSpeed.h"
#include "services/disc/player/TrackAddress.h"
#include "services/disc/player/Transport.h"
#include "services/disc/player/VcdSound.h"

#include <array>
#include <functional>
#include <memory>
#include <optional>

namespace zm::disc::player {

/** The files of a data disc or the tracks of a CD: which one plays, and what each command means for
 * them. */
class FilePlayer : public Transport, private engine::Listener {
public:
    /** `contents` has at least one item; the kind of the one that `resume` names is announced already. Playing
     * begins with `sourceOn`. `unplayable` is called when not one item of a whole round could be played. */
    FilePlayer(EventLoop& loop, model::DiscState& state, model::PlayModes& modes, engine::Engine& engine,
               std::shared_ptr<medium::Medium> medium, std::shared_ptr<const model::Contents> contents,
               DiscResume& resume, std::function<void()> unplayable);
    ~FilePlayer() override;
    /** Has the disc's own play lists take over, where it has some; the player lives until that has been done. */
    void setControlSwitch(std::function<void()> takeOver) { m_takeOver = std::move(takeOver); }

    void sourceOn() override;
    void sourceOff() override;
    void playMusic() override;

    void next() override;
    void previous() override;
    void scan(ScanDirection direction) override;
    void pause() override;
    void play() override;
    void stop() override;
    void shuffle(int mode) override;
    void repeat(int mode) override;
    void repeatPassage() override;
    void audioChannel() override;
    void subtitle() override;
    void playbackControl() override;
    void zoom() override;
    void rotate() override;
    void playTrack(int first, int second) override;
    void seek(std::chrono::seconds position) override;
    void browse(int mediaType, int folder) override;

protected:
    bool playing() const override { return m_playState == model::PlayState::Playing; }
    void refuse() override;

private:
    void engineStreams(const engine::Streams& streams) override;
    void engineStarted(engine::Milliseconds length) override;
    void engineMoved(engine::Milliseconds position, engine::Milliseconds length) override;
    void engineEnded() override;
    void engineFollowed(engine::Milliseconds length) override;
    void engineScanned(engine::ScanEdge edge) override;
    void engineFailed(const std::string& reason) override;

    PlayOrder& order() { return *m_orders[model::kindIndex(m_kind)]; }
    const model::Item& item() { return m_contents->of(m_kind)[order().current()]; }
    void choose(model::MediaKind kind);
    void begin(engine::Milliseconds position, engine::StartMode mode = engine::StartMode::Playing);
    void enter(engine::Milliseconds position, engine::StartMode mode);
    engine::Playable playable(size_t index) const;
    void prepareNext();
    void forgetNext();
    void advance();
    void forgetFailures();
    const model::KindNumbers* kindToTry() const;
    void leaveKind();
    void skipUnreadable();
    void halt(model::PlayState state);
    void leaveScan();
    void showSlide();
    void changeView(void (engine::PictureView::*change)());
    void useStreams(const engine::StreamChoice& choice);
    void forgetStreams();
    void announceType();
    void announceTrack();
    void announceTexts();
    void announceTrackAgain();
    void publishStreams();
    void publishState(model::PlayState state);
    void noteResume();
    void publishTime();
    void publishModes();
    model::TrackInfo trackInfo();

    EventLoop& m_loop;
    model::DiscState& m_state;
    model::PlayModes& m_modes;
    engine::Engine& m_engine;
    std::shared_ptr<medium::Medium> m_medium;
    std::shared_ptr<const model::Contents> m_contents;
    DiscResume& m_resume;
    std::function<void()> m_unplayable;
    std::array<std::optional<PlayOrder>, model::KindCount> m_orders;
    model::MediaKind m_kind;
    model::MediaKind m_browsed;
    model::MediaKind m_announced; ///< kind of the "mediatype" published last
    model::PlayState m_playState = model::PlayState::Loading;
    bool m_source = false;
    engine::StartMode m_mode = engine::StartMode::Playing;
    engine::Milliseconds m_position{0};
    engine::Milliseconds m_length{0};
    ScanSpeed m_scan;
    PassageRepeat m_passage;
    std::optional<PlayOrder> m_after; ///< the order once what is prepared follows
    engine::PictureView m_view;
    engine::Streams m_streams; ///< of a video that plays
    engine::StreamChoice m_choice;
    bool m_playbackControl = false; ///< what the user has set for a VCD without play lists
    std::function<void()> m_takeOver;
    VcdSound m_sound; ///< of a VCD
    LateTexts m_texts;
    SourceHandle m_again;   ///< runs until a track is announced once more
    SourceHandle m_slide;   ///< runs while a photo is shown in a slide show
    SourceHandle m_toMusic; ///< runs from a voice request until music begins
    size_t m_failures = 0;  ///< items in a row that could not be played
    int m_brokenKinds = 0; ///< mixed bits of the kinds of which a whole round has failed since one was played
    ReadErrorSkip m_skip;
};

} // namespace zm::disc::player
