#pragma once

#include "services/film/SharedScreen.h"

namespace zm::bench::film {

/** The latest fingers on the screen, for a film that shows them. */
class Touches {
public:
    /** A finger comes down, goes on, is lifted. */
    void pressed(int x, int y);
    void moved(int x, int y);
    void released(int x, int y);
    /** One that goes from one place to another, or to the same, in no time. */
    void dragged(int fromX, int fromY, int x, int y);

    const zm::film::SharedScreen::Fingers& latest() const { return m_fingers; }

private:
    zm::film::Finger& current() { return m_fingers.at(m_current); }

    zm::film::SharedScreen::Fingers m_fingers{};
    size_t m_current = 0;
};

} // namespace zm::bench::film
