#pragma once

#include "base/Result.h"

#include <cstdint>
#include <string_view>

namespace zm::disc {

enum class PhotoFormat { Jpeg, Png, Gif, Bmp };

/** What a photo's file says about itself before anything is decoded. */
struct PhotoHeader {
    PhotoFormat format = PhotoFormat::Jpeg;
    uint64_t width = 0;
    uint64_t height = 0;

    uint64_t pixels() const { return width * height; }
};

/** Reads the beginning of `file`; an error for what is no photo or ends before its size is known. */
Result<PhotoHeader> readPhotoHeader(std::string_view file);

} // namespace zm::disc
