#pragma once

#include "services/disc/engine/Gst.h"

namespace zm::disc::engine {

/**
 * Has an "audioconvert" make two channels of whatever comes, each as loud as it would be without the others: a film's
 * dialogue, which lies in the middle channel, is as loud as that of a film in stereo. The channel for effects is left
 * out. Peaks that are too loud together are cut.
 */
void mixDown(GstElement* converter);

} // namespace zm::disc::engine
