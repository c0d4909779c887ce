#pragma once

#include <cstdint>

/**
 * The first parameter of PlayTrack: the folder id in the high half, the file number in the low half. A file
 * number above 65535 runs over into the folder, and a missing row (-1, -1) is packed like any other.
 */
inline int PackTrack(int folder, int file) {
    return static_cast<int>(static_cast<uint32_t>(file) + (static_cast<uint32_t>(folder) << 16));
}
