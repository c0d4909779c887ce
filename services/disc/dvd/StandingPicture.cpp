#include "services/disc/dvd/StandingPicture.h"

#include "services/disc/engine/FilmPicture.h"
#include "services/disc/engine/PicturePlace.h"

#include <gst/video/video.h>

namespace zm::disc::dvd {

StandingPicture::StandingPicture(GstElement* element) {
    auto onPicture = +[](GstPad* pad, GstPadProbeInfo* info, gpointer self) {
        static_cast<StandingPicture*>(self)->keep(pad, gst_pad_probe_info_get_buffer(info));
        return GST_PAD_PROBE_OK;
    };
    GstPad* pad = gst_element_get_static_pad(element, "sink");
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, onPicture, this, nullptr);
    gst_object_unref(pad);
}

void StandingPicture::keep(GstPad* pad, GstBuffer* picture) {
    const engine::GstOwned<GstCaps> caps(gst_pad_get_current_caps(pad));
    MutexLock lock(m_mutex);
    m_last.reset(gst_sample_new(picture, caps.get(), nullptr, nullptr));
}

void StandingPicture::show(engine::FrameSink& frames, double zoom) {
    engine::GstOwned<GstSample> last;
    {
        MutexLock lock(m_mutex);
        last.reset(m_last ? gst_sample_ref(m_last.get()) : nullptr);
    }
    GstVideoInfo info;
    GstVideoFrame picture;
    if (!last || !gst_video_info_from_caps(&info, gst_sample_get_caps(last.get())) ||
        !gst_video_frame_map(&picture, &info, gst_sample_get_buffer(last.get()), GST_MAP_READ)) {
        return;
    }
    const auto margins = engine::marginsOf({info.width, info.height, info.par_n, info.par_d}, zoom);
    frames.show(
        [&](uint8_t* pixels, int stride) { engine::FilmPicture().draw(picture, margins, pixels, stride); });
    gst_video_frame_unmap(&picture);
}

} // namespace zm::disc::dvd
