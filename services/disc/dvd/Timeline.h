#pragma once

#include <cstdint>

namespace zm::disc::dvd {

/**
 * Lays the units of a film one behind the other. The disc's own clock jumps where the film is cut together;
 * players see one clock that runs on, from 0 after each jump of the user's. Everything in 90 kHz.
 */
class Timeline {
public:
    struct Span {
        int64_t begin = 0;
        int64_t end = 0;
    };

    /** The next unit begins at 0. */
    void restart();
    /** Where the unit that the disc counts from `begin` to `end` is played: behind the one before, and not
     * earlier than `earliest`. */
    Span place(int64_t begin, int64_t end, int64_t earliest);
    /** What to add to a time of the present unit. */
    int64_t shift() const { return m_shift; }

private:
    bool m_fresh = true;
    int64_t m_discEnd = 0; ///< of the last unit, in the disc's count
    int64_t m_end = 0;     ///< of the last unit
    int64_t m_shift = 0;
};

} // namespace zm::disc::dvd
