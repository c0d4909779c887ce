#include "services/bench/unit/Car.h"

#include "services/bench/screen/VideoLock.h"
#include "services/ctl/Names.h"
#include "services/ctl/Numbers.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <sstream>

namespace zm::bench::unit {

namespace {

constexpr int ParkingDevice = screen::VideoLock::ParkingDevice;
constexpr double TypingEnds = 8; // km/h
constexpr double FastestCar = 400;
constexpr int BrightestLight = 200000;
// Between the two the screen stays as it is, so that it does not flicker under trees.
constexpr int NightBegins = 200;
constexpr int DayBegins = 400;

Status among(const char* signal, const std::string& value, const std::vector<std::string>& known) {
    return std::find(known.begin(), known.end(), value) != known.end()
               ? ok()
               : Status(Error{ctl::unknownWord(signal, value, known)});
}

Status within(const char* signal, const std::string& value, double most, const char* what) {
    const auto number = ctl::parseNumber<double>(value);
    return number && *number >= 0 && *number <= most
               ? ok()
               : Status(Error{std::string(signal) + " \"" + value + "\" is not " + what});
}

/** A signal and the values that it takes. */
struct SignalRow {
    std::string_view name;
    Status (*check)(const std::string& value);
};

constexpr std::array Signals = {
    SignalRow{"speed",
              [](const std::string& value) { return within("speed", value, FastestCar, "km/h, 0 to 400"); }},
    SignalRow{"gear",
              [](const std::string& value) {
                  return among("gear", value, {"park", "reverse", "neutral", "drive"});
              }},
    SignalRow{"ignition",
              [](const std::string& value) {
                  return among("ignition", value, {"off", "accessory", "on"});
              }},
    SignalRow{
        "light",
        [](const std::string& value) { return within("light", value, BrightestLight, "lux, 0 to 200000"); }},
    SignalRow{"daynight",
              [](const std::string& value) {
                  return among("daynight", value, {"day", "night"});
              }},
};

} // namespace

Car::Car(Vehicle& vehicle, std::string ppsSocket) : m_vehicle(vehicle), m_socket(std::move(ppsSocket)) {}

Status Car::start() {
    auto object = PpsFile::open(m_socket, std::string("/pps/") + Object, PpsWriteOnlyCreate, 0666);
    if (!object) {
        return object.failure();
    }
    m_object = std::make_unique<PpsFile>(std::move(*object));
    publish();
    return ok();
}

Status Car::check(const std::string& signal, const std::optional<std::string>& value) {
    const auto row = std::find_if(Signals.begin(), Signals.end(),
                                  [&](const SignalRow& each) { return each.name == signal; });
    if (row == Signals.end()) {
        std::vector<std::string> names;
        for (const auto& each : Signals) {
            names.emplace_back(each.name);
        }
        return Error{ctl::unknownWord("signal", signal, names)};
    }
    return value ? row->check(*value) : ok();
}

Status Car::set(const std::string& signal, const std::string& value, ShellServer::Reply reply) {
    if (auto good = check(signal, value); !good) {
        return good;
    }
    const bool wasParked = parked();
    if (signal == "speed") {
        m_signals.speed = *ctl::parseNumber<double>(value);
    } else if (signal == "gear") {
        m_signals.gear = value;
    } else if (signal == "ignition") {
        m_signals.ignition = value;
    } else if (signal == "light") {
        lightIs(static_cast<int>(*ctl::parseNumber<double>(value)), std::move(reply));
        return ok();
    } else {
        onTheme(value, std::move(reply));
        return ok();
    }
    followSignals(wasParked, std::move(reply));
    return ok();
}

// Device 2 follows where the car parks or leaves: what somebody has set it to meanwhile stays until then.
void Car::followSignals(bool wasParked, ShellServer::Reply reply) {
    if (parked() != wasParked) {
        m_vehicle.setDevice(ParkingDevice, parked() ? 1 : 0, Notice::Send, std::move(reply));
    } else {
        reply(Json());
    }
    publish();
}

void Car::lightIs(int lux, ShellServer::Reply reply) {
    m_signals.light = lux;
    const std::string theme = lux < NightBegins ? "night" : lux > DayBegins ? "day" : m_theme;
    if (theme != m_theme) {
        onTheme(theme, std::move(reply));
    } else {
        reply(Json());
    }
    publish();
}

bool Car::parked() const {
    return m_signals.speed == 0 && (m_signals.gear == "park" || m_signals.ignition == "off");
}

Restriction Car::restriction() const {
    if (m_signals.speed >= TypingEnds) {
        return Restriction::Typing;
    }
    const bool reads = m_vehicle.device(ParkingDevice).value_or(0) != 0;
    return parked() && reads ? Restriction::None : Restriction::Video;
}

void Car::themeIs(const std::string& theme) {
    m_theme = theme;
    publish();
}

void Car::driveRuns(bool runs) {
    m_drive = runs;
    publish();
}

void Car::describe(Json& state) const {
    state["car"] = {{"speed", m_signals.speed},
                    {"gear", m_signals.gear},
                    {"ignition", m_signals.ignition},
                    {"light", m_signals.light ? Json(*m_signals.light) : Json()},
                    {"restriction", static_cast<int>(restriction())},
                    {"drive", m_drive}};
}

std::string Car::lines() const {
    std::ostringstream text;
    text << "speed:n:" << m_signals.speed << "\ngear::" << m_signals.gear
         << "\nignition::" << m_signals.ignition << "\nlight:n:" << m_signals.light.value_or(-1)
         << "\ndaynight::" << m_theme
         << "\nparked:b:" << (restriction() == Restriction::None ? "true" : "false")
         << "\nrestriction:n:" << static_cast<int>(restriction()) << "\ndrive::" << (m_drive ? "on" : "off")
         << "\n";
    return text.str();
}

// Only what differs: who watches hears of changes, not of each signal that comes again.
void Car::publish() {
    std::istringstream now(lines());
    std::string changes;
    for (std::string line; std::getline(now, line);) {
        changes += ("\n" + m_published).find("\n" + line + "\n") == std::string::npos ? line + "\n" : "";
    }
    if (m_object && !changes.empty()) {
        m_published = lines();
        // Without the service nobody reads it either.
        (void)m_object->write(changes);
    }
}

} // namespace zm::bench::unit
