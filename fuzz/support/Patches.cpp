#include "fuzz/support/Patches.h"

#include <algorithm>

namespace zm::fuzz {

namespace {

size_t byteAt(std::string_view bytes, size_t at) {
    return static_cast<uint8_t>(bytes[at]);
}

void append(std::string& patches, uint8_t block, size_t place, std::string_view bytes,
            const PatchForm& form) {
    patches += static_cast<char>(block);
    patches += static_cast<char>(place & 0xff);
    patches += static_cast<char>(place >> 8);
    for (size_t i = 0; i < form.countBytes; ++i) {
        patches += static_cast<char>(bytes.size() >> (8 * i) & 0xff);
    }
    patches += bytes;
}

} // namespace

std::map<uint8_t, std::string> blocksOf(std::string_view input, const PatchForm& form) {
    const size_t header = 3 + form.countBytes;
    std::map<uint8_t, std::string> blocks;
    while (input.size() >= header) {
        std::string& block = blocks[static_cast<uint8_t>(byteAt(input, 0) % form.blocks)];
        const size_t place = (byteAt(input, 1) | byteAt(input, 2) << 8) % BlockBytes;
        const size_t said = byteAt(input, 3) | (form.countBytes > 1 ? byteAt(input, 4) << 8 : 0);
        const auto bytes = input.substr(header, said).substr(0, BlockBytes - place);
        block.resize(std::max(block.size(), place + bytes.size()));
        std::copy(bytes.begin(), bytes.end(), block.begin() + static_cast<std::ptrdiff_t>(place));
        input.remove_prefix(std::min(header + said, input.size()));
    }
    for (auto& [number, block] : blocks) {
        block.resize(block.find_last_not_of('\0') + 1);
    }
    return blocks;
}

std::string patchesFor(const std::map<uint8_t, std::string>& blocks, const PatchForm& form) {
    const size_t most = form.countBytes > 1 ? BlockBytes : 255;
    const std::string gap(3 + form.countBytes, '\0');
    std::string patches;
    for (const auto& [number, whole] : blocks) {
        const std::string_view block = std::string_view(whole).substr(0, BlockBytes);
        for (size_t at = std::min(block.find_first_not_of('\0'), block.size()); at < block.size();) {
            const size_t end = std::min({block.find(gap, at), block.size(), at + most});
            append(patches, number, at, block.substr(at, end - at), form);
            at = std::min(block.find_first_not_of('\0', end), block.size());
        }
    }
    return patches;
}

} // namespace zm::fuzz
