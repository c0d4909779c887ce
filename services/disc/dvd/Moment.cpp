#include "services/disc/dvd/Moment.h"

#include <algorithm>

namespace zm::disc::dvd {

namespace {

engine::Milliseconds fromTicks(int64_t ticks) {
    constexpr int64_t TicksPerMillisecond = 90;
    return engine::Milliseconds(ticks / TicksPerMillisecond);
}

} // namespace

int64_t Moment::position(int64_t now) const {
    return inTitle() ? time() + std::clamp<int64_t>(now - span.begin, 0, span.end - span.begin) : 0;
}

Scene Moment::scene(int64_t position) const {
    Scene scene;
    scene.title = inTitle() ? place.title : 0;
    scene.chapter = inTitle() ? place.chapter : 0;
    scene.angle = place.angle;
    scene.angles = place.angles;
    scene.buttons = !pack.buttons.empty();
    scene.prohibited = place.prohibited;
    scene.position = fromTicks(position);
    scene.length = inTitle() ? fromTicks(place.length) : engine::Milliseconds{0};
    scene.sound = sound;
    scene.subtitle = subtitle;
    scene.streams = streams;
    return scene;
}

} // namespace zm::disc::dvd
