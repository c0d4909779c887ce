#pragma once

#include "base/Result.h"

#include <cstdint>
#include <functional>
#include <string>

namespace zm::disc::image {

/** What a file of sound is. */
struct SoundHeader {
    enum class Form {
        Plain,   ///< the sound of a disc, low bytes first
        Swapped, ///< the sound of a disc, high bytes first
        Encoded  ///< anything else: it has to be decoded
    } form = Form::Encoded;
    uint64_t begin = 0;    ///< of plain sound, where in the file its bytes stand
    uint64_t bytes = 0;    ///< and how many of them
    std::string extension; ///< of encoded sound, with the dot
    int seconds = 0;       ///< of encoded sound, 0 when unknown
};

/** At most that many bytes of a file from that place on. */
using ReadHeaderBytes = std::function<std::string(uint64_t offset, size_t size)>;

/** Looks at the header of a file of `size` bytes, whatever its name says; the error says what is wrong. */
Result<SoundHeader> readSoundHeader(const ReadHeaderBytes& read, uint64_t size);

} // namespace zm::disc::image
