#pragma once

#include "services/disc/engine/Gst.h"

#include <string>

namespace zm::disc::engine {

/**
 * An element that keeps the time as a device does and writes what would be heard to `path`: 16 bit, stereo, without a
 * header. Where nothing was to be heard, silence is written, at most five seconds in a row. Its reference is
 * floating; null when the file cannot be written. What another has written there stays in front.
 */
GstElement* makeSoundFile(const std::string& path);

} // namespace zm::disc::engine
