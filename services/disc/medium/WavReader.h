#pragma once

#include "services/disc/medium/Medium.h"

namespace zm::disc::medium {

/** Puts the header of a WAV file in front of the bare sound of a CD, so that it is played like any file. */
class WavReader : public ByteReader {
public:
    /** `sound`: 16 bits, stereo, 44,100 Hz; less than 4 GB. */
    explicit WavReader(std::unique_ptr<ByteReader> sound);
    uint64_t size() const override { return m_header.size() + m_sound->size(); }
    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override;

private:
    std::unique_ptr<ByteReader> m_sound;
    std::string m_header;
};

} // namespace zm::disc::medium
