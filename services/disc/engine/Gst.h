#pragma once

#include <gst/gst.h>

#include <memory>

namespace zm::disc::engine {

struct GstRelease {
    void operator()(GstElement* element) const { gst_object_unref(element); }
    void operator()(GstBus* bus) const { gst_object_unref(bus); }
    void operator()(GstClock* clock) const { gst_object_unref(clock); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(char* text) const { g_free(text); }
    void operator()(GstBuffer* buffer) const { gst_buffer_unref(buffer); }
    void operator()(GstCaps* caps) const { gst_caps_unref(caps); }
    void operator()(GstSample* sample) const { gst_sample_unref(sample); }
};

/** Owns one reference of a GStreamer object (or what else GStreamer hands over). */
template <class T>
using GstOwned = std::unique_ptr<T, GstRelease>;

} // namespace zm::disc::engine
