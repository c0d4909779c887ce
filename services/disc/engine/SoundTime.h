#pragma once

#include "services/disc/engine/Gst.h"

namespace zm::disc::engine {

/** When `buffer`, which comes through `pad` of `sink`, is heard: in the time of the pipeline's clock. */
inline gint64 soundTime(GstElement* sink, GstPad* pad, GstBuffer* buffer) {
    GstEvent* event = gst_pad_get_sticky_event(pad, GST_EVENT_SEGMENT, 0);
    const GstSegment* segment = nullptr;
    gst_event_parse_segment(event, &segment);
    const guint64 running = gst_segment_to_running_time(segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
    gst_event_unref(event);
    return static_cast<gint64>(gst_element_get_base_time(sink) + running);
}

} // namespace zm::disc::engine
