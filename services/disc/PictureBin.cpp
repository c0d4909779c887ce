#include "services/disc/PictureBin.h"

#include "services/disc/Log.h"

#include <gst/app/gstappsink.h>
#include <gst/video/video.h>

#include <string>

namespace zm::disc {

namespace {

// Scaling and conversion in two steps take half the time of both in one, as each has its fast way then. A
// photo, which is only converted once, keeps all its colours in one.
std::string description(PictureShape shape) {
    const bool keep = shape == PictureShape::Keep;
    // First as the camera was held, then as the user wants it.
    return "videocrop name=crop ! videoflip video-direction=auto ! videoflip name=turn ! "
           "videoconvertscale add-borders=" +
           std::string(keep ? "true" : "false") + " ! video/x-raw,format=" + (keep ? "BGRx" : "I420") +
           ",width=" + std::to_string(PictureWidth) + ",height=" + std::to_string(PictureHeight) +
           ",pixel-aspect-ratio=1/1 ! videoconvert ! video/x-raw,format=BGRx ! appsink name=frames "
           "max-buffers=2 sync=true qos=true";
}

GstFlowReturn give(GstSample* taken, gpointer frames) {
    if (!taken) {
        return GST_FLOW_EOS;
    }
    const GstOwned<GstSample> sample(taken);
    GstVideoInfo info;
    GstVideoFrame frame;
    if (gst_video_info_from_caps(&info, gst_sample_get_caps(sample.get())) &&
        gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample.get()), GST_MAP_READ)) {
        static_cast<FrameSink*>(frames)->show(
            static_cast<const uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0)),
            GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0));
        gst_video_frame_unmap(&frame);
    }
    return GST_FLOW_OK;
}

} // namespace

PictureBin::PictureBin(FrameSink& frames, PictureShape shape) : m_frames(frames) {
    GError* error = nullptr;
    GstElement* bin = gst_parse_bin_from_description(description(shape).c_str(), TRUE, &error);
    const GstOwned<GError> owned(error);
    if (!bin) {
        logError("picture: %s\n", error ? error->message : "elements are missing");
        return;
    }
    m_bin.reset(GST_ELEMENT(gst_object_ref_sink(bin)));
    const GstOwned<GstElement> sink(gst_bin_get_by_name(GST_BIN(bin), "frames"));
    // Pictures that stand still (paused, after a seek) come as preroll only.
    GstAppSinkCallbacks callbacks{};
    callbacks.new_preroll = [](GstAppSink* from, gpointer to) {
        return give(gst_app_sink_pull_preroll(from), to);
    };
    callbacks.new_sample = [](GstAppSink* from, gpointer to) {
        return give(gst_app_sink_pull_sample(from), to);
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(sink.get()), &callbacks, &m_frames, nullptr);
}

void PictureBin::view(const PictureView& view) {
    const GstOwned<GstElement> turn(gst_bin_get_by_name(GST_BIN(m_bin.get()), "turn"));
    g_object_set(turn.get(), "video-direction", view.quarterTurns, nullptr);
    crop(view.zoom());
}

void PictureBin::crop(double zoom) {
    const GstOwned<GstElement> crop(gst_bin_get_by_name(GST_BIN(m_bin.get()), "crop"));
    GstPad* pad = gst_element_get_static_pad(crop.get(), "sink");
    const GstOwned<GstCaps> caps(gst_pad_get_current_caps(pad));
    gst_object_unref(pad);
    GstVideoInfo info;
    // While a decoder starts anew it has no caps; its pictures stay as large as they were.
    if (caps && gst_video_info_from_caps(&info, caps.get())) {
        m_width = info.width;
        m_height = info.height;
    }
    const auto margin = [zoom](int size) { return static_cast<int>(size * (1.0 - 1.0 / zoom) / 2.0); };
    const int x = margin(m_width);
    const int y = margin(m_height);
    g_object_set(crop.get(), "left", x, "right", x, "top", y, "bottom", y, nullptr);
}

} // namespace zm::disc
