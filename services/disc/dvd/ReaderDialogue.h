#pragma once

#include "services/disc/dvd/ReaderProcess.h"

#include <deque>

namespace zm::disc::dvd {

/**
 * Commands to the reader and its answers. What the reader sends between a jump's command and its answer is of
 * the place before: it is kept back until the answer says whether it is still wanted. One thread.
 */
class ReaderDialogue {
public:
    /** What `next` found. */
    enum class Found {
        Packet,  ///< of the film
        Jumped,  ///< packets from now on are of the place that was asked for
        Refused, ///< the disc does not do what was asked; packets go on
        Nothing, ///< for the time being
        Ended    ///< the process
    };

    explicit ReaderDialogue(std::unique_ptr<ReaderProcess> reader) : m_reader(std::move(reader)) {}

    int fd() const { return m_reader->fd(); }
    std::string ending() { return m_reader->ending(); }
    /** Sends a command that leads elsewhere, perhaps. */
    void ask(zm::dvd::Command command);
    /** Sends a command that has no answer. */
    void tell(zm::dvd::Command command);
    /** An answer has not come yet. */
    bool outstanding() const { return m_answered != m_asked; }
    /** Generation of the packets that `next` gives. */
    uint32_t generation() const { return m_generation; }
    Found next(std::vector<uint8_t>& packet);

private:
    void answer(const zm::dvd::DoneEvent& event);

    std::unique_ptr<ReaderProcess> m_reader;
    uint32_t m_asked = 0;      ///< generation of the last command
    uint32_t m_answered = 0;   ///< generation of the last answer
    uint32_t m_generation = 0; ///< of what comes
    bool m_jumped = false;     ///< not told yet
    bool m_refused = false;    ///< not told yet
    std::deque<std::vector<uint8_t>> m_held;
};

} // namespace zm::disc::dvd
