#pragma once

#include "services/disc/engine/Gst.h"

namespace zm::disc::dvd {

/**
 * A new audio sink for a DVD: the sound device or, where there is none, a silent sink that keeps
 * the time. Logs which. The reference is floating.
 */
GstElement* makeSound();

} // namespace zm::disc::dvd
