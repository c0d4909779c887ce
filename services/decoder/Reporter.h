#pragma once

#include "services/disc/engine/DecoderWire.h"
#include "services/disc/engine/Engine.h"

#include <cstdint>

namespace zm::decoder {

/** Sends a message to the disc service. Any thread. */
void say(const disc::engine::wire::Json& message);

/** Tells the disc service what becomes of one item. */
class Reporter : public disc::engine::Listener {
public:
    explicit Reporter(uint64_t item) : m_item(item) {}
    /** The number of what is to follow. */
    void expect(int64_t number) { m_next = number; }
    void engineStreams(const disc::engine::Streams& streams) override;
    void engineStarted(disc::engine::Milliseconds length) override;
    void engineMoved(disc::engine::Milliseconds position, disc::engine::Milliseconds length) override;
    void engineEnded() override;
    void engineFollowed(disc::engine::Milliseconds length) override;
    void engineScanned(disc::engine::ScanEdge edge) override;
    void engineFailed(const std::string& reason) override;

private:
    uint64_t m_item;
    int64_t m_next = 0;
};

} // namespace zm::decoder
