#include "services/disc/dvd/Pipeline.h"

#include "services/disc/engine/MixDown.h"
#include "services/disc/engine/PictureTimes.h"
#include "services/disc/log/Log.h"

#include <gst/video/video.h>

#include <utility>

namespace zm::disc::dvd {

namespace {

// Stamps start above 0, as a stream may begin with a piece that belongs before its first picture.
constexpr int64_t Margin = 10 * 90000;
constexpr GstClockTime StateChangeTime = 500 * GST_MSECOND;
constexpr const char* SubtitleEvent = "application/x-gst-dvd";

constexpr std::array<const char*, PadCount> streamCaps{
    "video/mpeg,mpegversion=2,systemstream=false",
    "subpicture/x-dvd",
    "audio/x-ac3",
    "audio/mpeg,mpegversion=1",
    "audio/x-private1-lpcm",
    "audio/x-dts",
};

// Queues have no limits: who pushes keeps his distance, and streams that wait for each other would hold each
// other up.
#define ZM_DVD_QUEUE "queue max-size-time=0 max-size-bytes=0 max-size-buffers=0"
constexpr const char* videoChain = ZM_DVD_QUEUE
    " ! mpegvideoparse name=pictures ! avdec_mpeg2video max-threads=1 ! videoconvertscale name=whole ! "
    "capsfilter name=size caps=video/x-raw,format=I420,framerate=[1/1,60/1]";
constexpr const char* subtitleChain = ZM_DVD_QUEUE;
constexpr const char* screenChain =
    "queue max-size-buffers=3 max-size-bytes=0 max-size-time=0 ! deinterlace name=deinterlace";
struct SoundRow {
    Pad pad;
    const char* description;
};
constexpr SoundRow soundChains[] = {
    {Pad::Ac3, ZM_DVD_QUEUE " ! ac3parse ! avdec_ac3 ! audioconvert name=mix ! audioresample"},
    {Pad::Mpeg, ZM_DVD_QUEUE " ! mpegaudioparse ! avdec_mp2float ! audioconvert name=mix ! audioresample"},
    {Pad::Lpcm, ZM_DVD_QUEUE " ! dvdlpcmdec ! audioconvert name=mix ! audioresample"},
    {Pad::Dts, ZM_DVD_QUEUE " ! dcaparse ! avdec_dca ! audioconvert name=mix ! audioresample"},
};
// One kind of sound after the other comes out in the same format, so that nothing behind it starts anew.
constexpr const char* soundJoint =
    "funnel name=funnel ! capsfilter caps=audio/x-raw,format=S16LE,rate=48000,channels=2,layout=interleaved";

GstClockTime clockTime(int64_t ticks) {
    return ticks < 0 ? 0 : gst_util_uint64_scale(static_cast<guint64>(ticks), 100000, 9);
}

// What draws subtitles keeps to itself that there is no picture.
GstPadProbeReturn passGap(GstPad*, GstPadProbeInfo* info, gpointer subtitles) {
    GstEvent* event = gst_pad_probe_info_get_event(info);
    if (GST_EVENT_TYPE(event) == GST_EVENT_GAP) {
        GstPad* out = gst_element_get_static_pad(GST_ELEMENT(subtitles), "src");
        gst_pad_push_event(out, gst_event_ref(event));
        gst_object_unref(out);
    }
    return GST_PAD_PROBE_OK;
}

GstElement* parse(const char* description, std::string& failure) {
    GError* error = nullptr;
    GstElement* bin = gst_parse_bin_from_description(description, TRUE, &error);
    const engine::GstOwned<GError> owned(error);
    if (!bin || error) {
        failure = error ? error->message : "elements are missing";
    }
    return bin;
}

} // namespace

Pipeline::Pipeline(EventLoop& loop, engine::FrameSink& frames, const SoundMaker& makeSound,
                   PipelineEvents events)
    : m_loop(loop), m_frames(frames), m_events(std::move(events)),
      m_picture(frames, engine::PictureKind::UprightFilm),
      m_pipeline(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr)))) {
    if (!build(makeSound)) {
        m_failure = m_failure.empty() ? "no decoder installed" : m_failure;
        return;
    }
    m_standing.emplace(m_picture.element());
    listen();
    // The sound may pause, so it cannot be the clock.
    GstClock* clock = gst_system_clock_obtain();
    gst_pipeline_use_clock(GST_PIPELINE(m_pipeline.get()), clock);
    gst_object_unref(clock);
    gst_element_set_state(m_pipeline.get(), GST_STATE_PAUSED);
    startStreams();
    sendSegment();
}

