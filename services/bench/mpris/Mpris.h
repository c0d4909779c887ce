#pragma once

#include "base/EventLoop.h"
#include "services/bench/mpris/PlayerState.h"
#include "services/bench/unit/PpsWatch.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

using GDBusConnection = struct _GDBusConnection;
using GVariant = struct _GVariant;

namespace zm::bench::mpris {

/**
 * The player on the desktop's bus, for its media keys, lock screen and applets ("org.mpris.MediaPlayer2.platen"; a
 * second unit has ".instance" and a number behind it). Everything on the loop's thread.
 */
class Mpris {
public:
    /** What it needs of the head unit: `command` carries out one of its commands. */
    struct Unit {
        std::string ppsSocket;
        std::function<void(std::vector<std::string>)> command;
        std::function<int()> volume; ///< 0 to 100
    };
    Mpris(EventLoop& loop, Unit unit);
    ~Mpris();
    Mpris(const Mpris&) = delete;
    Mpris& operator=(const Mpris&) = delete;

    /** Without a bus nothing happens. An error: the unit's objects cannot be read. Gives what there is to be logged. */
    Result<std::string> start();
    /** The volume may be another one. */
    void volumeChanged();

    // For the bus.
    void call(const std::string& method, GVariant* arguments);
    GVariant* property(const std::string& name) const;
    bool setProperty(const std::string& name, GVariant* value);

private:
    Status watch(const std::string& object);
    void own();
    void tell();
    void send(int command, int first);
    void seek(int64_t position);
    GVariant* metadata() const;

    EventLoop& m_loop;
    Unit m_unit;
    PlayerState m_state;
    std::vector<std::unique_ptr<unit::PpsWatch>> m_watches;
    GDBusConnection* m_bus = nullptr;
    std::vector<unsigned> m_objects;
    std::vector<std::pair<std::string, std::string>> m_told; ///< properties as they were sent, as texts
};

} // namespace zm::bench::mpris
