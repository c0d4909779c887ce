#pragma once

namespace zm {

/** How much moves by itself. */
enum class MotionLevel {
    Off,     ///< nothing: everything is at once where it leads to
    Reduced, ///< what tells that something works, and what follows the finger
    Full     ///< also what only pleases: pages fade over, keys let go softly
};

} // namespace zm
