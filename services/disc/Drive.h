#pragma once

#include "services/disc/DiscOpening.h"
#include "services/disc/cover/Covers.h"
#include "services/disc/dvd/DvdResume.h"
#include "services/disc/dvd/Engine.h"
#include "services/disc/engine/Engine.h"
#include "services/disc/library/CatalogueGuard.h"
#include "services/disc/library/DiscLoad.h"
#include "services/disc/medium/FaultGate.h"
#include "services/disc/model/DiscState.h"
#include "services/disc/player/DiscResume.h"
#include "services/disc/player/ListPlayer.h"
#include "services/disc/player/Transport.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zm::disc {

/** What a drive of this machine is to the disc service's. */
struct Mechanism {
    std::function<std::string()> path;                        ///< of the drive; empty while there is none
    std::function<void(std::function<void(Status)>)> giveOut; ///< the disc; tells whether it is out
    std::function<void()> takeAgain;                          ///< the disc that has stayed inside
};

/**
 * The drive and its disc: what happens from insertion to ejection. Everything on the service's loop; nothing
 * waits for the disc.
 */
class Drive : private library::LoadListener {
public:
    Drive(EventLoop& loop, model::DiscState& state, model::PlayModes& modes, engine::Engine& engine,
          dvd::EngineMaker makeDvdEngine, std::shared_ptr<library::Catalogue> catalogue,
          player::ResumeMemory& memory, const std::string& coverFolder);
    ~Drive() override;

    /** Publishes an empty drive; `tray` is what the drive remembers of an earlier run. */
    void start(const model::Tray& tray);
    /** Takes the disc at `path`, after the present one is out. A path that cannot be read changes nothing; one that takes
     * long to answer does not hold up anything else. */
    void insert(const std::string& path);
    /** The drive of this machine from now on; without one discs are folders and images only. */
    void setMechanism(Mechanism mechanism) { m_mechanism = std::move(mechanism); }
    /** The same for a disc that is open already; `byHand`: it has been put into the machine's drive just now. */
    void insertOpened(const std::string& path, std::shared_ptr<medium::Medium> medium, bool byHand);
    /** There is a disc at `path` that cannot be read. */
    void insertFailed(const std::string& path, const std::string& reason);
    /** A disc at `path` has been taken in and will be ready later. */
    void awaitDisc(const std::string& path);
    /** The disc has left the machine's drive by itself. */
    void discIsOut();
    /** There is no drive any more, and no disc with it. */
    void loseDrive();
    /** There is a drive, at first or again; its tray counts as empty until it says otherwise. */
    void driveIsThere();
    /** Stops and gives the disc out, also one that waits to be taken; without a disc nothing happens. */
    void eject();
    /** Leads the application on from whatever it shows to "no disc"; with a disc inside nothing happens. */
    void announceEmpty();
    /** Gives the drive a fault by its name, "none" takes all back; false for an unknown one. */
    bool fault(const std::string& kind);
    void source(bool on);
    /** A song was asked for by voice: films and photos make way for the music, where there is any. */
    void playMusic();
    /** The user looks at `folder` of a disc that is still being read. */
    void browse(int mediaType, int folder);
    /** What plays, or null while no disc is ready. */
    player::Transport* transport() const { return m_transport.get(); }

private:
    void loadBegun() override;
    void loadScanned(std::shared_ptr<const model::Contents> contents) override;
    void loadCatalogued(model::MediaKind kind) override;
    void loadFinished() override;
    void loadFailed(const std::string& reason) override;

    struct Inserted {
        std::string path;
        std::shared_ptr<medium::Medium> medium;
        bool byHand = false;
    };

    void opened(const std::string& path, const DiscOpening::Opened& medium);
    void insertDvd();
    void playTracks();
    void playLists(player::ListPlayer::Begin begin);
    void switchControl(bool on);
    void takeModes(const std::optional<model::PlayModes>& modes);
    void take(const Inserted& disc);
    bool isInMachine() const;
    void leave();
    void giveOut();
    void staysInside(const std::string& reason);
    void left();
    void stopReading();
    void rememberTray();
    void report(const model::DriveState& report);
    void reportError(const std::string& reason);

    EventLoop& m_loop;
    model::DiscState& m_state;
    model::PlayModes& m_modes;
    engine::Engine& m_engine;
    dvd::EngineMaker m_makeDvdEngine;
    std::shared_ptr<library::Catalogue> m_catalogue;
    player::ResumeMemory& m_memory;
    DiscOpening m_opening;
    std::string m_path;                                        ///< of the disc inside; empty without one
    model::DiscPresence m_absence = model::DiscPresence::None; ///< what "disc" is once none is inside
    std::optional<Inserted> m_next;                            ///< taken when the one before it is out
    model::DriveState m_report;                                ///< the latest about the disc inside
    bool m_source = false;
    Mechanism m_mechanism;
    bool m_awaited = false; ///< the machine's drive has a disc that is not ready yet
    bool m_byHand = false;  ///< the disc inside
    std::string m_refusal;  ///< why it did not come out
    std::shared_ptr<medium::FaultGate> m_gate;
    std::shared_ptr<const model::Contents> m_contents;
    cover::Covers m_covers;
    int m_catalogued = 0; ///< mixed bits of the kinds whose catalogue is complete
    std::unique_ptr<library::DiscLoad> m_load;
    std::unique_ptr<library::CatalogueGuard> m_guard; ///< of a disc that is ready
    std::unique_ptr<player::DiscResume> m_resume;     ///< of a disc with something to play
    std::unique_ptr<dvd::DvdResume> m_dvdResume;      ///< of a DVD
    std::unique_ptr<player::Transport> m_transport;   ///< uses one of them
    SourceHandle m_switch;                            ///< runs until the other player takes over
    SourceHandle m_leaving; ///< runs until the disc is out and the next one is taken
    SourceHandle m_resting; ///< runs until an empty drive has nothing more to say
};

} // namespace zm::disc
