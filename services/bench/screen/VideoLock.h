#pragma once

#include "base/JsonMessage.h"

#include <optional>

namespace zm::bench::screen {

class Compositor;

/**
 * Keeps the video off the screen while the car drives, whatever the application asks for or forgets, and also
 * when it dies. Only the driver's finger on "show anyway" of the parking page opens it, for this drive.
 */
class VideoLock {
public:
    /** The vehicle's device that reads 0 while the car drives. */
    static constexpr int ParkingDevice = 2;

    explicit VideoLock(Compositor& compositor) : m_compositor(compositor) {}

    /** What the device reads from now on. Nothing, which means that reading fails, counts as driving. */
    void parkingReads(std::optional<int> value);

    /** The launcher has told the application something or the application has gone: whether the driver sees its
     * pages from now on. A finger that is down then belongs to what was there before. */
    void applicationSeen(bool seen);

    /** A finger comes down on the screen. */
    void fingerDown() { m_fingerOccasion = m_occasion; }
    /** The occasion at which the finger came down: what it does counts for that one only. */
    unsigned fingerOccasion() const { return m_fingerOccasion; }
    /** The application's answer to a step of the finger that came down at `occasion`; it names what the finger
     * was lifted from. */
    void fingerLifted(const Json& answer, unsigned occasion);

private:
    void apply();

    Compositor& m_compositor;
    bool m_driving = false;
    bool m_allowed = false;  ///< for this drive
    bool m_seen = false;     ///< the application's pages are seen
    unsigned m_occasion = 0; ///< counts drives, stops and what happens to the application
    unsigned m_fingerOccasion = 0;
};

} // namespace zm::bench::screen
