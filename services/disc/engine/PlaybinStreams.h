#pragma once

#include "services/disc/engine/Gst.h"
#include "services/disc/engine/Streams.h"

namespace zm::disc::engine {

/** The streams of a playbin that has read the beginning of its file. */
Streams streamsOf(GstElement* playbin);

/** Has the playbin play these. What is decoded already comes first, so that a seek should follow. */
void chooseStreams(GstElement* playbin, const StreamChoice& choice);

/** Whether there are pictures that can be decoded. */
bool hasPicture(GstElement* playbin);

} // namespace zm::disc::engine
