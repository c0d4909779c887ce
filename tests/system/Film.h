#pragma once

#include "tests/system/SystemTest.h"

namespace zm::test {

/** A real red film in the drive of the whole system, and what the driver sees in the middle of the screen. */
class Film : public SystemTest {
protected:
    /** Starts the bench with it and waits until it is seen. */
    void startFilm();
    void makeFilm();
    std::string disc() { return folder + "/disc"; }
    bool seesRed();
    bool filmRuns();
    /** The parking page is on the screen and nothing of the film. */
    bool isHidden();
    /** Where "show anyway" of the parking page lies. */
    Words showAnywayPlace();
    /** A touch of the driver on "show anyway". */
    void showAnyway();
    /** Kills that process; the film is not seen while and after it comes back. */
    void killAndWatch(const std::string& process);
    void drive(bool driving);
};

} // namespace zm::test
