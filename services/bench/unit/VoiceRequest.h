#pragma once

#include "base/Result.h"

#include <string>

namespace zm::bench::unit {

/** Whether that application data asks for a song by voice, as the application understands it. */
bool isVoiceRequest(const std::string& applicationData);

/**
 * The voice assistant's word to the disc service that a song was asked for, so that a film or photo makes way
 * for the music. The application's own commands do not tell a voice from a touch on the tab "music".
 */
Status requestMusic(const std::string& ppsSocket);

} // namespace zm::bench::unit
