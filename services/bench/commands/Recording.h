#pragma once

#include "base/Result.h"
#include "services/bench/commands/Run.h"

#include <chrono>
#include <deque>
#include <fstream>
#include <memory>
#include <optional>
#include <string>

namespace zm::bench::commands {

/**
 * Every input since the bench began, from whichever client, with its time: lines of a script. On request they are
 * also written to a file as they come. On the loop's thread.
 */
class Recording {
public:
    using Clock = std::chrono::steady_clock;
    struct Input {
        Clock::time_point moment;
        std::string line;
        std::optional<Exit> exit; ///< nothing while it runs
        std::optional<Clock::time_point> ended;
    };

    explicit Recording(std::string start);
    /** A file that is still written gets what is on its way. */
    ~Recording();
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    /** How such a bench is started. */
    const std::string& start() const { return m_start; }
    /** Notes a command that begins, unless it only asks, and later how it ends. */
    void note(Run& run);

    /** From now on inputs go to `file` too, until `end`; "-" keeps them for the answer of `end` alone. */
    Status begin(const std::string& file);
    /** Where inputs go; empty while nobody records. */
    const std::string& target() const { return m_target; }
    /** Ends it; gives the script, or for a file how many inputs it has. */
    Result<std::string> end();
    /** The script of all inputs since the bench began; of a long run, of the latest ones. */
    std::string all() const;
    /** The inputs themselves. */
    const std::deque<std::shared_ptr<Input>>& inputs() const { return m_inputs; }

private:
    std::string head() const;
    static std::string text(const Input& input, Clock::time_point& before);
    void writeEnded(bool also = false);

    const std::string m_start;
    const Clock::time_point m_began = Clock::now();
    std::deque<std::shared_ptr<Input>> m_inputs;
    bool m_dropped = false; ///< older ones than m_inputs
    std::string m_target;
    std::ofstream m_file;
    std::string m_script;                         ///< what was recorded for "-"
    std::deque<std::shared_ptr<Input>> m_waiting; ///< to be written, in their order
    Clock::time_point m_before;                   ///< the last that was written
    size_t m_written = 0;
    /** A command may end when nobody records any more. */
    const std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

} // namespace zm::bench::commands
