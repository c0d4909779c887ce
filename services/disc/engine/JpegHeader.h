#pragma once

#include "services/disc/engine/PhotoBytes.h"

#include <optional>

namespace zm::disc::engine {

/** What a JPEG says about its first picture. */
struct JpegHeader {
    uint64_t width = 0;
    uint64_t height = 0;
    uint64_t samples = 0; ///< of all components
    uint64_t components = 0;
    uint64_t scans = 0;
    bool progressive = false; ///< all coefficients are kept until the last scan
    bool lossy = false;       ///< with 8 bits a sample: a decoder can make it smaller at once
    uint64_t length = 0;      ///< of the picture in the file; films and previews may follow
};

/** Reads as far as the picture goes; nothing if it does not tell its size. */
std::optional<JpegHeader> readJpegHeader(const PhotoBytes& bytes);

} // namespace zm::disc::engine
