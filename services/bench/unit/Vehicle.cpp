#include "services/bench/unit/Vehicle.h"

#include <nlohmann/json.hpp>

namespace zm::bench::unit {

namespace {

Json valueJson(const std::optional<int>& value) {
    return value ? Json(*value) : Json();
}

Json timeJson(const ClockSetting& time) {
    return {{"hour", time.hour}, {"minute", time.minute}, {"format", time.format}};
}

} // namespace

void Vehicle::describe(Json& welcome) const {
    auto& devices = welcome["devices"] = Json::object();
    for (const auto& [id, value] : m_devices) {
        devices[std::to_string(id)] = valueJson(value);
    }
    welcome["told"] = m_told;
    welcome["time"] = timeJson(m_time);
}

void Vehicle::setDevice(int id, std::optional<int> value, Notice notice, ShellServer::Reply reply) {
    m_devices[id] = value;
    if (onDevice) {
        onDevice(id, value);
    }
    if (notice == Notice::Send) {
        m_told.insert(id);
    }
    m_shell.inform(
        {{"t", "device"}, {"device", id}, {"value", valueJson(value)}, {"notify", notice == Notice::Send}},
        std::move(reply));
}

std::optional<int> Vehicle::device(int id) const {
    const auto found = m_devices.find(id);
    return found == m_devices.end() ? std::nullopt : found->second;
}

void Vehicle::setTime(const ClockSetting& time, ShellServer::Reply reply) {
    m_time = time;
    if (onTime) {
        onTime();
    }
    Json message = timeJson(time);
    message["t"] = "time";
    m_shell.inform(std::move(message), std::move(reply));
}

} // namespace zm::bench::unit
