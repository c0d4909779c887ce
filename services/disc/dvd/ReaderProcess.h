#pragma once

#include "base/Result.h"
#include "base/UniqueFd.h"
#include "services/dvd/Wire.h"

#include <memory>
#include <string>
#include <vector>

namespace zm::disc::dvd {

/**
 * The program that reads a DVD along the disc's own instructions. A process of its own, as damaged discs end
 * the library that it uses, and a read may hang for ever. One thread.
 */
class ReaderProcess {
public:
    /** What came, or why nothing did. */
    enum class Receipt { Packet, Nothing, Ended };

    /** Starts it for the disc at `path`; it lies beside the running program. */
    static Result<std::unique_ptr<ReaderProcess>> start(const std::string& path);
    /** Ends it at once, also in the middle of a read. */
    ~ReaderProcess();

    int pid() const { return m_pid; }
    /** Readable when there is a packet, or the process has ended. */
    int fd() const { return m_socket.get(); }
    /** Does not wait. Fills `packet`. */
    Receipt receive(std::vector<uint8_t>& packet);
    void send(const zm::dvd::Command& command);
    /** How it ended, in words; after Receipt::Ended. */
    std::string ending();

private:
    ReaderProcess(UniqueFd socket, int pid) : m_socket(std::move(socket)), m_pid(pid) {}

    UniqueFd m_socket;
    int m_pid;
};

} // namespace zm::disc::dvd
