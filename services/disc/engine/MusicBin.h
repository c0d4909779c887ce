#pragma once

#include "services/disc/engine/Gst.h"

namespace zm::disc::engine {

/**
 * A bin that keeps its errors from the pipeline around it: a pipeline that has seen one takes no part in the changes
 * of state that follow, so that after a seek its sound would never go on. They become element messages.
 */
GstElement* makeMusicBin();

/** What the error says if `message` is one of those; else null. Lives as long as the message. */
const char* musicError(GstMessage* message);

} // namespace zm::disc::engine
