#pragma once

#include "base/EventLoop.h"
#include "base/Result.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zm::bench::unit {

/** A signal of a recorded drive. */
struct JourneyStep {
    std::chrono::milliseconds time; ///< since the drive began
    std::string signal;
    std::string value;
};

using SignalCheck = std::function<Status(const std::string& signal, const std::optional<std::string>& value)>;

/**
 * The steps of a signal file, in the order of their times: a line with the names of its columns ("time", in seconds,
 * and signals), then a line for each moment; an empty field leaves its signal as it is. `check` says what is wrong
 * with a signal or a value of it. The error names file and line.
 */
Result<std::vector<JourneyStep>> readJourney(const std::string& file, const SignalCheck& check);

/** Plays a recorded drive: in real time, or as a stopped clock is advanced. On the loop's thread. */
class Journey {
public:
    enum class Pace { Real, Stepped };

    Journey(EventLoop& loop, Pace pace) : m_loop(loop), m_pace(pace) {}

    /** What is due; and whether it runs has changed. */
    std::function<void(const JourneyStep& step)> onStep;
    std::function<void(bool runs)> onRuns;

    /** Begins a drive, in place of one that runs. A `speed` of 2 takes half the time. */
    void begin(std::vector<JourneyStep> steps, double speed);
    void end();
    bool runs() const { return !m_steps.empty(); }

    /** How long until the next step; nothing without one. */
    std::optional<std::chrono::milliseconds> untilNext() const;
    /** The stopped clock was advanced: does what is due. */
    void pass(std::chrono::milliseconds time);

private:
    void doWhatIsDue();
    void arm();

    EventLoop& m_loop;
    const Pace m_pace;
    std::vector<JourneyStep> m_steps;
    size_t m_next = 0;
    std::chrono::milliseconds m_now{0}; ///< of the stopped clock
    std::chrono::steady_clock::time_point m_began;
    SourceHandle m_timer;
};

} // namespace zm::bench::unit
