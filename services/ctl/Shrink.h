#pragma once

#include "services/ctl/Arguments.h"
#include "services/ctl/Client.h"
#include "services/ctl/Expectation.h"
#include "services/ctl/Script.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zm::ctl {

struct ShrinkOptions {
    std::string file;
    std::string until; ///< an expectation as behind `expect`
    std::string bench; ///< arguments of zmbench; empty: what the script's head says
    std::string to;    ///< the smaller script
};

/** Takes the words behind `shrink`. */
ShrinkOptions shrinkOptions(Arguments& arguments);

/** Tries some of the things, by their numbers in order: how many of them, from the first on, it took; nothing if they
 * do not do. */
using Try = std::function<std::optional<size_t>(const std::vector<size_t>&)>;

/**
 * A selection of `count` things that will do, by delta debugging: without any one of them it would not. All of them
 * together do.
 */
std::vector<size_t> smallest(size_t count, const Try& tryOut);

/** Reduces a script to the steps that it needs until an expectation holds, each try on a fresh bench. */
class Shrink {
public:
    Shrink(ShrinkOptions options, Client::Print out, Client::Print err);

    int run();

private:
    /** How many of the steps it took until the expectation held; nothing if it never did. */
    std::optional<size_t> tryOut(const std::vector<size_t>& steps);
    bool holds(const Client& client) const;
    int write(const std::vector<size_t>& steps) const;

    const ShrinkOptions m_options;
    Client::Print m_out;
    Client::Print m_err;
    std::optional<Expectation> m_expectation;
    std::vector<std::string> m_bench;
    std::vector<ScriptLine> m_lines;
    bool m_stopped = false; ///< the clock: pauses pass on it
    bool m_alone = false;   ///< no disc service runs
    size_t m_tries = 0;
    std::string m_failure; ///< why no bench could be started
};

} // namespace zm::ctl
