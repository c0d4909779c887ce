#include "services/disc/engine/FrameSink.h"

#include <cstddef>
#include <cstring>

namespace zm::disc::engine {

DrawPicture copyOf(const uint8_t* pixels, int stride) {
    return [pixels, stride](uint8_t* to, int toStride) {
        constexpr size_t RowBytes = size_t{4} * PictureWidth;
        for (int row = 0; row < PictureHeight; ++row) {
            std::memcpy(to + static_cast<ptrdiff_t>(row) * toStride,
                        pixels + static_cast<ptrdiff_t>(row) * stride, RowBytes);
        }
    };
}

} // namespace zm::disc::engine
