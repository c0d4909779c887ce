#pragma once

#include "fuzz/support/Format.h"

#include <cstdint>

namespace zm::fuzz {

/** Blocks of the target's images that have a meaning: 16 of them, from this one on. */
inline constexpr uint32_t FirstIsoBlock = 16;

/** A number as images have it: first the low byte first, then the high byte first. */
std::string bothEndian(uint32_t number);

/** A record of a folder: its place and size stand in it twice, its name and what follows are counted. */
struct FolderRecord {
    std::string fixed; ///< the 33 bytes in front of the name
    std::string name;
    Pieces systemUse; ///< entries

    explicit FolderRecord(std::string_view bytes);
    std::string bytes() const;
    void change(const FolderRecord& other, Random& random);
};

/** Records, one behind the other, up to the first byte that begins none. */
Pieces folderRecords(std::string_view block);

/** Entries of Rock Ridge, one behind the other. */
Pieces rockRidgeEntries(std::string_view area);
void changeRockRidge(Pieces& entries, Random& random);

} // namespace zm::fuzz
