#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zm::bench::commands {

/** Exit statuses of a command. */
enum class Exit { Good = 0, Failed = 1, WrongUsage = 2 };

/** One command that was given: its words and where its answer goes. On the loop's thread. */
class Run {
public:
    struct Sink {
        std::function<void(const std::string& text)> out;
        std::function<void(const std::string& text)> err;
        std::function<void(int status)> exit; ///< called once, last
    };

    Run(std::vector<std::string> words, std::string cwd, Sink sink);

    const std::vector<std::string>& words() const { return m_words; }
    /** A path as the caller means it, absolute. */
    std::string absolute(const std::string& path) const;

    void out(const std::string& text);
    void err(const std::string& text);
    /** Ends the command; further calls do nothing. */
    void finish(Exit exit = Exit::Good);
    /** Prints why and ends with status 1. */
    void fail(const std::string& why);
    /** Whoever asked has gone: nothing is printed any more. */
    void cancel();
    bool finished() const { return m_finished; }
    /** Called once when the command ends or is cancelled: lets go of what it watched. */
    std::function<void()> onEnd;
    /** Called once when it ends by itself, before the caller hears of it. */
    std::function<void(Exit exit)> onExit;

private:
    void end();

    std::vector<std::string> m_words;
    std::string m_cwd;
    Sink m_sink;
    bool m_finished = false;
};

} // namespace zm::bench::commands
