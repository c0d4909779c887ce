#pragma once

#include "tests/anomaly/FaultPoints.h"

#include <sys/types.h>

#include <chrono>
#include <string>

namespace zm::test {

/** Whether this process was started as the application (see ApplicationRun). */
bool isApplication();
/** The application with one call made to fail; what is left of it at the end is
 * written down for its starter. */
int applicationMain(int argc, char** argv);

/** The application in a process of its own, this program started anew, in which one call is made to fail. */
class ApplicationRun {
public:
    /** What was left when the application's main function had returned. */
    struct Remains {
        int calls = -1;      ///< of the kind that fails; -1: it did not come to its end
        int descriptors = 0; ///< more than before
        int threads = 0;
    };

    /** The `number`-th call of `kind` fails; 0: none. */
    ApplicationRun(const std::string& folder, FaultKind kind, int number);
    /** Kills it if it still runs. */
    ~ApplicationRun();
    ApplicationRun(const ApplicationRun&) = delete;
    ApplicationRun& operator=(const ApplicationRun&) = delete;

    bool ended();
    bool waitForEnd(std::chrono::milliseconds limit);
    /** Asks it to end, as the system does. */
    void terminate();

    /** Once it has ended: its exit status, or minus the signal that killed it. */
    int status() const { return m_status; }
    Remains remains() const;
    /** What it wrote to its standard error. */
    std::string errors() const;

private:
    std::string m_report;
    std::string m_errors;
    pid_t m_pid = -1;
    bool m_ended = false;
    int m_status = 0;
};

} // namespace zm::test
