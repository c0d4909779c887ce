#include "services/bench/commands/CommandProcessor.h"
#include "services/ctl/WordKinds.h"

#include <array>
#include <optional>

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

bool time(CommandCall& call) {
    const auto parsed = parseTimeOfDay(call.arguments.word());
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
