#pragma once

#include "services/bench/JsonMessage.h"

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

    /** Which drive this is: what a finger does counts for the drive in which it touched the screen. */
    unsigned drive() const { return m_drive; }
    /** The application's answer to a finger's step during `drive`, which names what the finger was lifted
     * from. */
    void fingerLifted(const Json& answer, unsigned drive);

private:
    void apply();

    Compositor& m_compositor;
    bool m_driving = false;
    bool m_allowed = false; ///< for this drive
    unsigned m_drive = 0;
};

} // namespace zm
