#pragma once

#include "services/disc/engine/Engine.h"
#include "services/disc/engine/Gst.h"
#include "services/disc/engine/Streams.h"

namespace zm::disc::engine {

/**
 * Opens the sound device, which then stays open; where there is none, sound goes to a silent sink that
 * keeps the time. Logs which. Once, before the others.
 */
void openSound();

/** A new audio sink; its reference is floating. One at a time. */
GstElement* makeSoundSink();

/** Which side of what plays is heard from now on, from both loudspeakers. */
void setSoundChannel(SoundChannel channel);

/** Whether somebody hears what plays. */
bool isHeard();

/** How long after it has been played a sound is over at the latest. */
Milliseconds soundDelay();

/** Takes the device out of `player`, which is then put to rest, so that it stays open. */
void endPlayer(GstElement* player);

} // namespace zm::disc::engine
