#pragma once

#include "base/EventLoop.h"
#include "base/Mailbox.h"
#include "base/Result.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

using GUdevClient = struct _GUdevClient;
using GUdevDevice = struct _GUdevDevice;

namespace zm::disc::mechanism {

/** What a drive does by itself. On the loop that the drive was made for. */
struct DriveEvents {
    std::function<void()> onSpinningUp; ///< a disc is inside and cannot be read yet
    /** A disc can be read. `byHand`: somebody has put it in just now. */
    std::function<void(bool byHand)> onDisc;
    std::function<void(std::string reason)> onBadDisc; ///< a disc is inside and does not get ready
    std::function<void()> onEmpty;                     ///< there is no disc (any more)
    std::function<void()> onButton;                    ///< somebody wants to have the disc
    std::function<void()> onGone;                      ///< there is no drive any more
    std::function<void()> onThere;                     ///< at the start, or again
};

/**
 * A drive of this machine, /dev/sr0 and the like, watched by udev. Nothing waits for it: all that the kernel is
 * asked runs on threads of their own. On the loop's thread.
 */
class OpticalDrive {
public:
    /** How often a drive that gets ready is asked, and for how long. */
    static constexpr std::chrono::milliseconds AskInterval{500};
    static constexpr std::chrono::seconds Patience{60};

    /** `wanted` is its path, or "auto": the first one that there is. */
    OpticalDrive(EventLoop& loop, std::string wanted, DriveEvents events);
    ~OpticalDrive();
    OpticalDrive(const OpticalDrive&) = delete;
    OpticalDrive& operator=(const OpticalDrive&) = delete;

    /** Looks for the drive and tells what is in it. */
    void start();
    /** Path of the drive; empty while there is none. */
    const std::string& path() const { return m_path; }
    /**
     * Unlocks the tray and gives the disc out. A drive that somebody still reads from is asked again for some seconds;
     * `done` hears whether the disc is out.
     */
    void eject(std::function<void(Status)> done);

private:
    void changed(const std::string& action, GUdevDevice* device);
    bool isWanted(GUdevDevice* device) const;
    void take(const std::string& path);
    void ask();
    void answered(int status);
    void tryEject(std::function<void(Status)> done, int attempts);

    EventLoop& m_loop;
    const std::string m_wanted;
    DriveEvents m_events;
    std::shared_ptr<Mailbox> m_mailbox;
    GUdevClient* m_client = nullptr;
    std::string m_path;
    enum class Inside { Unknown, Nothing, SpinningUp, Disc } m_inside = Inside::Unknown;
    bool m_wasEmpty = false; ///< since it has been watched
    std::chrono::steady_clock::time_point m_spinsSince;
    SourceHandle m_again;
    SourceHandle m_ejecting;
};

} // namespace zm::disc::mechanism
