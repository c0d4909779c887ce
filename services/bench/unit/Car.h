#pragma once

#include "base/Result.h"
#include "platform/linux/pps/PpsFile.h"
#include "services/bench/unit/Vehicle.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zm::bench::unit {

/** What the driver may not be distracted by; the numbers are published. */
enum class Restriction {
    None = 0,  ///< parked
    Video = 1, ///< not parked: no film
    Typing = 2 ///< at 8 km/h and faster: no typing and no long lists either
};

/** What the car's bus says. */
struct CarSignals {
    double speed = 0; ///< km/h
    std::string gear = "park";
    std::string ignition = "on";
    std::optional<int> light; ///< lux; nothing before the sensor has said anything
};

/**
 * The car's signals and what follows from them: whether it is parked (the vehicle's device 2), day or night of the
 * screen, the restriction. Published as the PPS object "zelmar/vehicle/status". On the loop's thread.
 */
class Car {
public:
    static constexpr const char* Object = "zelmar/vehicle/status";

    Car(Vehicle& vehicle, std::string ppsSocket);

    Status start();

    /** The screen is to have the colours "day" or "night". */
    std::function<void(const std::string& theme, ShellServer::Reply reply)> onTheme;

    /** Sets a signal by its name: "speed", "gear", "ignition", "light", "daynight". The error names what is wrong;
     * then nothing has happened. */
    Status set(const std::string& signal, const std::string& value, ShellServer::Reply reply);
    /** Whether there is such a signal, and `set` would do. */
    static Status check(const std::string& signal, const std::optional<std::string>& value);

    const CarSignals& signals() const { return m_signals; }
    /** By gear, speed and ignition, whatever device 2 reads. */
    bool parked() const;
    /** Of the signals and of device 2, the stricter one. */
    Restriction restriction() const;
    /** Something else that is published has changed. */
    void publish();
    /** The colours of the screen as they are. */
    void themeIs(const std::string& theme);
    /** A drive from a file begins or ends. */
    void driveRuns(bool runs);
    /** Adds "car": {"speed","gear","ignition","light","restriction","drive"}. */
    void describe(Json& state) const;
    /** The lines that are published. */
    std::string lines() const;

private:
    void followSignals(bool wasParked, ShellServer::Reply reply);
    void lightIs(int lux, ShellServer::Reply reply);

    Vehicle& m_vehicle;
    std::string m_socket;
    std::unique_ptr<PpsFile> m_object;
    CarSignals m_signals;
    std::string m_theme = "night";
    bool m_drive = false;
    std::string m_published;
};

} // namespace zm::bench::unit
