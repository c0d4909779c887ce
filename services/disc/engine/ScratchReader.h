#pragma once

#include "services/disc/medium/Medium.h"

namespace zm::disc::engine {

/**
 * Reads a file of sound or film although the disc has scratches: where a piece cannot be read it is read again sector
 * by sector, and sectors that cannot be read are zeros. It fails where nothing of a piece can be read, or where that
 * takes too long.
 */
class ScratchReader : public medium::ByteReader {
public:
    explicit ScratchReader(std::unique_ptr<medium::ByteReader> reader) : m_reader(std::move(reader)) {}
    uint64_t size() const override { return m_reader->size(); }
    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override;

private:
    std::unique_ptr<medium::ByteReader> m_reader;
};

} // namespace zm::disc::engine
