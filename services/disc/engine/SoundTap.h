#pragma once

#include "services/disc/engine/Gst.h"

namespace zm::disc::engine {

/**
 * Opens the memory through which films get their sound (services/film/SharedSound.h), which the head unit has made in
 * the runtime folder. Without one there are no films. Any number of times; the first one counts.
 */
void openSoundTap();

/**
 * An element that keeps the time as a device does and hands on what is heard, samples of 16 bits; its reference is
 * floating. Null without that memory.
 */
GstElement* makeSoundTap();

/**
 * Leads what comes to `tee`, an element of `bin`, to such an element, too. That neither holds the others up nor counts
 * when the bin is asked how far it is. Without that memory nothing is added.
 */
void addSoundTap(GstBin* bin, GstElement* tee);

} // namespace zm::disc::engine
