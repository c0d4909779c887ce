#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace zm::fuzz {

inline constexpr size_t BlockBytes = 2048;

/**
 * What stands in an image that is mostly zeros: patches of one byte for the block's number, two for the place in it
 * (low byte first), `countBytes` for the number of bytes that follow, and these.
 */
struct PatchForm {
    size_t blocks;     ///< numbers count modulo this
    size_t countBytes; ///< 1 or 2
};

/** Blocks by number, each without the zeros at its end; of patches that reach beyond their block, what is in it. */
std::map<uint8_t, std::string> blocksOf(std::string_view input, const PatchForm& form);

/** The patches that make these blocks. */
std::string patchesFor(const std::map<uint8_t, std::string>& blocks, const PatchForm& form);

} // namespace zm::fuzz
