#pragma once

#include "services/disc/engine/Gst.h"

namespace zm::disc::dvd {

/**
 * A new element that plays a DVD's sound: the default device, or, where it cannot be opened, a silent one that
 * keeps the time. Logs which. The reference is floating.
 */
GstElement* makeSound();

} // namespace zm::disc::dvd
