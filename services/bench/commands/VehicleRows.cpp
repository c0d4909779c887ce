#include "services/bench/commands/Processor.h"
#include "services/ctl/Numbers.h"
#include "services/ctl/WordKinds.h"

#include <array>
#include <optional>
#include <sstream>

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
    if (id == screen::VideoLock::ParkingDevice && value.value_or(0) != 0 && !call.unit.car().parked()) {
        const auto& car = call.unit.car().signals();
        std::ostringstream why;
        why << "the car is not parked: gear " << car.gear << ", " << car.speed
            << " km/h; \"zmctl vehicle speed 0\" and \"zmctl vehicle gear park\" park it";
        call.run->fail(why.str());
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

// A drive from a signal file begins, or is ended.
bool drive(Call& call) {
    const bool stop = call.arguments.flag("--stop");
    const auto speed = call.arguments.option("--speed");
    const std::string file = stop ? "" : call.arguments.word();
    const double factor = ctl::parseNumber<double>(speed.value_or("1")).value_or(0);
    if (!call.arguments.complete() || factor <= 0 || (stop && speed)) {
        return false;
    }
    if (stop) {
        const bool ran = call.unit.journey().runs();
        call.unit.journey().end();
        endWith(call.run, ran ? ok() : Status(Error{"no drive runs"}));
        return true;
    }
    auto steps = unit::readJourney(call.run->absolute(file), unit::Car::check);
    if (!steps) {
        call.run->fail(steps.error());
        return true;
    }
    call.unit.journey().begin(std::move(*steps), factor);
    call.run->finish();
    return true;
}

bool vehicle(Call& call) {
    if (!call.arguments.more()) {
        call.run->out(call.unit.car().lines());
        call.run->finish();
        return true;
    }
    const std::string signal = call.arguments.word();
    if (signal == "drive") {
        return drive(call);
    }
    const std::string value = call.arguments.word();
    if (!call.arguments.complete()) {
        return false;
    }
    if (auto set = call.unit.car().set(signal, value, endWith(call.run)); !set) {
        call.run->fail(set.error());
    }
    return true;
}

constexpr std::array VehicleCommands = {
    Row{"vehicle", vehicle},
    Row{"device", device},
    Row{"volume", volume},
    Row{"time", time},
};

} // namespace

std::span<const Row> vehicleRows() {
    return VehicleCommands;
}

} // namespace zm::bench::commands
