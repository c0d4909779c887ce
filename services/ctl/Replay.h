#pragma once

#include "services/ctl/Arguments.h"
#include "services/ctl/Client.h"
#include "services/ctl/Script.h"

#include <chrono>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

namespace zm::ctl {

struct ReplayOptions {
    std::string file;
    double speed = 1;   ///< of real time
    bool clock = false; ///< the pauses pass on the bench's stopped clock
    std::string trace;  ///< file for what followed each step; empty: none
};

/** Takes the words behind `replay`. */
ReplayOptions replayOptions(Arguments& arguments);

/** Repeats a script with its pauses, which `runScript` only adds to the time that its commands take. */
class Replay {
public:
    Replay(const Client& client, ReplayOptions options, Client::Print out, Client::Print err);

    /** Exit status: that of the first step that fails, which is named. */
    int run();

private:
    int play(const std::vector<ScriptLine>& lines);
    int step(const ScriptLine& line);
    int pass(std::chrono::milliseconds pause);
    int command(const std::vector<std::string>& words, std::string& said);
    void trace(const std::string& text);
    std::vector<std::string> published();

    const Client& m_client;
    const ReplayOptions m_options;
    Client::Print m_out;
    Client::Print m_err;
    std::ofstream m_trace;
    bool m_movesClock = false; ///< the script itself does
    uint64_t m_published = 0;  ///< number of the last change that was traced
    std::chrono::steady_clock::time_point m_due;
};

} // namespace zm::ctl
