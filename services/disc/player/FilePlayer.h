#pragma once

#include "services/disc/player/FilePlayback.h"
#include "services/disc/player/Transport.h"

#include <functional>
#include <memory>

namespace zm::disc::player {

/** The files of a data disc or the tracks of a CD: what each command means for them. */
class FilePlayer : public Transport {
public:
    /** `contents` has at least one item; the kind of the one that `resume` names is announced already. Playing
     * begins with `sourceOn`. `unplayable` is called when not one item of a whole round could be played. */
    FilePlayer(EventLoop& loop, model::DiscState& state, model::PlayModes& modes, engine::Engine& engine,
               std::shared_ptr<medium::Medium> medium, std::shared_ptr<const model::Contents> contents,
               DiscResume& resume, std::function<void()> unplayable);
    /** Has the disc's own play lists take over, where it has some; the player lives until that has been done. */
    void setControlSwitch(std::function<void()> takeOver) { m_takeOver = std::move(takeOver); }

    /** Has `onItem` told of each item that is announced. */
    void setItemWatcher(std::function<void(model::MediaKind, const model::Item&)> onItem) {
        m_playback.announcer().onItem = std::move(onItem);
    }

    void sourceOn() override { m_playback.sourceOn(); }
    void sourceOff() override { m_playback.sourceOff(); }
    void playMusic() override { m_playback.playMusic(); }

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
    bool playing() const override { return m_status.playing(); }
    void refuse() override { m_status.refuse(); }

private:
    bool isVcd() const;
    bool shows(model::MediaKind kind) const { return m_queue.kind() == kind; }
    void changeView(void (engine::PictureView::*change)());

    model::DiscState& m_state;
    model::PlayModes& m_modes;
    FilePlayback m_playback;
    FileQueue& m_queue;
    PlayStatus& m_status;
    bool m_playbackControl = false; ///< what the user has set for a VCD without play lists
    std::function<void()> m_takeOver;
};

} // namespace zm::disc::player
