#pragma once

#include <atomic>
#include <cstdint>

namespace zm::faults {

/** What is to go wrong in the program into which this library is loaded. */
enum class Kind : int32_t {
    None,
    Memory,  ///< one allocation fails, the `number`-th
    Disk,    ///< from the `number`-th write on the disk is full, until somebody disarms it
    Sockets, ///< calls of sockets are interrupted, those of streams give and take little; chosen by the seed
    Clock    ///< the time of day jumps both ways, that of the machine forward; chosen by the seed
};

/** A file that the tests write and the program has mapped; tests/anomaly/faults.py knows the same order. */
struct Control {
    std::atomic<int32_t> kind;
    std::atomic<int32_t> share; ///< of the calls of sockets and clock, one in so many
    std::atomic<int64_t> number;
    std::atomic<int64_t> seed;
    std::atomic<int64_t> calls;  ///< of that kind so far
    std::atomic<int64_t> faults; ///< calls that were made to go wrong
};

/** This program's; nothing in programs that are not concerned. */
Control* control();
bool armed(Kind kind);
/** Counts a call; whether it is the one that fails. */
bool isTheOne();
/** Counts a call; whether chance, which the seed repeats, picks it. */
bool isPicked();
/** A number below `limit` that follows from the seed and the calls so far. */
uint64_t drawn(uint64_t limit);
/** Writes down where the program stands. */
void noteFault();

} // namespace zm::faults
