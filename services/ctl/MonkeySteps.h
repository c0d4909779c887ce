#pragma once

#include "base/ScreenSize.h"

#include <random>
#include <string>
#include <vector>

namespace zm::ctl {

/** What a bench offers to play with. */
struct MonkeyWorld {
    bool discService = true;
    bool manualClock = false;
    ScreenSize screen = {};
};

/** Random input, always the same for one seed and world: lines of a script. */
class MonkeySteps {
public:
    MonkeySteps(unsigned seed, MonkeyWorld world) : m_random(seed), m_world(world) {}

    const ScreenSize& screen() const { return m_world.screen; }
    /** What is done next, some lines that belong together. */
    std::vector<std::string> next();

    /** 0 to `count` - 1. The standard's distributions differ between libraries, the generator does not. */
    int below(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }

private:
    std::mt19937 m_random;
    MonkeyWorld m_world;
};

} // namespace zm::ctl
