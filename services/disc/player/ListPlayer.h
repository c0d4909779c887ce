#pragma once

#include "services/disc/engine/Engine.h"
#include "services/disc/model/Contents.h"
#include "services/disc/model/DiscState.h"
#include "services/disc/player/DiscResume.h"
#include "services/disc/player/PlayStatus.h"
#include "services/disc/player/ReadErrorSkip.h"
#include "services/disc/player/Transport.h"
#include "services/disc/player/VcdSound.h"

#include <functional>
#include <memory>

namespace zm::disc::player {

/** A VCD with playback control on: its own lists and menus say what plays, and what each command means. */
class ListPlayer : public Transport, private engine::Listener {
public:
    /** Where it ends. `toTracks`: playback control is to be off; it lives until that has been done. */
    struct Exits {
        std::function<void()> toTracks;
        std::function<void()> unplayable;
    };

    enum class Begin { FirstList, WhereLeft };

    /** `contents` has play lists. Playing begins with `sourceOn`. */
    ListPlayer(EventLoop& loop, model::DiscState& state, model::PlayModes& modes, engine::Engine& engine,
               std::shared_ptr<medium::Medium> medium, std::shared_ptr<const model::Contents> contents,
               DiscResume& resume, Begin begin, Exits exits);
    ~ListPlayer() override;

    void sourceOn() override;
    void sourceOff() override;

    void next() override;
    void previous() override;
    void scan(ScanDirection direction) override;
    void pause() override;
    void play() override;
    void stop() override;
    void audioChannel() override;
    void playbackControl() override;
    void zoom() override;
    void rotate() override;
    /** The list's "return". */
    void menu() override;
    /** The disc's first list. */
    void titleMenu() override;
    /** In a menu the choice with the number `first`, else the track. */
    void playTrack(int first, int second) override;
    void seek(std::chrono::seconds position) override;

protected:
    bool playing() const override { return m_status.playing() && !stands(); }
    void refuse() override { m_status.refuse(); }

private:
    void engineStreams(const engine::Streams& streams) override;
    void engineStarted(engine::Milliseconds length) override;
    void engineMoved(engine::Milliseconds position, engine::Milliseconds length) override;
    void engineEnded() override;
    void engineFollowed(engine::Milliseconds) override {}
    void engineScanned(engine::ScanEdge edge) override;
    void engineFailed(const std::string& reason) override;

    const model::PlayList& list() const { return m_contents->playLists->lists[m_list]; }
    const model::ListItem* item() const {
        return m_item < list().items.size() ? &list().items[m_item] : nullptr;
    }
    bool inMenu() const { return list().kind == model::PlayList::Kind::Menu; }
    bool showsFilm() const { return item() && !item()->still && !m_picture; }
    bool stands() const { return m_waits || !showsFilm(); }
    engine::Milliseconds knownLength() const;
    std::optional<size_t> listOf(int track) const;
    void enter(size_t list);
    bool goTo(const model::PlayList::Target& target);
    void begin(engine::Milliseconds position);
    void itemOver();
    void waitOver();
    void wait(std::chrono::milliseconds time, std::function<void()> then);
    void end();
    void halt(model::PlayState state);
    void changeView(void (engine::PictureView::*change)());
    void publishState(model::PlayState state);
    void publishTrack();
    void publishTime();
    model::TrackInfo trackInfo() const;

    EventLoop& m_loop;
    model::DiscState& m_state;
    model::PlayModes& m_modes;
    engine::Engine& m_engine;
    std::shared_ptr<medium::Medium> m_medium;
    std::shared_ptr<const model::Contents> m_contents;
    DiscResume& m_resume;
    Exits m_exits;
    PlayStatus m_status;
    size_t m_list = 0;
    size_t m_item = 0;
    int m_plays = 0;                  ///< of a menu's film
    engine::Milliseconds m_before{0}; ///< played of the list's items before this one
    engine::Milliseconds m_position{0};
    engine::Milliseconds m_length{0};
    engine::StartMode m_mode = engine::StartMode::Playing;
    bool m_source = false;
    bool m_picture = false; ///< the item is one, whatever the disc says
    bool m_waits = false;   ///< the item is over, its picture stands
    engine::PictureView m_view;
    VcdSound m_sound;
    size_t m_failures = 0; ///< items in a row
    SourceHandle m_wait;
    SourceHandle m_again; ///< runs until the track is announced once more
    ReadErrorSkip m_skip;
};

} // namespace zm::disc::player
