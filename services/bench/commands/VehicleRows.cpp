#include "services/bench/commands/Processor.h"
#include "services/ctl/Numbers.h"
#include "services/ctl/WordKinds.h"

#include <array>
#include <optional>

namespace zm::bench::commands {

namespace {

constexpr int MuteDevice = 6;
constexpr int Muted = 255;

bool device(Call& call) {
    auto& arguments = call.arguments;
    const bool silent = arguments.flag("--silent");
    const int id = arguments.number("device", ctl::vehicleDevices());
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
    if (!ctl::findNumber(ctl::vehicleDevices(), id)) {
        call.run->fail(ctl::unknownNumber("device", id, ctl::vehicleDevices()));
        return true;
    }
    call.unit.vehicle().setDevice(id, value, silent ? unit::Notice::Silent : unit::Notice::Send,
                                  endWith(call.run));
    return true;
}

bool time(Call& call) {
    const auto parsed = ctl::parseTimeOfDay(call.arguments.word());
    const std::string format = call.arguments.more() ? call.arguments.word() : "";
    if (!call.arguments.complete() || !parsed || (!format.empty() && format != "12" && format != "24")) {
        return false;
    }
    unit::ClockSetting setting = call.unit.vehicle().time();
    setting.hour = parsed->first;
    setting.minute = parsed->second;
    if (!format.empty()) {
        setting.format = format == "12" ? 1 : 0;
    }
    call.unit.vehicle().setTime(setting, endWith(call.run));
    return true;
}

bool volume(Call& call) {
    auto& knob = call.unit.sound();
    if (!call.arguments.more()) {
        call.run->out(std::to_string(knob.volume()) + "\n");
        call.run->finish();
        return true;
    }
    const std::string word = call.arguments.word();
    if (!call.arguments.complete()) {
        return false;
    }
    if (word == "mute") {
        const bool muted = call.unit.vehicle().device(MuteDevice) == Muted;
        call.unit.vehicle().setDevice(MuteDevice, muted ? 0 : Muted, unit::Notice::Send, endWith(call.run));
        return true;
    }
    const int step = word == "up" ? unit::SoundKnob::Step : word == "down" ? -unit::SoundKnob::Step : 0;
    const int wanted = step != 0 ? knob.volume() + step : ctl::parseNumber<int>(word).value_or(knob.volume());
    endWith(call.run, knob.turn(wanted));
    return true;
}

constexpr std::array VehicleCommands = {
    Row{"device", device},
    Row{"volume", volume},
    Row{"time", time},
};

} // namespace

std::span<const Row> vehicleRows() {
    return VehicleCommands;
}

} // namespace zm::bench::commands
