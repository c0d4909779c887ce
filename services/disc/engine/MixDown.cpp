#include "services/disc/engine/MixDown.h"

#include <gst/audio/audio.h>

#include <array>

namespace zm::disc::engine {

namespace {

constexpr float Whole = 1.0f;
constexpr float Half = 0.7071f; ///< of its power, as it comes from both sides or from behind

/** How loud a channel is in the left and in the right one. */
using Share = std::array<float, 2>;

Share shareOf(GstAudioChannelPosition position) {
    switch (position) {
    case GST_AUDIO_CHANNEL_POSITION_MONO:
        return {Whole, Whole};
    case GST_AUDIO_CHANNEL_POSITION_FRONT_LEFT:
    case GST_AUDIO_CHANNEL_POSITION_FRONT_LEFT_OF_CENTER:
    case GST_AUDIO_CHANNEL_POSITION_WIDE_LEFT:
        return {Whole, 0};
    case GST_AUDIO_CHANNEL_POSITION_FRONT_RIGHT:
    case GST_AUDIO_CHANNEL_POSITION_FRONT_RIGHT_OF_CENTER:
    case GST_AUDIO_CHANNEL_POSITION_WIDE_RIGHT:
        return {0, Whole};
    case GST_AUDIO_CHANNEL_POSITION_REAR_LEFT:
    case GST_AUDIO_CHANNEL_POSITION_SIDE_LEFT:
    case GST_AUDIO_CHANNEL_POSITION_SURROUND_LEFT:
        return {Half, 0};
    case GST_AUDIO_CHANNEL_POSITION_REAR_RIGHT:
    case GST_AUDIO_CHANNEL_POSITION_SIDE_RIGHT:
    case GST_AUDIO_CHANNEL_POSITION_SURROUND_RIGHT:
        return {0, Half};
    case GST_AUDIO_CHANNEL_POSITION_LFE1:
    case GST_AUDIO_CHANNEL_POSITION_LFE2:
        return {0, 0};
    default:
        return {Half, Half};
    }
}

// A row of shares for each of the two channels.
void setMatrix(GstElement* converter, const GstAudioInfo& info) {
    GValue matrix = G_VALUE_INIT;
    g_value_init(&matrix, GST_TYPE_ARRAY);
    for (size_t side = 0; side < 2; ++side) {
        GValue row = G_VALUE_INIT;
        g_value_init(&row, GST_TYPE_ARRAY);
        for (int channel = 0; channel < info.channels; ++channel) {
            GValue share = G_VALUE_INIT;
            g_value_init(&share, G_TYPE_FLOAT);
            g_value_set_float(&share, shareOf(info.position[channel])[side]);
            gst_value_array_append_and_take_value(&row, &share);
        }
        gst_value_array_append_and_take_value(&matrix, &row);
    }
    g_object_set_property(G_OBJECT(converter), "mix-matrix", &matrix);
    g_value_unset(&matrix);
}

GstPadProbeReturn onEvent(GstPad*, GstPadProbeInfo* info, gpointer converter) {
    GstEvent* event = gst_pad_probe_info_get_event(info);
    if (GST_EVENT_TYPE(event) == GST_EVENT_CAPS) {
        GstCaps* caps = nullptr;
        gst_event_parse_caps(event, &caps);
        GstAudioInfo sound;
        if (gst_audio_info_from_caps(&sound, caps)) {
            setMatrix(GST_ELEMENT(converter), sound);
        }
    }
    return GST_PAD_PROBE_OK;
}

} // namespace

void mixDown(GstElement* converter) {
    GstPad* pad = gst_element_get_static_pad(converter, "sink");
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, onEvent, converter, nullptr);
    gst_object_unref(pad);
}

} // namespace zm::disc::engine
