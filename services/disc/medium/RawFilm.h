#pragma once

#include "services/disc/medium/Medium.h"

namespace zm::disc::medium {

/**
 * A film that was copied off a VCD sector by sector: whole sectors of 2352 bytes, each with its mark, without anything in
 * front that says so. Gives what belongs to the film; any other file as it is.
 */
std::unique_ptr<ByteReader> withoutSectors(std::unique_ptr<ByteReader> file);

} // namespace zm::disc::medium
