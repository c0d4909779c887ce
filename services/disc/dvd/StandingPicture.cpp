#include "services/disc/dvd/StandingPicture.h"

#include "services/disc/engine/PicturePlace.h"

#include <gst/video/video.h>

#include <vector>

namespace zm::disc::dvd {

namespace {

constexpr int BytesPerPixel = 4;
constexpr guint Black = 0xff000000;

using Converter = std::unique_ptr<GstVideoConverter, decltype(&gst_video_converter_free)>;

// From the part of the picture that is seen to the part of the screen where it lies.
Converter makeConverter(const GstVideoInfo& from, const GstVideoInfo& to, double zoom) {
    const auto margins = engine::marginsOf({from.width, from.height, from.par_n, from.par_d}, zoom);
    const int width = from.width - 2 * margins.sides;
    const int height = from.height - 2 * margins.topAndBottom;
    const auto part = engine::placeOnScreen({width, height, from.par_n, from.par_d});
    GstStructure* how = gst_structure_new(
        "how", GST_VIDEO_CONVERTER_OPT_SRC_X, G_TYPE_INT, margins.sides, GST_VIDEO_CONVERTER_OPT_SRC_Y,
        G_TYPE_INT, margins.topAndBottom, GST_VIDEO_CONVERTER_OPT_SRC_WIDTH, G_TYPE_INT, width,
        GST_VIDEO_CONVERTER_OPT_SRC_HEIGHT, G_TYPE_INT, height, GST_VIDEO_CONVERTER_OPT_DEST_X, G_TYPE_INT,
        part.x, GST_VIDEO_CONVERTER_OPT_DEST_Y, G_TYPE_INT, part.y, GST_VIDEO_CONVERTER_OPT_DEST_WIDTH,
        G_TYPE_INT, part.width, GST_VIDEO_CONVERTER_OPT_DEST_HEIGHT, G_TYPE_INT, part.height,
        GST_VIDEO_CONVERTER_OPT_BORDER_ARGB, G_TYPE_UINT, Black, nullptr);
    return {gst_video_converter_new(&from, &to, how), gst_video_converter_free};
}

} // namespace

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
    std::lock_guard lock(m_mutex);
    m_last.reset(gst_sample_new(picture, caps.get(), nullptr, nullptr));
}

void StandingPicture::show(engine::FrameSink& frames, double zoom) {
    engine::GstOwned<GstSample> last;
    {
        std::lock_guard lock(m_mutex);
        last.reset(m_last ? gst_sample_ref(m_last.get()) : nullptr);
    }
    GstVideoInfo from;
    GstVideoInfo to;
    GstVideoFrame picture;
    if (!last || !gst_video_info_from_caps(&from, gst_sample_get_caps(last.get())) ||
        !gst_video_frame_map(&picture, &from, gst_sample_get_buffer(last.get()), GST_MAP_READ)) {
        return;
    }
    gst_video_info_set_format(&to, GST_VIDEO_FORMAT_BGRx, engine::PictureWidth, engine::PictureHeight);
    to.fps_n = from.fps_n;
    to.fps_d = from.fps_d;
    std::vector<uint8_t> pixels(static_cast<size_t>(engine::PictureWidth) * engine::PictureHeight *
                                BytesPerPixel);
    GstBuffer* buffer = gst_buffer_new_wrapped_full(GstMemoryFlags{}, pixels.data(), pixels.size(), 0,
                                                    pixels.size(), nullptr, nullptr);
    GstVideoFrame screen;
    if (const auto converter = makeConverter(from, to, zoom);
        converter && gst_video_frame_map(&screen, &to, buffer, GST_MAP_WRITE)) {
        gst_video_converter_frame(converter.get(), &picture, &screen);
        gst_video_frame_unmap(&screen);
        frames.show(pixels.data(), engine::PictureWidth * BytesPerPixel);
    }
    gst_buffer_unref(buffer);
    gst_video_frame_unmap(&picture);
}

} // namespace zm::disc::dvd
