#pragma once

#include "services/disc/engine/Gst.h"

#include <string>

namespace zm::disc::engine {

/** What sound is played on. */
struct SoundDevice {
    GstElement* sink = nullptr; ///< open, with a reference of its own; null where there is none
    std::string text;           ///< what was found, or why there is none, for the log
};

/**
 * Opens the device that ZM_AUDIO_DEVICE names: "pulse[:NAME]" a PulseAudio server, or PipeWire by its interface for
 * PulseAudio, "alsa[:NAME]" the kernel's device, "none" none. "auto", or without a name: the first that is there.
 */
SoundDevice openSoundDevice();

} // namespace zm::disc::engine
