#pragma once

#include "services/bench/commands/JsonMessage.h"

#include <optional>

namespace zm {

class Compositor;

/**
 * Keeps the video off the screen while the car drives, whatever the application asks for, forgets or does not
 * live to do. Only the driver's finger on "show anyway" of the parking page opens it, for this drive.
 */
class VideoLock {
public:
    /** The vehicle's device that reads 0 while the car drives. */
    static constexpr int ParkingDevice = 2;

    explicit VideoLock(Compositor& compositor) : m_compositor(compositor) {}

    /** What the device reads from now on. Nothing, which means that reading fails, counts as driving. */
    void parkingReads(std::optional<int> value);

    /** A finger comes down on the screen. */
    void fingerDown() { m_fingerDrive = m_drive; }
    /** The drive or stop in which the finger came down: what it does counts for that one only. */
    unsigned fingerDrive() const { return m_fingerDrive; }
    /** The application's answer to a step of the finger that came down in `drive`; it names what the finger was
     * lifted from. */
    void fingerLifted(const Json& answer, unsigned drive);

private:
    void apply();

    Compositor& m_compositor;
    bool m_driving = false;
    bool m_allowed = false; ///< for this drive
    unsigned m_drive = 0;   ///< counts drives and stops
    unsigned m_fingerDrive = 0;
};

} // namespace zm
