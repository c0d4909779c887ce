#pragma once

#include "base/ScreenSize.h"

#include <string>

namespace zm::bench::unit {

/** An active launcher carries out what the application asks of it; a passive one only records it. */
enum class LauncherMode { Active, Passive };

/** The application's timers follow real time, or stand until `clock advance`. */
enum class ClockMode { Real, Manual };

/** How a head unit is set up. */
struct HeadUnitOptions {
    ScreenSize screen;
    std::string runtimeDir;  ///< exists, mode 0700
    std::string shareDir;    ///< has the folders rccs, fonts and web
    std::string catalogue;   ///< SQLite file that the application reads
    std::string resourceDir; ///< of resource files that the application reads again when they change; empty:
                             ///< those of shareDir, read once
    std::string programDir;  ///< folder of Platen and zmdiscd; empty: nothing is started
    bool discService = true;
    std::string
        resume; ///< SQLite file in which the disc service keeps where discs were left; empty: in runtimeDir
    std::string drive;       ///< a drive of this machine, "auto" the first; empty: none
    std::string audioDevice; ///< for the disc service; empty: the first that is there
    std::string disc;        ///< put into the drive at the start; empty: none
    std::string appArgs;     ///< appended to the application's command line, separated as a shell would
    LauncherMode launcher = LauncherMode::Active;
    bool discToFront = true; ///< an active launcher brings the disc player to the front for an inserted disc
    ClockMode clock = ClockMode::Real;
    bool motion = true; ///< the application's pages move, as far as the car and the clock allow
};

} // namespace zm::bench::unit
