#pragma once

#include <string>

union SDL_Event;

namespace zm::bench::display {

/**
 * The name of the key or character that an event of the keyboard brings, as browsers name it ("ArrowLeft", "n",
 * "MediaTrackNext"; letters small); empty for other events, for repeats of a held key and with Ctrl, Alt or the system's key.
 */
std::string pressedKey(const SDL_Event& event);

} // namespace zm::bench::display
