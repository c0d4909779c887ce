#pragma once

#include "services/bench/unit/ShellServer.h"

#include <functional>
#include <map>
#include <optional>
#include <set>

namespace zm::bench::unit {

/** Whether setting a vehicle value also sends the message about it. */
enum class Notice { Send, Silent };

/** The clock as the driver set it. */
struct ClockSetting {
    int hour = 12;  ///< 0..24
    int minute = 0; ///< 0..59
    int format = 0; ///< 1: 12-hour display, else 24-hour display
};

/** The car around the application: its status values and its clock. They outlive the application. */
class Vehicle {
public:
    explicit Vehicle(ShellServer& shell) : m_shell(shell) {}

    /** A value was set, before the application hears of it. */
    std::function<void(int id, std::optional<int> value)> onDevice;
    /** The clock was set, before the application hears of it. */
    std::function<void()> onTime;

    /** The start values as the application's welcome has them: "devices", "told" (those that a message was
     * sent about) and "time". */
    void describe(Json& welcome) const;
    /** Sets device `id` (nothing: reading it fails); `reply` is called when a running application has taken
     * it. */
    void setDevice(int id, std::optional<int> value, Notice notice, ShellServer::Reply reply);
    /** What device `id` reads; nothing if reading it fails. */
    std::optional<int> device(int id) const;
    void setTime(const ClockSetting& time, ShellServer::Reply reply);
    const ClockSetting& time() const { return m_time; }

private:
    ShellServer& m_shell;
    std::map<int, std::optional<int>> m_devices{{2, 1}, {6, 0}, {7, 200}, {86, 0}};
    std::set<int> m_told;
    ClockSetting m_time;
};

} // namespace zm::bench::unit
