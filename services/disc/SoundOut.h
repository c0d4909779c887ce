#pragma once

#include "services/disc/Gst.h"

namespace zm::disc {

/**
 * A new element that plays sound: the default device, or, where there is none, a silent one that keeps the
 * time. Which one is found out and logged at the first call. Any thread. The reference is floating.
 */
GstElement* makeSoundSink();

} // namespace zm::disc
