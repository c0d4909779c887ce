#pragma once

#include "services/disc/dvd/Film.h"
#include "services/disc/model/DiscState.h"

namespace zm::disc::dvd {

/** Tells the head unit where a DVD is, and what is heard and read there. */
class Announcer {
public:
    explicit Announcer(model::DiscState& state) : m_state(state) {}

    /** What differs from the scene before, and the time. */
    void scene(const Scene& before, const Film& film);
    void track(const Film& film);
    void time(const Film& film);

private:
    void detail(const Film& film);

    model::DiscState& m_state;
};

} // namespace zm::disc::dvd
