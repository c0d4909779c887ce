#include "platform/linux/framework/HeadUnitState.h"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <ctime>

namespace zm {

namespace {

// How many texts of application data can wait to be fetched.
constexpr size_t MaxAppData = 64;

} // namespace

void HeadUnitState::load(const nlohmann::json& welcome) {
    MutexLock lock(m_mutex);
    m_devices.clear();
    m_toldDevices.clear();
    m_monitors.clear();
    m_appData.clear();
    m_appDataDropped = 0;
    if (const auto devices = welcome.find("devices"); devices != welcome.end() && devices->is_object()) {
        for (const auto& [id, value] : devices->items()) {
            m_devices[std::atoi(id.c_str())] =
                value.is_number_integer() ? std::optional(value.get<int>()) : std::nullopt;
        }
    }
    if (const auto told = welcome.find("told"); told != welcome.end() && told->is_array()) {
        for (const auto& id : *told) {
            if (id.is_number_integer()) {
                const auto found = m_devices.find(id.get<int>());
                m_toldDevices.push_back(
                    {id.get<int>(), found == m_devices.end() ? 0 : found->second.value_or(0)});
            }
        }
    }
    if (const auto time = welcome.find("time"); time != welcome.end() && time->is_object()) {
        m_hour = time->value("hour", m_hour);
        m_minute = time->value("minute", m_minute);
        m_format = time->value("format", m_format);
    }
}

void HeadUnitState::setDevice(int id, std::optional<int> value) {
    MutexLock lock(m_mutex);
    m_devices[id] = value;
}

std::optional<int> HeadUnitState::device(int id) const {
    MutexLock lock(m_mutex);
    const auto found = m_devices.find(id);
    return found == m_devices.end() ? std::nullopt : found->second;
}

std::vector<HeadUnitState::ToldDevice> HeadUnitState::toldDevices() const {
    MutexLock lock(m_mutex);
    return m_toldDevices;
}

void HeadUnitState::setTime(int hour, int minute, int format) {
    MutexLock lock(m_mutex);
    m_hour = hour;
    m_minute = minute;
    m_format = format;
}

T_ZMDatetime HeadUnitState::dateTime() const {
    const std::time_t now = std::time(nullptr);
    std::tm today{};
    localtime_r(&now, &today);
    MutexLock lock(m_mutex);
    return {today.tm_year + 1900, today.tm_mon + 1, today.tm_mday, m_hour, m_minute, 0, m_format};
}

void HeadUnitState::startMonitor(Monitor monitor) {
    MutexLock lock(m_mutex);
    m_monitors.insert(monitor);
}

bool HeadUnitState::monitored(Monitor monitor) const {
    MutexLock lock(m_mutex);
    return m_monitors.contains(monitor);
}

int HeadUnitState::addAppData(std::string text) {
    MutexLock lock(m_mutex);
    m_appData.push_back(std::move(text));
    if (m_appData.size() > MaxAppData) {
        m_appData.pop_front();
        ++m_appDataDropped;
    }
    return m_appDataDropped + static_cast<int>(m_appData.size()) - 1;
}

std::string HeadUnitState::appData(int index) const {
    MutexLock lock(m_mutex);
    const int position = index - m_appDataDropped;
    return position >= 0 && position < static_cast<int>(m_appData.size())
               ? m_appData[static_cast<size_t>(position)]
               : "";
}

} // namespace zm
