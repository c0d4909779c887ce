#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zm {

/** A picture out of a file: premultiplied pixels of 32 bits, blue first. */
struct PictureFile {
    int width = 0;
    int height = 0;
    int stride = 0;
    std::vector<uint8_t> pixels;
};
using PictureFilePtr = std::shared_ptr<const PictureFile>;

/**
 * Reads a PNG of at most 1024 x 1024 pixels; null if the file is none, or is not there. Takes some milliseconds: not for
 * a view's thread.
 */
PictureFilePtr readPictureFile(const std::string& path);

} // namespace zm
