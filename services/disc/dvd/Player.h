#pragma once

#include "services/disc/dvd/Playback.h"
#include "services/disc/player/Transport.h"

#include <memory>
#include <string>

namespace zm::disc::dvd {

/** A DVD in the drive: what each command means for it, and which the disc forbids. */
class Player : public player::Transport {
public:
    /** Playing begins with `sourceOn`, where `resume` says. */
    Player(model::DiscState& state, model::PlayModes& modes, std::unique_ptr<Engine> engine,
           DvdResume& resume, std::string path, Playback::Failed failed);

    void sourceOn() override;
    void sourceOff() override;

    void next() override;
    void previous() override;
    void scan(player::ScanDirection direction) override;
    void pause() override;
    void play() override { m_playback.play(); }
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
    bool playing() const override { return m_playback.is(model::PlayState::Playing); }
    void refuse() override { m_playback.refuse(); }

private:
    const Film& film() const { return m_playback.film(); }

    model::DiscState& m_state;
    model::PlayModes& m_modes;
    Playback m_playback;
    bool m_source = false;
    engine::PictureView m_view;
};

} // namespace zm::disc::dvd
