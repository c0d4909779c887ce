#pragma once

#include "base/Result.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace zm::ctl {

/** How a command of the bench ended. */
struct Answer {
    int exit = 0;
    std::string out;
    std::string err;
};

/** The bench's commands, given over ctl.sock of one runtime folder. Blocking; a connection a command. */
class Client {
public:
    using Print = std::function<void(const std::string& text)>;

    explicit Client(std::string runtimeDir);

    /** Runs one command and hands its output on as it comes; gives the exit status. Fails without a bench. */
    Result<int> run(const std::vector<std::string>& words, const Print& out, const Print& err) const;
    /** The same with the output collected; without a bench: status 1 and why. */
    Answer run(const std::vector<std::string>& words) const;

private:
    std::string m_runtimeDir;
};

} // namespace zm::ctl
