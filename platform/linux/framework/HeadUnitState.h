#pragma once

#include "zmcar/DateTime.h"

#include <nlohmann/json_fwd.hpp>

#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace zm {

/** What StartMonitor selects. */
enum class Monitor { Launcher = 1, Device = 2, Clock = 4 };

/** The head unit's values as the application last heard of them. Any thread. */
class HeadUnitState {
public:
    /** Takes the start values from a welcome message. */
    void load(const nlohmann::json& welcome);

    /** Nothing: the value cannot be read. */
    void setDevice(int id, std::optional<int> value);
    std::optional<int> device(int id) const;

    /** A device message that was sent before this application started. */
    struct ToldDevice {
        int id;
        int value;
    };
    std::vector<ToldDevice> toldDevices() const;

    void setTime(int hour, int minute, int format);
    /** The head unit's time of day on today's date. */
    T_ZMDatetime dateTime() const;

    void startMonitor(Monitor monitor);
    bool monitored(Monitor monitor) const;

    /** Keeps a text of application data; gives the index under which it can be fetched for a while. */
    int addAppData(std::string text);
    std::string appData(int index) const;

private:
    mutable std::mutex m_mutex;
    std::map<int, std::optional<int>> m_devices;
    std::vector<ToldDevice> m_toldDevices;
    int m_hour = 12;
    int m_minute = 0;
    int m_format = 0;
    std::set<Monitor> m_monitors;
    std::deque<std::string> m_appData;
    int m_appDataDropped = 0;
};

} // namespace zm
