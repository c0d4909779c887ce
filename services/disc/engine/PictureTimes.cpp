#include "services/disc/engine/PictureTimes.h"

#include <utility>

namespace zm::disc::engine {

namespace {

constexpr uint8_t PictureCode = 0x00;
constexpr uint8_t FirstSliceCode = 0x01;
constexpr uint8_t ExtensionCode = 0xB5;
constexpr uint8_t GroupCode = 0xB8;
constexpr int PictureExtension = 8;
constexpr int Bidirectional = 3;
constexpr int WholeFrame = 3;
constexpr int Numbers = 1024; // pictures are counted modulo this

struct PictureHead {
    int number = -1; ///< in the order in which its group is shown
    int type = 0;
    bool beginsGroup = false;
    bool whole = true; ///< not one field of two
};

PictureHead headOf(std::span<const uint8_t> coded) {
    PictureHead head;
    for (size_t i = 0; i + 8 <= coded.size(); ++i) {
        if (coded[i] != 0 || coded[i + 1] != 0 || coded[i + 2] != 1) {
            continue;
        }
        const auto content = coded.subspan(i + 4);
        switch (coded[i + 3]) {
        case PictureCode:
            head.number = content[0] << 2 | content[1] >> 6;
            head.type = content[1] >> 3 & 7;
            break;
        case GroupCode:
            head.beginsGroup = true;
            break;
        case ExtensionCode:
            if (content[0] >> 4 == PictureExtension) {
                head.whole = (content[2] & 3) == WholeFrame;
            }
            break;
        case FirstSliceCode:
            return head;
        default:
            break;
        }
    }
    return head;
}

GstClockTime plus(GstClockTime time, GstClockTime duration, int times = 1) {
    return GST_CLOCK_TIME_IS_VALID(time) ? time + duration * static_cast<GstClockTime>(times) : time;
}

} // namespace

GstClockTime PictureTimes::of(std::span<const uint8_t> coded, GstClockTime given, GstClockTime duration) {
    const PictureHead head = headOf(coded);
    if (head.number < 0 || !head.whole || !GST_CLOCK_TIME_IS_VALID(duration)) {
        restart();
        return given;
    }
    if (head.type == Bidirectional) {
        const GstClockTime time = GST_CLOCK_TIME_IS_VALID(given) ? given : m_shown;
        m_shown = plus(time, duration);
        return time;
    }
    Reference next{given, GST_CLOCK_TIME_NONE, head.number};
    if (m_reference && !GST_CLOCK_TIME_IS_VALID(given)) {
        next.time = head.beginsGroup ? plus(m_reference->end, duration, head.number)
                                     : plus(m_reference->time, duration,
                                            (head.number - m_reference->number + Numbers) % Numbers);
    }
    next.end = plus(next.time, duration);
    m_shown = m_reference ? m_reference->end : GST_CLOCK_TIME_NONE;
    m_reference = next;
    return next.time;
}

void PictureTimes::attach(GstElement* parser) {
    auto onData = +[](GstPad*, GstPadProbeInfo* info, gpointer self) {
        auto* times = static_cast<PictureTimes*>(self);
        if (GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM) {
            if (GST_EVENT_TYPE(gst_pad_probe_info_get_event(info)) == GST_EVENT_SEGMENT) {
                times->restart();
            }
            return GST_PAD_PROBE_OK;
        }
        GstBuffer* buffer = gst_buffer_make_writable(gst_pad_probe_info_get_buffer(info));
        GST_PAD_PROBE_INFO_DATA(info) = buffer;
        GstMapInfo map;
        if (gst_buffer_map(buffer, &map, GST_MAP_READ)) {
            GST_BUFFER_PTS(buffer) =
                times->of({map.data, map.size}, GST_BUFFER_PTS(buffer), GST_BUFFER_DURATION(buffer));
            gst_buffer_unmap(buffer, &map);
        }
        return GST_PAD_PROBE_OK;
    };
    GstPad* pad = gst_element_get_static_pad(parser, "src");
    gst_pad_add_probe(
        pad, GstPadProbeType(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM), onData,
        new PictureTimes, +[](gpointer self) { delete static_cast<PictureTimes*>(self); });
    gst_object_unref(pad);
}

} // namespace zm::disc::engine
