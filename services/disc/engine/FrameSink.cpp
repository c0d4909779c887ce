#include "services/disc/engine/FrameSink.h"

#include <cstddef>
#include <cstring>

namespace zm::disc::engine {

DrawPicture copyOf(const uint8_t* pixels, int stride) {
    return [pixels, stride](uint8_t* to, int toStride) {
        const size_t rowBytes = size_t{4} * static_cast<size_t>(PictureWidth);
        for (int row = 0; row < PictureHeight; ++row) {
            std::memcpy(to + static_cast<ptrdiff_t>(row) * toStride,
                        pixels + static_cast<ptrdiff_t>(row) * stride, rowBytes);
        }
    };
}

} // namespace zm::disc::engine
