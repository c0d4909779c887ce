#include "services/disc/engine/MusicChain.h"

#include "services/disc/engine/MusicBin.h"
#include "services/disc/engine/SoundOut.h"
#include "services/disc/log/Log.h"

namespace zm::disc::engine {

bool MusicChain::begin(const std::shared_ptr<FileSource>& source) {
    m_joint = gst_element_factory_make("concat", nullptr);
    GstElement* sink = makeSoundSink();
    if (!m_joint || !gst_bin_add(GST_BIN(m_pipeline), m_joint) || !sink ||
        !gst_bin_add(GST_BIN(m_pipeline), sink) || !gst_element_link(m_joint, sink)) {
        return false;
    }
    auto onEvent = +[](GstPad*, GstPadProbeInfo* info, gpointer self) {
        static_cast<MusicChain*>(self)->see(GST_PAD_PROBE_INFO_EVENT(info));
        return GST_PAD_PROBE_OK;
    };
    GstPad* out = gst_element_get_static_pad(m_joint, "src");
    gst_pad_add_probe(out, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, onEvent, this, nullptr);
    gst_object_unref(out);
    m_current = std::make_unique<MusicBranch>(m_pipeline, source);
    m_current->joinAtOnce(m_joint);
    return m_current->complete();
}

void MusicChain::prepare(const std::shared_ptr<FileSource>& source) {
    m_next = std::make_unique<MusicBranch>(m_pipeline, source);
    if (m_next->complete()) {
        m_next->prepare();
    }
}

void MusicChain::forget() {
    if (!passedOn()) {
        cancelNext();
        m_nextPlace = nullptr;
        m_next.reset();
    }
}

void MusicChain::cancelNext() {
    if (m_next) {
        m_next->source()->cancel();
    }
}

bool MusicChain::handle(GstMessage* message) {
    if (!gst_object_has_as_ancestor(GST_MESSAGE_SRC(message), GST_OBJECT(m_pipeline))) {
        return true; // of a file that is not wanted any more
    }
    if (!m_next || !m_next->sent(message)) {
        return false;
    }
    if (musicError(message)) {
        if (passedOn()) {
            return false;
        }
        // It is told when its turn has come.
        forget();
    } else if (gst_message_has_name(message, MusicBranch::ReadyName) && !m_next->place()) {
        m_next->join(m_joint);
        m_nextPlace = m_next->place();
    }
    return true;
}

// On the decoder's thread.
void MusicChain::see(GstEvent* event) {
    if (GST_EVENT_TYPE(event) != GST_EVENT_SEGMENT || passedOn()) {
        return;
    }
    GstPad* active = nullptr;
    g_object_get(m_joint, "active-pad", &active, nullptr);
    if (active && active == m_nextPlace) {
        const GstSegment* segment = nullptr;
        gst_event_parse_segment(event, &segment);
        m_border = segment->base;
        gst_element_post_message(
            m_joint, gst_message_new_element(GST_OBJECT(m_joint), gst_structure_new_empty("zm-passed-on")));
    }
    if (active) {
        gst_object_unref(active);
    }
}

Milliseconds MusicChain::left() const {
    const GstClockTime now = gst_element_get_current_running_time(m_pipeline);
    const GstClockTime border = m_border;
    const bool over = !GST_CLOCK_TIME_IS_VALID(now) || now >= border;
    return std::chrono::ceil<Milliseconds>(std::chrono::nanoseconds(over ? 0 : border - now));
}

std::shared_ptr<FileSource> MusicChain::pass() {
    m_current = std::move(m_next);
    m_nextPlace = nullptr;
    m_border = GST_CLOCK_TIME_NONE;
    return m_current->source();
}

} // namespace zm::disc::engine
