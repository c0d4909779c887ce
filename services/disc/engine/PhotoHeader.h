#pragma once

#include "base/Result.h"

#include <cstdint>
#include <string_view>

namespace zm::disc::engine {

enum class PhotoFormat { Jpeg, Png, Gif, Bmp };

/** What a photo's file says about itself before anything is decoded. */
struct PhotoHeader {
    PhotoFormat format = PhotoFormat::Jpeg;
    uint64_t width = 0;
    uint64_t height = 0;
    uint64_t bytes = 0;          ///< of memory, about, that decoding and showing take
    uint64_t halvings = 0;       ///< of both sides, by a decoder that makes it smaller at once
    uint64_t passes = 1;         ///< in which the picture comes, each over all of it
    uint64_t length = 0;         ///< of the picture in the file; something else may follow
    const char* fault = nullptr; ///< why the decoder must not get it

    /** An error for that, and for what takes more time or memory than a photo may. */
    Status showable() const;
};

/** Reads what `file`, which is whole, says; an error if it is not a photo or its size is missing. */
Result<PhotoHeader> readPhotoHeader(std::string_view file);

} // namespace zm::disc::engine
