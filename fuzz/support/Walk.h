#pragma once

#include "sys/pps.h"

namespace zm::fuzz {

/**
 * Goes through the container in which the decoder stands as a reader would, by position and by name, and
 * everything inside it; stands there again afterwards.
 */
void walk(pps_decoder_t& decoder);

} // namespace zm::fuzz
