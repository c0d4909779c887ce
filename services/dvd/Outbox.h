#pragma once

#include "services/dvd/Wire.h"

#include <deque>
#include <vector>

namespace zm::dvd {

/** What is on its way to the service, in order. The service reads as fast as it plays, so that sending never
 * waits: what the socket does not take stays here. */
class Outbox {
public:
    explicit Outbox(int socket) : m_socket(socket) {}

    /** Adds a pack of the film; several go in one packet. */
    void addBlock(const uint8_t* block);
    template <class Record>
    void add(const Record& record) {
        addPacket(&record, sizeof record, nullptr);
    }
    /** A record and the block that it is about. */
    template <class Record>
    void add(const Record& record, const uint8_t* block) {
        addPacket(&record, sizeof record, block);
    }
    /** The generation of blocks added from now on. */
    void setGeneration(uint32_t generation);
    /** Forgets what has not been sent: the film goes on elsewhere. */
    void clear();

    bool empty() const { return m_packets.empty() && m_blocks.empty(); }
    /** Sends as much as the socket takes; false when nobody is there any more. */
    bool send();

private:
    void addPacket(const void* record, size_t size, const uint8_t* block);
    void closeBlocks();

    int m_socket;
    uint32_t m_generation = 0;
    std::vector<uint8_t> m_blocks;
    std::deque<std::vector<uint8_t>> m_packets;
};

} // namespace zm::dvd
