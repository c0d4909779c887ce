#pragma once

#include "base/Mutex.h"
#include "zmcar/DateTime.h"

#include <nlohmann/json_fwd.hpp>

#include <deque>
#include <map>
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
    mutable Mutex m_mutex;
    std::map<int, std::optional<int>> m_devices ZM_GUARDED_BY(m_mutex);
    std::vector<ToldDevice> m_toldDevices ZM_GUARDED_BY(m_mutex);
    int m_hour ZM_GUARDED_BY(m_mutex) = 12;
    int m_minute ZM_GUARDED_BY(m_mutex) = 0;
    int m_format ZM_GUARDED_BY(m_mutex) = 0;
    std::set<Monitor> m_monitors ZM_GUARDED_BY(m_mutex);
    std::deque<std::string> m_appData ZM_GUARDED_BY(m_mutex);
    int m_appDataDropped ZM_GUARDED_BY(m_mutex) = 0;
};

} // namespace zm
