#pragma once

#include <cstdint>

namespace zm::dvd {

/** Exit status of a reader whose disc leads in a circle without ever showing anything. */
inline constexpr int CircleStatus = 4;

/**
 * Ends the program with CircleStatus when it has computed for a while without getting any further: some discs' instructions
 * lead in a circle, inside one call of the library. Waiting for the drive is no computing. One thread.
 */
class CircleWatch {
public:
    CircleWatch();
    /** How far the reader has come, a number that grows; called often. */
    void at(uint64_t progress);

private:
    uint64_t m_progress = 0;
};

} // namespace zm::dvd
