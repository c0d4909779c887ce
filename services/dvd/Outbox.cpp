#include "services/dvd/Outbox.h"

#include <sys/socket.h>

#include <cerrno>
#include <cstring>

namespace zm::dvd {

void Outbox::addBlock(const uint8_t* block) {
    m_blocks.insert(m_blocks.end(), block, block + BlockBytes);
    if (m_blocks.size() == MaxBlocks * BlockBytes) {
        closeBlocks();
    }
}

void Outbox::closeBlocks() {
    if (m_blocks.empty()) {
        return;
    }
    BlocksEvent event;
    event.head = {Event::Blocks, m_generation};
    event.count = static_cast<uint32_t>(m_blocks.size() / BlockBytes);
    std::vector<uint8_t> packet(sizeof event + m_blocks.size());
    std::memcpy(packet.data(), &event, sizeof event);
    std::memcpy(packet.data() + sizeof event, m_blocks.data(), m_blocks.size());
    m_blocks.clear();
    m_packets.push_back(std::move(packet));
}

void Outbox::addPacket(const void* record, size_t size, const uint8_t* block) {
    closeBlocks();
    std::vector<uint8_t> packet(size + (block ? BlockBytes : 0));
    std::memcpy(packet.data(), record, size);
    if (block) {
        std::memcpy(packet.data() + size, block, BlockBytes);
    }
    m_packets.push_back(std::move(packet));
}

void Outbox::setGeneration(uint32_t generation) {
    closeBlocks();
    m_generation = generation;
}

void Outbox::clear() {
    m_blocks.clear();
    m_packets.clear();
}

bool Outbox::send() {
    closeBlocks();
    while (!m_packets.empty()) {
        const auto& packet = m_packets.front();
        if (::send(m_socket, packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL) < 0) {
            return errno == EAGAIN || errno == EINTR;
        }
        m_packets.pop_front();
    }
    return true;
}

} // namespace zm::dvd
