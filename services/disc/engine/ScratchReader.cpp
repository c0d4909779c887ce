#include "services/disc/engine/ScratchReader.h"

#include "services/disc/log/Log.h"

#include <algorithm>
#include <chrono>

namespace zm::disc::engine {

namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t SectorSize = 2048;
// Whoever waits for the drive loses patience later.
constexpr auto MostTime = std::chrono::seconds(4);
// Where all sectors are bad from the beginning on, it is not a scratch.
constexpr size_t MostBadAtFirst = 48;

} // namespace

Result<size_t> ScratchReader::readAt(uint64_t offset, std::span<char> buffer) {
    const auto whole = m_reader->readAt(offset, buffer);
    if (whole) {
        return whole;
    }
    const auto deadline = Clock::now() + MostTime;
    size_t done = 0;
    size_t bad = 0;
    size_t good = 0;
    while (done < buffer.size() && offset + done < size()) {
        if ((good == 0 && bad == MostBadAtFirst) || Clock::now() > deadline) {
            return whole;
        }
        const auto rest = std::min<uint64_t>(buffer.size() - done, size() - offset - done);
        // Up to the next border of a sector.
        const size_t piece =
            static_cast<size_t>(std::min<uint64_t>(SectorSize - (offset + done) % SectorSize, rest));
        const auto part = buffer.subspan(done, piece);
        const auto count = m_reader->readAt(offset + done, part);
        if (count && *count < piece) {
            return done + *count; // shorter than it was when it was opened
        }
        if (!count) {
            std::fill(part.begin(), part.end(), '\0');
        }
        ++(count ? good : bad);
        done += piece;
    }
    if (good == 0) {
        return whole;
    }
    logWarning("%s; %zu sectors are passed over\n", whole.error().c_str(), bad);
    return done;
}

} // namespace zm::disc::engine
