#include "services/disc/medium/IsoSessions.h"

#include "services/disc/medium/IsoNumbers.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace zm::disc::medium {

namespace {

constexpr uint64_t Descriptor = 16; // block of a session
constexpr std::string_view PrimaryMark("\1CD001", 6);
constexpr size_t VolumeBlocksPlace = 80;

// No root lies further behind its descriptor.
constexpr uint64_t MaxRootDistance = 20000;
// Between two sessions lie the end of the first and the beginning of the second; some programs count a little less
// or more.
constexpr uint64_t Slack = 300;
constexpr uint64_t MaxGap = 12000;
constexpr int MaxSessions = 99;

struct Primary {
    uint64_t root = 0;   ///< block
    uint64_t blocks = 0; ///< of the session
};

std::optional<Primary> primaryAt(ByteReader& image, uint64_t block) {
    std::array<char, IsoRootPlace + 6> bytes{};
    auto mark = std::span(bytes).first(PrimaryMark.size());
    // Nearly all blocks are none, so that a few bytes settle it.
    const auto few = image.readAt(block * IsoBlockSize, mark);
    if (!few || *few < mark.size() || std::string_view(mark.data(), mark.size()) != PrimaryMark) {
        return std::nullopt;
    }
    const auto count = image.readAt(block * IsoBlockSize, bytes);
    if (!count || *count < bytes.size()) {
        return std::nullopt;
    }
    const std::string_view text(bytes.data(), bytes.size());
    return Primary{isoNumber32(text, IsoRootPlace + 2), isoNumber32(text, VolumeBlocksPlace)};
}

// Whether the folder that says of itself that it is block `number` of the disc lies there.
bool isFolderAt(ByteReader& image, uint64_t block, uint64_t number) {
    constexpr size_t NameLength = 32;
    std::array<char, NameLength + 2> record{};
    const auto count = image.readAt(block * IsoBlockSize, record);
    const std::string_view text(record.data(), record.size());
    return count && *count == record.size() && static_cast<unsigned char>(text[0]) >= record.size() &&
           isoNumber32(text, 2) == number && text[NameLength] == 1 && text[NameLength + 1] == 0;
}

uint64_t findFirstBlock(ByteReader& image, uint64_t root) {
    if (isFolderAt(image, root, root)) {
        return 0;
    }
    const uint64_t end = std::min({image.size() / IsoBlockSize, root, MaxRootDistance});
    for (uint64_t block = Descriptor + 1; block < end; ++block) {
        if (isFolderAt(image, block, root)) {
            return root - block;
        }
    }
    return 0; // damaged: whoever reads it says so
}

} // namespace

IsoSession findNewestSession(ByteReader& image) {
    IsoSession found;
    auto primary = primaryAt(image, Descriptor);
    if (!primary) {
        return found;
    }
    const uint64_t first = found.firstBlock = findFirstBlock(image, primary->root);
    const uint64_t end = first + image.size() / IsoBlockSize;
    found.begin = first;
    const auto nextBehind = [&](uint64_t expected) {
        const uint64_t last = std::min(end, expected + MaxGap);
        uint64_t block = std::max(found.begin + Descriptor + 1, expected - std::min(expected, Slack));
        for (; block < last; ++block) {
            const auto next = primaryAt(image, block - first);
            if (next && next->root > block && isFolderAt(image, next->root - first, next->root)) {
                primary = next;
                found.begin = block - Descriptor;
                return true;
            }
        }
        return false;
    };
    // Some count a session's blocks from its own beginning, others from the disc's.
    for (int session = 1; session < MaxSessions; ++session) {
        const uint64_t blocks = primary->blocks;
        if (!nextBehind(found.begin + blocks) && (found.begin == 0 || !nextBehind(blocks))) {
            break;
        }
    }
    return found;
}

} // namespace zm::disc::medium
