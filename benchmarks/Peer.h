#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace zm::benchmark {

/** Another program that does the same meanwhile; it ends with this. Any thread. */
class Peer {
public:
    /** Starts `words`, the first of them found on the path, without input and output. Ends the program with a message where
     * it does not start. */
    explicit Peer(std::vector<std::string> words);
    ~Peer();
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    /** Its processor time so far, in milliseconds. Ends the program with a message where the peer has ended. */
    double used() const;

private:
    std::string m_name;
    pid_t m_pid = 0;
};

} // namespace zm::benchmark
