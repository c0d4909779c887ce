#pragma once

#include "services/disc/model/PlayLists.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zm::disc::medium {

/** Where a VCD's tables stand on the disc, in sectors. */
inline constexpr uint32_t VcdInfoSector = 150;
inline constexpr uint32_t VcdEntriesSector = 151;
inline constexpr uint32_t VcdListOffsetsSector = 152;
inline constexpr uint32_t VcdListOffsetsSectors = 32;
inline constexpr uint32_t VcdListsSector = 184;
/** What the lists have room for: their places are numbers of 16 bits of units of at most 8 bytes. */
inline constexpr uint32_t VcdListsSectors = 256;

/** A still picture or short film beside the tracks. */
struct VcdSegment {
    uint32_t sector = 0;  ///< the first one, on the disc
    uint32_t sectors = 0; ///< at most
    bool still = false;
};

/** A place inside a film. */
struct VcdEntry {
    int track = 0; ///< number of the track on the disc, from 1
    uint32_t sector = 0;
};

/** What INFO and ENTRIES say. */
struct VcdInfo {
    uint32_t listBytes = 0;
    uint32_t unit = 1; ///< bytes for one step of a list's place
    /** By their numbers, from 0; one of several units of 2 s stands at the first. */
    std::map<int, VcdSegment> segments;
    std::vector<VcdEntry> entries;
};

/** Reads a sector of INFO.VCD (INFO.SVD) and of ENTRIES.VCD (ENTRIES.SVD); nothing where there is no such disc. */
std::optional<VcdInfo> readVcdInfo(std::string_view info, std::string_view entries);

/** What an item of a list names; nothing if it is not there. */
class VcdItems {
public:
    virtual ~VcdItems() = default;
    /** `number`: of the track on the disc, from 1. */
    virtual std::optional<model::ListItem> track(int number) const = 0;
    /** `number` from 0. */
    virtual std::optional<model::ListItem> entry(size_t number) const = 0;
    virtual std::optional<model::ListItem> segment(int number) const = 0;
};

/**
 * The lists that LOT and PSD describe, the first one in front; none if the tables name none. What does not hold
 * together is left out: a list cut at the end of its table, a target that is no list, an item that is not there.
 */
model::PlayLists readPlayLists(std::string_view offsets, std::string_view lists, uint32_t unit,
                               const VcdItems& items);

} // namespace zm::disc::medium