Pipeline::~Pipeline() {
    m_bus.reset();
    gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
}

bool Pipeline::build(const SoundMaker& makeSound) {
    m_source = makeElement();
    GstElement* subtitles = m_subtitles = gst_element_factory_make("dvdspu", nullptr);
    GstElement* screen = parse(screenChain, m_failure);
    GstElement* joint = parse(soundJoint, m_failure);
    GstElement* sound = makeSound();
    GstElement* picture = m_picture.element();
    GstBin* bin = GST_BIN(m_pipeline.get());
    for (GstElement* each : {m_source, subtitles, screen, joint, sound, picture}) {
        if (!each) {
            return false;
        }
        gst_bin_add(bin, each);
    }
    const engine::GstOwned<GstElement> funnel(gst_bin_get_by_name(GST_BIN(joint), "funnel"));
    bool built = gst_element_link_many(subtitles, screen, picture, nullptr) &&
                 gst_element_link(joint, sound) && add(videoChain, Pad::Video, subtitles, "video") &&
                 add(subtitleChain, Pad::Subtitle, subtitles, "subpicture");
    GstPad* drawnOn = gst_element_get_static_pad(subtitles, "video");
    gst_pad_add_probe(drawnOn, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, passGap, subtitles, nullptr);
    gst_object_unref(drawnOn);
    if (const engine::GstOwned<GstElement> parser(gst_bin_get_by_name(bin, "pictures")); parser) {
        engine::PictureTimes::attach(parser.get());
    }
    for (const auto& row : soundChains) {
        built = built && add(row.description, row.pad, joint, nullptr);
    }
    return built;
}

// A decoder of `pad` in front of `target`.
bool Pipeline::add(const char* description, Pad which, GstElement* target, const char* targetPad) {
    GstElement* chain = parse(description, m_failure);
    if (!chain) {
        return false;
    }
    gst_bin_add(GST_BIN(m_pipeline.get()), chain);
    GstPad* sink = gst_element_get_static_pad(chain, "sink");
    if (const engine::GstOwned<GstElement> mix(gst_bin_get_by_name(GST_BIN(chain), "mix")); mix) {
        engine::mixDown(mix.get());
    }
    const bool fed = gst_pad_link(pad(which), sink) == GST_PAD_LINK_OK;
    gst_object_unref(sink);
    if (targetPad) {
        return fed && gst_element_link_pads(chain, "src", target, targetPad);
    }
    // A way of its own into the place where the sounds meet.
    const engine::GstOwned<GstElement> funnel(gst_bin_get_by_name(GST_BIN(target), "funnel"));
    GstPad* entrance = gst_element_request_pad_simple(funnel.get(), "sink_%u");
    GstPad* ghost = gst_ghost_pad_new(nullptr, entrance);
    gst_object_unref(entrance);
    gst_element_add_pad(target, ghost);
    GstPad* out = gst_element_get_static_pad(chain, "src");
    const bool linked = gst_pad_link(out, ghost) == GST_PAD_LINK_OK;
    gst_object_unref(out);
    return fed && linked;
}

void Pipeline::startStreams() {
    for (size_t i = 0; i < PadCount; ++i) {
        const auto each = static_cast<Pad>(i);
        begin(each, gst_event_new_stream_start(("dvd-" + std::to_string(i)).c_str()));
        const engine::GstOwned<GstCaps> caps(gst_caps_from_string(streamCaps[i]));
        begin(each, gst_event_new_caps(caps.get()));
    }
}

// What draws subtitles reckons with their segment as soon as it is told that a picture stands; through their queue it may
// come later than that.
void Pipeline::begin(Pad which, GstEvent* event) {
    if (which == Pad::Subtitle) {
        GstPad* drawn = gst_element_get_static_pad(m_subtitles, "subpicture");
        gst_pad_send_event(drawn, gst_event_ref(event));
        gst_object_unref(drawn);
    }
    gst_pad_push_event(pad(which), event);
}

