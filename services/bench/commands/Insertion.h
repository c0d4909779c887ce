#pragma once

#include "services/bench/commands/Processor.h"
#include "services/bench/unit/PpsWatch.h"

#include <chrono>
#include <memory>
#include <string>

namespace zm::bench::commands {

/** What has to have happened before an insertion is done. */
enum class Inserted {
    Taken,  ///< the drive has taken the disc, or remembers it for when the one inside is out
    Playing ///< it plays; where the player neither is the source nor comes to the front, it is ready to
};

/** Puts a disc into the drive and ends the command once that is done, or with the reason why it cannot be. */
class Insertion {
public:
    static void start(Call& call, const std::string& path, Inserted until);

    Insertion(Call& call, std::string path, Inserted until);

private:
    Status follow(EventLoop& loop, const std::string& ppsSocket);
    void driveChanged(const std::string& text);
    void stateChanged(const std::string& state);
    void trayChanged(const std::string& tray);
    void playStateChanged(const std::string& text);
    void lookWhetherDone();
    void timeIsUp();

    std::shared_ptr<Run> m_run;
    unit::HeadUnit& m_unit;
    std::string m_path;
    Inserted m_until;
    bool m_asked = false; ///< what the drive said before does not count
    bool m_read = false;  ///< this disc is inside
    bool m_loaded = false;
    bool m_source = false;
    std::string m_playState;
    std::unique_ptr<unit::PpsWatch> m_drive;
    std::unique_ptr<unit::PpsWatch> m_status;
    SourceHandle m_limit;
};

} // namespace zm::bench::commands
