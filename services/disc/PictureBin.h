#pragma once

#include "services/disc/FrameSink.h"
#include "services/disc/Gst.h"
#include "services/disc/PictureView.h"

namespace zm::disc {

/** Whether pictures fill the screen or keep their shape between borders. */
enum class PictureShape { Fill, Keep };

/** The element that takes a decoder's pictures and gives them, in the screen's size, to a frame sink. */
class PictureBin {
public:
    /** `frames` outlives the element. */
    PictureBin(FrameSink& frames, PictureShape shape);

    /** For the decoder's property "video-sink"; null when elements are missing. */
    GstElement* element() const { return m_bin.get(); }
    /** Takes effect with the next picture. */
    void view(const PictureView& view);

private:
    void crop(double zoom);
    GstOwned<GstElement> m_bin;
    FrameSink& m_frames;
    int m_width = 0; ///< of the decoder's pictures, once known
    int m_height = 0;
};

} // namespace zm::disc