void Pipeline::sendSegment() {
    GstSegment segment;
    gst_segment_init(&segment, GST_FORMAT_TIME);
    segment.start = segment.position = segment.time = clockTime(Margin);
    for (size_t i = 0; i < PadCount; ++i) {
        begin(static_cast<Pad>(i), gst_event_new_segment(&segment));
    }
    m_broken.fill(true);
    m_prerolled = false;
    m_time = 0;
}

void Pipeline::listen() {
    const engine::GstOwned<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    GSource* watch = gst_bus_create_watch(bus.get());
    GstBusFunc onMessage = [](GstBus*, GstMessage* message, gpointer self) -> gboolean {
        static_cast<Pipeline*>(self)->receive(message);
        return G_SOURCE_CONTINUE;
    };
    g_source_set_callback(watch, G_SOURCE_FUNC(onMessage), this, nullptr);
    g_source_attach(watch, m_loop.context());
    m_bus = SourceHandle(watch);
}

void Pipeline::receive(GstMessage* message) {
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ERROR: {
        GError* error = nullptr;
        gst_message_parse_error(message, &error, nullptr);
        const engine::GstOwned<GError> owned(error);
        m_events.failed(error ? error->message : "cannot be decoded");
        break;
    }
    case GST_MESSAGE_ASYNC_DONE:
        m_prerolled = true;
        m_events.prerolled();
        break;
    case GST_MESSAGE_LATENCY:
        gst_bin_recalculate_latency(GST_BIN(m_pipeline.get()));
        break;
    default:
        break;
    }
}

void Pipeline::play() {
    gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING);
}

void Pipeline::pause() {
    gst_element_set_state(m_pipeline.get(), GST_STATE_PAUSED);
}

void Pipeline::flush() {
    if (m_prerolled) {
        // A flush that meets the change to playing leaves it undone, and the pipeline waits for ever.
        gst_element_get_state(m_pipeline.get(), nullptr, nullptr, StateChangeTime);
    }
    for (size_t i = 0; i < PadCount; ++i) {
        gst_pad_push_event(pad(static_cast<Pad>(i)), gst_event_new_flush_start());
    }
    for (size_t i = 0; i < PadCount; ++i) {
        gst_pad_push_event(pad(static_cast<Pad>(i)), gst_event_new_flush_stop(TRUE));
    }
    sendSegment();
}

void Pipeline::pushBytes(Pad which, std::span<const uint8_t> bytes, GstClockTime time,
                         GstClockTime decodeTime) {
    GstBuffer* buffer = gst_buffer_new_memdup(bytes.data(), bytes.size());
    GST_BUFFER_PTS(buffer) = time;
    GST_BUFFER_DTS(buffer) = decodeTime;
    if (std::exchange(m_broken[static_cast<size_t>(which)], false)) {
        GST_BUFFER_FLAG_SET(buffer, GST_BUFFER_FLAG_DISCONT);
    }
    gst_pad_push(pad(which), buffer);
}

void Pipeline::push(Pad which, const Fragment& fragment, int64_t shift) {
    const auto stamp = [&](const std::optional<int64_t>& time) {
        return time ? clockTime(*time + shift + Margin) : GST_CLOCK_TIME_NONE;
    };
    const auto head = fragment.data.first(fragment.firstUnit);
    if (!head.empty()) {
        // The end of a unit whose beginning came before; the time is that of the next.
        pushBytes(which, head, GST_CLOCK_TIME_NONE, GST_CLOCK_TIME_NONE);
    }
    pushBytes(which, fragment.data.subspan(fragment.firstUnit), stamp(fragment.time),
              stamp(fragment.decodeTime));
}

void Pipeline::silence(Pad which, int64_t begin, int64_t end) {
    gst_pad_push_event(pad(which), gst_event_new_gap(clockTime(begin + Margin), clockTime(end - begin)));
}

void Pipeline::still(bool stands) {
    gst_pad_push_event(pad(Pad::Video), gst_video_event_new_still_frame(stands));
}

void Pipeline::sendSubtitleEvent(GstStructure* content, GstEventType type) {
    gst_pad_push_event(pad(Pad::Subtitle), gst_event_new_custom(type, content));
}

