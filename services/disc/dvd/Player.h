#pragma once

#include "services/disc/dvd/DvdResume.h"
#include "services/disc/dvd/Engine.h"
#include "services/disc/model/DiscState.h"
#include "services/disc/player/PassageRepeat.h"
#include "services/disc/player/ScanSpeed.h"
#include "services/disc/player/Transport.h"

#include <memory>
#include <optional>
#include <string>

namespace zm::disc::dvd {

/** A DVD in the drive: what each command means for it, and what the head unit is told of it. */
class Player : public player::Transport, private Listener {
public:
    /** Says why the disc cannot be played (any further). */
    using Failed = std::function<void(const std::string& reason)>;

    /** Playing begins with `sourceOn`, where `resume` says. */
    Player(EventLoop& loop, model::DiscState& state, model::PlayModes& modes, std::unique_ptr<Engine> engine,
           DvdResume& resume, std::string path, Failed failed);

    void sourceOn() override;
    void sourceOff() override;

    void next() override;
    void previous() override;
    void scan(player::ScanDirection direction) override;
    void pause() override;
    void play() override;
    void stop() override;
    void repeat(int mode) override;
    void repeatPassage() override;
    void audioChannel() override;
    void angle() override;
    void subtitle() override;
    void zoom() override;
    void menu() override;
    void titleMenu() override;
    void playChapter(int chapter) override;
    void playTitle(int title) override;
    void seek(std::chrono::seconds position) override;
    void touch(int x, int y) override;
    void driveFault(medium::DriveFault fault) override;

protected:
    bool playing() const override { return m_playState == model::PlayState::Playing; }
    void refuse() override;

private:
    void dvdOpened(const Titles& titles) override;
    void dvdArrived() override;
    void dvdShows(const Scene& scene) override;
    void dvdRefused() override;
    void dvdPressed() override;
    void dvdScanned(engine::ScanEdge edge) override;
    void dvdGaveUpChapter() override;
    void dvdEnded() override;
    void dvdFailed(const std::string& reason) override;

    bool inTitle() const { return m_scene.title > 0; }
    bool allowed(uint32_t prohibition) const { return (m_scene.prohibited & prohibition) == 0; }
    bool running() const;
    int chaptersOf(int title) const;
    void jump(zm::dvd::Operation operation, int first = 0, int second = 0);
    void leaveScan();
    void halt();
    void publishState(model::PlayState state);
    void publishTrack();
    void publishTime();
    void publishDetail();
    void followModes();
    void remember();

    EventLoop& m_loop;
    model::DiscState& m_state;
    model::PlayModes& m_modes;
    std::unique_ptr<Engine> m_engine;
    DvdResume& m_resume;
    std::string m_path;
    Failed m_failed;
    bool m_started = false;
    bool m_source = false;
    bool m_fromBeginning = false; ///< it was stopped twice
    bool m_menuCalled = false;    ///< by the user, who wants back to the film
    engine::StartMode m_mode = engine::StartMode::Playing;
    model::PlayState m_playState = model::PlayState::Loading;
    Titles m_titles;
    Scene m_scene;
    player::ScanSpeed m_scan;
    player::PassageRepeat m_passage;
    engine::PictureView m_view;
    std::string m_published; ///< track and detail published last
};

} // namespace zm::disc::dvd
