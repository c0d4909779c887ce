#pragma once

#include <cstddef>
#include <random>

namespace zm::fuzz {

/** Choices that are the same each time for the same seed. */
class Random {
public:
    explicit Random(unsigned seed) : m_engine(seed) { m_engine.discard(2); }
    /** A number below `count`, which is not 0. */
    size_t below(size_t count) { return m_engine() % count; }
    bool oneIn(size_t count) { return below(count) == 0; }
    /** One of what is in `list`, which is not empty. */
    template <class List>
    const auto& pick(const List& list) {
        return list[below(std::size(list))];
    }

private:
    std::minstd_rand m_engine;
};

} // namespace zm::fuzz