void Pipeline::colours(const std::array<uint32_t, 16>& all) {
    GstStructure* content =
        gst_structure_new(SubtitleEvent, "event", G_TYPE_STRING, "dvd-spu-clut-change", nullptr);
    for (size_t i = 0; i < all.size(); ++i) {
        const std::string number = std::to_string(i);
        const std::string name = "clut" + std::string(2 - number.size(), '0') + number;
        gst_structure_set(content, name.c_str(), G_TYPE_INT, static_cast<int>(all[i]), nullptr);
    }
    sendSubtitleEvent(content, GST_EVENT_CUSTOM_DOWNSTREAM);
}

void Pipeline::subtitleStream(int logical, int stream, bool visible) {
    sendSubtitleEvent(gst_structure_new(SubtitleEvent, "event", G_TYPE_STRING, "dvd-set-subpicture-track",
                                        "logical-id", G_TYPE_INT, logical, "physical-id", G_TYPE_INT, stream,
                                        "forced-only", G_TYPE_BOOLEAN, !visible, nullptr),
                      GST_EVENT_CUSTOM_DOWNSTREAM);
}

void Pipeline::highlight(int number, const MenuButton& button, uint32_t palette) {
    sendSubtitleEvent(gst_structure_new(SubtitleEvent, "event", G_TYPE_STRING, "dvd-spu-highlight", "button",
                                        G_TYPE_INT, number, "palette", G_TYPE_INT, static_cast<int>(palette),
                                        "sx", G_TYPE_INT, button.left, "sy", G_TYPE_INT, button.top, "ex",
                                        G_TYPE_INT, button.right, "ey", G_TYPE_INT, button.bottom, nullptr),
                      GST_EVENT_CUSTOM_DOWNSTREAM_OOB);
}

void Pipeline::noHighlight() {
    sendSubtitleEvent(
        gst_structure_new(SubtitleEvent, "event", G_TYPE_STRING, "dvd-spu-reset-highlight", nullptr),
        GST_EVENT_CUSTOM_DOWNSTREAM_OOB);
}

// Subtitles and buttons are drawn on whole pictures, also where the film has fewer points. A film without any picture
// would have no rate, with which what draws them never comes to an end.
void Pipeline::lines(int count) {
    const engine::GstOwned<GstElement> size(gst_bin_get_by_name(GST_BIN(m_pipeline.get()), "size"));
    const engine::GstOwned<GstCaps> caps(gst_caps_new_simple(
        "video/x-raw", "format", G_TYPE_STRING, "I420", "width", G_TYPE_INT, 720, "height", G_TYPE_INT, count,
        "framerate", GST_TYPE_FRACTION_RANGE, 1, 1, 60, 1, nullptr));
    g_object_set(size.get(), "caps", caps.get(), nullptr);
}

void Pipeline::view(const engine::PictureView& view) {
    m_picture.view(view);
    m_zoom = view.zoom();
}

void Pipeline::repeatPicture() {
    m_standing->show(m_frames, m_zoom);
}

bool Pipeline::settled() const {
    return gst_element_get_state(m_pipeline.get(), nullptr, nullptr, 0) == GST_STATE_CHANGE_SUCCESS;
}

int64_t Pipeline::runningTime() const {
    GstState now = GST_STATE_VOID_PENDING;
    GstState next = GST_STATE_VOID_PENDING;
    if (!m_prerolled || gst_element_get_state(m_pipeline.get(), &now, &next, 0) != GST_STATE_CHANGE_SUCCESS) {
        return m_time; // on the way from one state to the other
    }
    GstClockTime time = gst_element_get_start_time(m_pipeline.get());
    if (now == GST_STATE_PLAYING) {
        GstClock* clock = gst_element_get_clock(m_pipeline.get());
        const GstClockTime base = gst_element_get_base_time(m_pipeline.get());
        const GstClockTime clockNow = gst_clock_get_time(clock);
        gst_object_unref(clock);
        time = clockNow > base ? clockNow - base : 0;
    }
    if (time != GST_CLOCK_TIME_NONE) {
        m_time = static_cast<int64_t>(gst_util_uint64_scale(time, 9, 100000));
    }
    return m_time;
}

} // namespace zm::disc::dvd
