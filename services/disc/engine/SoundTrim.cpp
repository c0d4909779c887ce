#include "services/disc/engine/SoundTrim.h"

#include <algorithm>
#include <cstdlib>

namespace zm::disc::engine {

namespace {

// Times of a stream differ from the count of its samples by less, unless it jumps.
constexpr int64_t JumpsPerSecond = 50;

} // namespace

void SoundTrim::attach(GstPad* pad) {
    auto onData = +[](GstPad*, GstPadProbeInfo* info, gpointer self) {
        return static_cast<SoundTrim*>(self)->see(info);
    };
    gst_pad_add_probe(
        pad, static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM),
        onData, this, nullptr);
}

GstPadProbeReturn SoundTrim::see(GstPadProbeInfo* info) {
    if ((info->type & GST_PAD_PROBE_TYPE_BUFFER) != 0) {
        auto* buffer = GST_PAD_PROBE_INFO_BUFFER(info);
        const auto result = cut(buffer);
        info->data = buffer;
        return result;
    }
    auto* event = GST_PAD_PROBE_INFO_EVENT(info);
    take(event);
    info->data = event;
    return GST_PAD_PROBE_OK;
}

void SoundTrim::take(GstEvent*& event) {
    if (GST_EVENT_TYPE(event) == GST_EVENT_CAPS) {
        GstCaps* caps = nullptr;
        gst_event_parse_caps(event, &caps);
        gst_audio_info_from_caps(&m_info, caps);
        count();
    } else if (GST_EVENT_TYPE(event) == GST_EVENT_SEGMENT) {
        const GstSegment* segment = nullptr;
        gst_event_parse_segment(event, &segment);
        gst_segment_copy_into(segment, &m_segment);
    }
}

// Some decoders give twice the samples that the file counts in.
void SoundTrim::count() {
    const auto rate = static_cast<int64_t>(m_info.rate);
    m_sound = m_range;
    if (m_range.rate > 0 && m_range.rate != rate) {
        m_sound.first = m_range.first * rate / m_range.rate;
        m_sound.count = m_range.count * rate / m_range.rate;
    }
}

int64_t SoundTrim::samplesIn(GstClockTime time) const {
    return static_cast<int64_t>(
        gst_util_uint64_scale_round(time, static_cast<guint64>(m_info.rate), GST_SECOND));
}

GstClockTime SoundTrim::timeOf(int64_t samples) const {
    return gst_util_uint64_scale_round(static_cast<guint64>(samples), GST_SECOND,
                                       static_cast<guint64>(m_info.rate));
}

// Counted on from the buffer before: in a long file the times that a parser adds up stray by some samples.
int64_t SoundTrim::placeOf(GstBuffer* buffer, int64_t count) {
    const int64_t told = samplesIn(GST_BUFFER_PTS(buffer));
    const bool follows =
        !GST_BUFFER_IS_DISCONT(buffer) && std::abs(told - m_next) < m_info.rate / JumpsPerSecond;
    const int64_t place = follows ? m_next : told;
    m_next = place + count;
    return place;
}

GstPadProbeReturn SoundTrim::cut(GstBuffer*& buffer) {
    if (m_info.rate == 0 || m_segment.format != GST_FORMAT_TIME || !GST_BUFFER_PTS_IS_VALID(buffer)) {
        return GST_PAD_PROBE_OK;
    }
    const auto* meta = gst_buffer_get_audio_meta(buffer);
    const auto count = static_cast<int64_t>(
        meta ? meta->samples : gst_buffer_get_size(buffer) / static_cast<size_t>(m_info.bpf));
    const int64_t place = placeOf(buffer, count) - m_sound.first;
    const int64_t begin = std::max(place, samplesIn(m_segment.start));
    int64_t end = std::min(place + count, m_sound.count);
    if (GST_CLOCK_TIME_IS_VALID(m_segment.stop)) {
        end = std::min(end, samplesIn(m_segment.stop));
    }
    if (begin >= end) {
        return GST_PAD_PROBE_DROP;
    }
    buffer = gst_buffer_make_writable(buffer);
    buffer = gst_audio_buffer_truncate(buffer, m_info.bpf, static_cast<gsize>(begin - place),
                                       static_cast<gsize>(end - begin));
    GST_BUFFER_PTS(buffer) = timeOf(begin);
    GST_BUFFER_DURATION(buffer) = timeOf(end) - timeOf(begin);
    return GST_PAD_PROBE_OK;
}

} // namespace zm::disc::engine
