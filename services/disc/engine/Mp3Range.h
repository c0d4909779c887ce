#pragma once

#include "services/disc/engine/SoundRange.h"

namespace zm::disc::engine {

/** The sound of an MP3 file whose encoder has left its mark (LAME and others write it). */
std::optional<SoundRange> readMp3Range(const ReadBytes& read, uint64_t size);

} // namespace zm::disc::engine
