#pragma once

#include "base/EventLoop.h"

#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zm::bench::unit {

/** A program and how to start it. */
struct ChildSetup {
    std::string name;    ///< as `ps` and `kill` call it: "app", "disc"
    std::string program; ///< path
    std::vector<std::string> arguments;
    std::vector<std::pair<std::string, std::string>> environment; ///< set over the bench's own
};

/**
 * A child process that is watched: one that dies is named on standard error and started again, waiting longer
 * each time, at most five times a minute; one that ends in order stays down. Loop's thread only.
 */
class Child {
public:
    enum class State { Down, Running, Waiting, GivenUp };

    Child(EventLoop& loop, ChildSetup setup);
    /** Ends the process: SIGTERM, and SIGKILL after two seconds. */
    ~Child();

    /** Starts it unless it runs; deaths of the past are forgotten. */
    void start();
    /** Ends it at once with SIGKILL, as a crash would; false if it does not run. */
    bool kill();
    /** Ends it in order, waiting at most two seconds for it; it stays down. */
    void stop();

    /** It was started, for the first time or anew. */
    std::function<void()> onStart;
    /** It ended and is not started again, whether in order or given up. */
    std::function<void()> onDown;

    State state() const { return m_state; }
    /** Runs or will be started again. */
    bool expected() const { return m_state == State::Running || m_state == State::Waiting; }
    int pid() const { return m_pid; }
    int starts() const { return m_starts; }
    /** How often it ended out of order since this object began. */
    int deaths() const { return m_allDeaths; }
    const std::string& name() const { return m_setup.name; }
    std::string describeState() const;

private:
    void spawn();
    void ended(int status);
    void died(const std::string& how);

    EventLoop& m_loop;
    ChildSetup m_setup;
    State m_state = State::Down;
    int m_pid = -1;
    int m_starts = 0;
    int m_allDeaths = 0;
    SourceHandle m_watch;
    SourceHandle m_retry;
    std::deque<std::chrono::steady_clock::time_point> m_deaths;
};

} // namespace zm::bench::unit
