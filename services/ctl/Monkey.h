#pragma once

#include "services/ctl/Arguments.h"
#include "services/ctl/Client.h"
#include "services/ctl/MonkeySteps.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <string>
#include <vector>

namespace zm::ctl {

struct MonkeyOptions {
    unsigned seed = 0;
    std::chrono::milliseconds time{60000};
    std::string file; ///< where a failing run is kept
};

/** Takes the options of `monkey`; a seed that was not given is a fresh one. */
MonkeyOptions monkeyOptions(Arguments& arguments);

/**
 * Gives a bench random input and looks after each step whether the programs still run and answer, and
 * whether the picture is what the pages say. The answers do not matter: a refused command is not a
 * failure.
 */
class Monkey {
public:
    Monkey(const Client& client, MonkeyOptions options, Client::Print out, Client::Print err);

    /** Exit status: 1 when something failed, having left the file. */
    int run();

private:
    /** What failed and the script lines that find it again. */
    struct Failure {
        std::string why;
        std::vector<std::string> proof;
    };
    using Finding = std::optional<Failure>;

    Finding play();
    Finding step(const std::string& line);
    Finding lookAt(const nlohmann::json& processes);
    Finding lookForAnswer();
    /** Whether everything that was set was drawn, once nothing moves. */
    Finding lookAtPicture();
    static Finding tooLong(std::chrono::steady_clock::time_point begin);
    Finding ended();
    nlohmann::json processes() const;
    size_t closeRequests() const;
    MonkeyWorld world() const;
    int report(const Failure& failure) const;

    const Client& m_client;
    const MonkeyOptions m_options;
    Client::Print m_out;
    Client::Print m_err;
    std::vector<std::string> m_lines; ///< the script so far
    MonkeyWorld m_offer;
    nlohmann::json m_processes; ///< as they were after the step before
    size_t m_closeRequests = 0;
    size_t m_refused = 0;
};

} // namespace zm::ctl
