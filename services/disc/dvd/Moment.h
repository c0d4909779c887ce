#pragma once

#include "services/disc/dvd/Listener.h"
#include "services/disc/dvd/NavPack.h"
#include "services/disc/dvd/Timeline.h"

namespace zm::disc::dvd {

/** A unit of the film on its way to the screen: what belongs to its picture, kept until that is shown. */
struct Moment {
    Timeline::Span span;
    uint32_t generation = 0;
    zm::dvd::PlaceEvent place;
    NavPack pack;
    int button = 0;
    int sound = -1;
    int subtitle = -1;
    std::shared_ptr<const Streams> streams;

    int64_t time() const { return place.cellTime + pack.elapsed; }
    bool inTitle() const { return place.domain == zm::dvd::Domain::Title; }
    /** Time of the title when `now` is played; 0 outside titles. */
    int64_t position(int64_t now) const;
    /** What is on the screen, at `position` of the title. */
    Scene scene(int64_t position) const;
};

} // namespace zm::disc::dvd
