#include "services/bench/CommandProcessor.h"

#include <array>
#include <cstdio>

namespace zm {

namespace {

bool device(CommandCall& call) {
    auto& arguments = call.arguments;
    const bool silent = arguments.flag("--silent");
    const int id = arguments.number("device", vehicleDevices());
    const bool fails = call.run->words().back() == "fail";
    std::optional<int> value;
    if (fails) {
        arguments.word();
    } else {
        value = arguments.number();
    }
    if (!arguments.complete()) {
        return false;
    }
    if (!findNumber(vehicleDevices(), id)) {
        call.run->fail(unknownNumber("device", id, vehicleDevices()));
        return true;
    }
    call.unit.vehicle().setDevice(id, value, silent ? Notice::Silent : Notice::Send, endWith(call.run));
    return true;
}

std::optional<std::pair<int, int>> parseTime(const std::string& text) {
    int hour = 0;
    int minute = 0;
    int length = 0;
    if (std::sscanf(text.c_str(), "%2d:%2d%n", &hour, &minute, &length) != 2 ||
        static_cast<size_t>(length) != text.size() || hour < 0 || hour > 24 || minute < 0 || minute > 59) {
        return std::nullopt;
    }
    return std::pair(hour, minute);
}

bool time(CommandCall& call) {
    const auto parsed = parseTime(call.arguments.word());
    const std::string format = call.arguments.more() ? call.arguments.word() : "";
    if (!call.arguments.complete() || !parsed || (!format.empty() && format != "12" && format != "24")) {
        return false;
    }
    ClockSetting setting = call.unit.vehicle().time();
    setting.hour = parsed->first;
    setting.minute = parsed->second;
    if (!format.empty()) {
        setting.format = format == "12" ? 1 : 0;
    }
    call.unit.vehicle().setTime(setting, endWith(call.run));
    return true;
}

constexpr std::array Rows = {
    CommandRow{"device", device},
    CommandRow{"time", time},
};

} // namespace

std::span<const CommandRow> vehicleCommandRows() {
    return Rows;
}

} // namespace zm
