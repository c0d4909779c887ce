#include "services/disc/engine/PictureBin.h"

#include "services/disc/log/Log.h"

#include <gst/app/gstappsink.h>
#include <gst/video/video.h>

#include <string>

namespace zm::disc::engine {

namespace {

// First as the camera was held, then as the user wants it. A film's pictures are drawn by `FilmPicture`; a photo keeps
// all its colours when it is scaled and converted in one step, and may have some that cannot be turned.
std::string description(PictureKind kind) {
    const bool photo = kind == PictureKind::Photo;
    return std::string(photo ? "videoconvert name=first ! " : "") +
           (kind == PictureKind::UprightFilm ? ""
                                             : "videoflip video-direction=auto ! videoflip name=turn ! ") +
           "videocrop name=crop ! " +
           (photo ? "videoconvertscale add-borders=true ! video/x-raw,format=BGRx,width=" +
                        std::to_string(PictureWidth) + ",height=" + std::to_string(PictureHeight) +
                        ",pixel-aspect-ratio=1/1"
                  : "videoconvert ! video/x-raw,format=I420") +
           " ! appsink name=frames max-buffers=2 sync=true qos=true";
}

GstOwned<GstCaps> templateOf(GstElement* element) {
    GstPad* pad = gst_element_get_static_pad(element, "sink");
    GstOwned<GstCaps> caps(gst_pad_get_pad_template_caps(pad));
    gst_object_unref(pad);
    return caps;
}

} // namespace

PictureBin::PictureBin(FrameSink& frames, PictureKind kind) : m_frames(frames) {
    GError* error = nullptr;
    GstElement* bin = gst_parse_bin_from_description(description(kind).c_str(), TRUE, &error);
    const GstOwned<GError> owned(error);
    if (!bin) {
        logError("picture: %s\n", error ? error->message : "elements are missing");
        return;
    }
    m_bin.reset(GST_ELEMENT(gst_object_ref_sink(bin)));
    const GstOwned<GstElement> sink(gst_bin_get_by_name(GST_BIN(bin), "frames"));
    // Pictures that stand still (paused, after a seek) come as preroll only.
    GstAppSinkCallbacks callbacks{};
    callbacks.new_preroll = [](GstAppSink* from, gpointer self) {
        return static_cast<PictureBin*>(self)->give(gst_app_sink_pull_preroll(from));
    };
    callbacks.new_sample = [](GstAppSink* from, gpointer self) {
        return static_cast<PictureBin*>(self)->give(gst_app_sink_pull_sample(from));
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(sink.get()), &callbacks, this, nullptr);
    m_turn.reset(gst_bin_get_by_name(GST_BIN(bin), "turn"));
    m_crop.reset(gst_bin_get_by_name(GST_BIN(bin), "crop"));
    // What is left out depends on the upright picture's size, which is known just before its first picture.
    auto onEvent = +[](GstPad*, GstPadProbeInfo* info, gpointer self) {
        GstEvent* event = gst_pad_probe_info_get_event(info);
        if (GST_EVENT_TYPE(event) == GST_EVENT_CAPS) {
            GstCaps* caps = nullptr;
            gst_event_parse_caps(event, &caps);
            static_cast<PictureBin*>(self)->fit(caps);
        }
        return GST_PAD_PROBE_OK;
    };
    GstPad* pad = gst_element_get_static_pad(m_crop.get(), "sink");
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, onEvent, this, nullptr);
    gst_object_unref(pad);
    takeAnySize();
}

// Told of the screen's size, the player's own scaler would fit pictures to it before they are turned.
void PictureBin::takeAnySize() {
    const GstOwned<GstElement> first(gst_bin_get_by_name(GST_BIN(m_bin.get()), "first"));
    m_accepted = first     ? templateOf(first.get())
                 : !m_turn ? templateOf(m_crop.get())
                           : GstOwned<GstCaps>(gst_caps_intersect(templateOf(m_turn.get()).get(),
                                                                  templateOf(m_crop.get()).get()));
    auto onQuery = +[](GstPad*, GstPadProbeInfo* info, gpointer self) {
        GstQuery* query = gst_pad_probe_info_get_query(info);
        if (GST_QUERY_TYPE(query) != GST_QUERY_CAPS) {
            return GST_PAD_PROBE_OK;
        }
        GstCaps* filter = nullptr;
        gst_query_parse_caps(query, &filter);
        GstCaps* accepted = static_cast<PictureBin*>(self)->m_accepted.get();
        const GstOwned<GstCaps> answer(
            filter ? gst_caps_intersect_full(filter, accepted, GST_CAPS_INTERSECT_FIRST)
                   : gst_caps_ref(accepted));
        gst_query_set_caps_result(query, answer.get());
        return GST_PAD_PROBE_HANDLED;
    };
    GstPad* pad = gst_element_get_static_pad(m_bin.get(), "sink");
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM, onQuery, this, nullptr);
    gst_object_unref(pad);
}

GstFlowReturn PictureBin::give(GstSample* taken) {
    if (!taken) {
        return GST_FLOW_EOS;
    }
    const GstOwned<GstSample> sample(taken);
    GstVideoInfo info;
    GstVideoFrame frame;
    if (!gst_video_info_from_caps(&info, gst_sample_get_caps(sample.get())) ||
        !gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample.get()), GST_MAP_READ)) {
        return GST_FLOW_OK;
    }
    if (GST_VIDEO_INFO_FORMAT(&info) == GST_VIDEO_FORMAT_I420) {
        m_frames.show([&](uint8_t* pixels, int stride) { m_film.draw(frame, {}, pixels, stride); });
    } else {
        m_frames.show(copyOf(static_cast<const uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0)),
                             GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0)));
    }
    gst_video_frame_unmap(&frame);
    return GST_FLOW_OK;
}

void PictureBin::view(const PictureView& view) {
    if (m_turn) {
        g_object_set(m_turn.get(), "video-direction", view.quarterTurns, nullptr);
    }
    {
        MutexLock lock(m_mutex);
        m_zoom = view.zoom();
    }
    fit(nullptr);
}

void PictureBin::fit(const GstCaps* caps) {
    MutexLock lock(m_mutex);
    GstVideoInfo info;
    if (caps && gst_video_info_from_caps(&info, caps)) {
        m_size = {info.width, info.height, info.par_n, info.par_d};
    }
    const PictureMargins margins = marginsOf(m_size, m_zoom);
    g_object_set(m_crop.get(), "left", margins.sides, "right", margins.sides, "top", margins.topAndBottom,
                 "bottom", margins.topAndBottom, nullptr);
}

} // namespace zm::disc::engine
