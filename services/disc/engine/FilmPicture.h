#pragma once

#include "services/disc/engine/FrameSink.h"
#include "services/disc/engine/PicturePlace.h"

#include <gst/video/video.h>

#include <vector>

namespace zm::disc::engine {

/** Brings the pictures of a film, planes of brightness and colour, to the screen's size and colours. One thread. */
class FilmPicture {
public:
    /**
     * Draws what is left of `picture` (of the format I420) inside `margins`, in its own shape as large as fits, between black
     * bars into `pixels` as a frame sink has them.
     */
    void draw(const GstVideoFrame& picture, const PictureMargins& margins, uint8_t* pixels, int stride);

private:
    std::vector<uint8_t> m_between; ///< kept from one picture to the next
};

} // namespace zm::disc::engine
