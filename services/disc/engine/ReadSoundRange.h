#pragma once

#include "services/disc/engine/SoundRange.h"

namespace zm::disc::engine {

/** What the own header of a music file of `size` bytes says; all of it if it says nothing. */
SoundRange readSoundRange(const ReadBytes& read, uint64_t size);

} // namespace zm::disc::engine
