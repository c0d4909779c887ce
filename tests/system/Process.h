#pragma once

#include "base/UniqueFd.h"

#include <chrono>
#include <string>
#include <vector>

namespace zm::test {

/** A real program of this project with its two outputs; killed and reaped with this object. */
class Process {
public:
    /** `words`: the program's name in the build's bin folder and its arguments;
     * ZM_RUNTIME names `runtime`. */
    Process(const std::vector<std::string>& words, const std::string& runtime);
    ~Process();
    Process(Process&&) = delete;

    /** The next line of standard output without its end; empty when there is none within `time`. */
    std::string line(std::chrono::milliseconds time = std::chrono::seconds(20));
    /** Waits for the end; -1 if it does not end within `time`, 1000 + signal if it was killed by one. */
    int wait(std::chrono::milliseconds time = std::chrono::seconds(20));
    /** Everything it wrote that has not been read as lines, after its end. */
    std::string out();
    std::string err();
    void signal(int number);
    int pid() const { return m_pid; }

private:
    int m_pid = -1;
    UniqueFd m_out;
    UniqueFd m_err;
    std::string m_read;
};

} // namespace zm::test
