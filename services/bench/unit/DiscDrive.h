#pragma once

#include "base/EventLoop.h"
#include "base/Result.h"
#include "services/bench/unit/PpsWatch.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace zm::bench::unit {

/**
 * The disc drive, as the disc service offers it in the PPS object "zelmar/disc/drive": attribute "drive" is
 * what is asked of it ({"op":"insert","path":...}, {"op":"eject"}), "drivestate" its answer.
 */
class DiscDrive {
public:
    static constexpr const char* Object = "zelmar/disc/drive";

    DiscDrive(EventLoop& loop, std::string ppsSocket);

    /** Opens the object; the PPS service runs already. */
    Status start();
    Status insert(const std::string& path);
    Status eject();
    /** Makes the drive fail: "read", "surface", "temperature", "region", "noanswer", "gone",
     * or "none" again. */
    Status fault(const std::string& kind);
    /** Whether only a disc that is inside can fail so. */
    static bool needsDisc(std::string_view fault) { return fault == "read" || fault == "noanswer"; }
    /** The fault that it has: the last that it was given, until the disc has left or (for "gone") the next one came. */
    const std::string& activeFault() const { return m_fault; }
    /** The disc service has started anew. */
    void forgetFault() { m_fault = NoFault; }
    /** The latest "drivestate" as JSON text; empty before the disc service has said anything. */
    std::string state();

    /** A disc that can be played is inside, or is read to find out. */
    bool holdsDisc() const { return m_holdsDisc; }
    bool isEmpty() const { return m_empty; }
    /** The drive has taken in a disc that it was asked to insert or that was put in by hand (not one that it finds at
     * its start). */
    std::function<void()> onInserted;

private:
    Status ask(const std::string& json);
    void stateChanged();

    EventLoop& m_loop;
    std::string m_socket;
    std::unique_ptr<PpsWatch> m_watch;
    std::unique_ptr<PpsFile> m_object;
    std::string m_state;
    bool m_holdsDisc = false;
    bool m_empty = true;
    static constexpr const char* NoFault = "none";
    std::string m_fault = NoFault;
    std::string m_taken;  ///< path of the disc that somebody has put in by hand; empty: none
    std::string m_wanted; ///< path of the disc to be inserted; empty: none
};

} // namespace zm::bench::unit
