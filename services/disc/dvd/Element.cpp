#include "services/disc/dvd/Element.h"

// Names, casts and the functions' signatures are those that the object system wants.

namespace {

constexpr std::array<const char*, zm::disc::dvd::PadCount> padNames{"video", "subtitle", "ac3",
                                                                    "mpeg",  "lpcm",     "dts"};

struct ZmDvdElement {
    GstElement parent;
    std::array<GstPad*, zm::disc::dvd::PadCount> pads;
};
struct ZmDvdElementClass {
    GstElementClass parent;
};

G_DEFINE_TYPE(ZmDvdElement, zm_dvd_element, GST_TYPE_ELEMENT)

gboolean answer(GstPad* pad, GstObject* parent, GstQuery* query) {
    switch (GST_QUERY_TYPE(query)) {
    case GST_QUERY_LATENCY:
        gst_query_set_latency(query, FALSE, 0, GST_CLOCK_TIME_NONE);
        return TRUE;
    case GST_QUERY_SCHEDULING:
        gst_query_set_scheduling(query, GST_SCHEDULING_FLAG_SEQUENTIAL, 1, -1, 0);
        gst_query_add_scheduling_mode(query, GST_PAD_MODE_PUSH);
        return TRUE;
    default:
        return gst_pad_query_default(pad, parent, query);
    }
}

// Nobody behind it may jump about: only the disc's program knows where to.
gboolean receive(GstPad*, GstObject*, GstEvent* event) {
    const bool seek = GST_EVENT_TYPE(event) == GST_EVENT_SEEK;
    gst_event_unref(event);
    return !seek;
}

void zm_dvd_element_class_init(ZmDvdElementClass* type) {
    gst_element_class_set_static_metadata(reinterpret_cast<GstElementClass*>(type), "DVD", "Source",
                                          "Streams of a DVD", "the disc service");
}

void zm_dvd_element_init(ZmDvdElement* element) {
    GST_OBJECT_FLAG_SET(element, GST_ELEMENT_FLAG_SOURCE);
    for (size_t i = 0; i < zm::disc::dvd::PadCount; ++i) {
        GstPad* pad = gst_pad_new(padNames[i], GST_PAD_SRC);
        gst_pad_set_event_function(pad, receive);
        gst_pad_set_query_function(pad, answer);
        gst_element_add_pad(GST_ELEMENT(element), pad);
        element->pads[i] = pad;
    }
}

} // namespace

namespace zm::disc::dvd {

GstElement* makeElement() {
    return GST_ELEMENT(g_object_new(zm_dvd_element_get_type(), nullptr));
}

GstPad* padOf(GstElement* element, Pad pad) {
    return reinterpret_cast<ZmDvdElement*>(element)->pads[static_cast<size_t>(pad)];
}

} // namespace zm::disc::dvd
