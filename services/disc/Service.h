#pragma once

#include "base/EventLoop.h"
#include "base/Result.h"
#include "services/disc/Drive.h"
#include "services/disc/DriveLink.h"
#include "services/disc/PpsInbox.h"
#include "services/disc/engine/Engine.h"
#include "services/disc/model/DiscState.h"

#include <functional>
#include <memory>
#include <string>

namespace zm::disc {

/** Makes the engine that decodes; it reports on the given loop. */
using EngineMaker = std::function<std::unique_ptr<engine::Engine>(EventLoop& loop)>;

/** The whole disc service: takes commands from the published objects and has the drive carry them out. */
class Service {
public:
    /**
     * Connects to the objects' service of the runtime folder `runtime` and makes the catalogue
     * `catalogueFile`; `resumeFile` keeps where discs were left. A disc that an earlier run has left in the drive is taken again, else the one at
     * `disc` unless that is empty. `drive`: a drive of this machine to be followed, "auto" the first; empty: none. Everything happens on `loop`, which the caller runs.
     */
    static Result<std::unique_ptr<Service>>
    start(EventLoop& loop, const std::string& runtime, const std::string& catalogueFile,
          const std::string& resumeFile, const std::string& disc, const EngineMaker& makeEngine,
          const dvd::EngineMaker& makeDvdEngine, const std::string& drive = {});
    ~Service();

private:
    Service(EventLoop& loop, std::unique_ptr<model::DiscState> state,
            std::shared_ptr<library::Catalogue> catalogue, const std::string& resumeFile,
            const std::string& coverFolder, PpsFile control, PpsFile sound, const EngineMaker& makeEngine,
            const dvd::EngineMaker& makeDvdEngine);
    Status begin(const std::string& disc, const std::string& drive);
    void controlText(const std::string& text);
    void driveText(const std::string& text);
    void statusText(const std::string& text);
    void publishAgain();
    void soundText(const std::string& text);
    void command(const std::string& json);
    void voice(const std::string& json);
    void driveRequest(const std::string& json);

    EventLoop& m_loop;
    std::unique_ptr<model::DiscState> m_state;
    model::PlayModes m_modes;
    player::ResumeMemory m_memory;
    std::unique_ptr<engine::Engine> m_engine;
    Drive m_drive;
    std::unique_ptr<DriveLink> m_link; ///< with a drive of this machine
    PpsFile m_control;
    PpsFile m_sound;
    engine::Loudness m_loudness;
    std::shared_ptr<Mailbox> m_mailbox;
    std::unique_ptr<PpsInbox> m_inbox; ///< last: its thread reads the files above
};

} // namespace zm::disc
