#pragma once

#include "services/disc/engine/Gst.h"
#include "services/disc/engine/Loudness.h"

namespace zm::disc::engine {

/** From now on all sound of this process is so loud; it gets there within 20 ms. Any thread. */
void setLoudness(const Loudness& loudness);

/** The samples of 16 bits that pass `pad` are as loud as wanted. One stream of sound at a time. */
void followLoudness(GstPad* pad);

/** Sound goes down to silence within 20 ms and stays so until `endFade`. Any thread. */
void fadeOut();
/** Whether all that has passed since some milliseconds is silence. */
bool hasFadedOut();
/** What comes next begins as loud as wanted. */
void endFade();

} // namespace zm::disc::engine
