#include "services/bench/film/Touches.h"

#include <limits>

namespace zm::bench::film {

namespace {

constexpr zm::film::Moment Down = std::numeric_limits<zm::film::Moment>::max();

} // namespace

void Touches::pressed(int x, int y) {
    released(current().x, current().y);
    m_current = (m_current + 1) % m_fingers.size();
    current() = {x, y, x, y, Down};
}

void Touches::moved(int x, int y) {
    if (current().lifted == Down) {
        current().x = x;
        current().y = y;
    }
}

void Touches::released(int x, int y) {
    moved(x, y);
    if (current().lifted == Down) {
        current().lifted = zm::film::now();
    }
}

void Touches::dragged(int fromX, int fromY, int x, int y) {
    pressed(fromX, fromY);
    released(x, y);
}

} // namespace zm::bench::film
