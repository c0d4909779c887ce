#include "services/disc/engine/MusicBranch.h"

#include "services/disc/engine/FileElement.h"
#include "services/disc/engine/MusicBin.h"

namespace zm::disc::engine {

MusicBranch::MusicBranch(GstElement* pipeline, std::shared_ptr<FileSource> source)
    : m_pipeline(pipeline), m_source(std::move(source)), m_trim(m_source->sound()) {
    GstElement* file = gst_element_factory_make(FileElementName, nullptr);
    GstElement* decoder = gst_element_factory_make("decodebin", nullptr);
    if (!file || !decoder) {
        return;
    }
    m_bin = makeMusicBin();
    gst_bin_add_many(GST_BIN(m_bin), file, decoder, nullptr);
    giveBytes(file, *m_source);
    const GstOwned<GstCaps> sound(gst_caps_from_string("audio/x-raw(ANY)"));
    // A music file's pictures, embedded or moving, are not even decoded.
    g_object_set(decoder, "caps", sound.get(), "expose-all-streams", FALSE, nullptr);
    auto onPad =
        +[](GstElement*, GstPad* pad, gpointer self) { static_cast<MusicBranch*>(self)->appeared(pad); };
    g_signal_connect(decoder, "pad-added", G_CALLBACK(onPad), this);
    gst_element_link(file, decoder);
    // While it prepares, what already plays is not to wait for it.
    g_object_set(m_bin, "async-handling", TRUE, nullptr);
    gst_bin_add(GST_BIN(m_pipeline), m_bin);
}

MusicBranch::~MusicBranch() {
    if (!m_bin) {
        return;
    }
    // First of all, as its decoder may be waiting there for its turn.
    if (m_place) {
        gst_element_release_request_pad(m_joint, m_place);
        gst_object_unref(m_place);
    }
    gst_element_set_state(m_bin, GST_STATE_NULL);
    gst_bin_remove(GST_BIN(m_pipeline), m_bin);
}

void MusicBranch::prepare() {
    gst_element_sync_state_with_parent(m_bin);
}

// On the decoder's thread.
void MusicBranch::appeared(GstPad* pad) {
    if (m_sound) {
        return;
    }
    m_sound = pad;
    m_trim.attach(pad);
    auto onEvent = +[](GstPad*, GstPadProbeInfo* info, gpointer self) {
        return GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_EOS
                   ? static_cast<MusicBranch*>(self)->end()
                   : GST_PAD_PROBE_OK;
    };
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, onEvent, this, nullptr);
    if (m_joint) {
        link(pad);
        return;
    }
    auto onSound = +[](GstPad*, GstPadProbeInfo*, gpointer bin) {
        gst_element_post_message(
            GST_ELEMENT(bin), gst_message_new_element(GST_OBJECT(bin), gst_structure_new_empty(ReadyName)));
        return GST_PAD_PROBE_OK;
    };
    m_held = gst_pad_add_probe(
        pad, static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BLOCK | GST_PAD_PROBE_TYPE_BUFFER), onSound,
        m_bin, nullptr);
}

void MusicBranch::link(GstPad* pad) {
    m_place = gst_element_request_pad_simple(m_joint, "sink_%u");
    GstPad* way = gst_ghost_pad_new(nullptr, pad);
    gst_pad_set_active(way, TRUE);
    gst_element_add_pad(m_bin, way);
    gst_pad_link(way, m_place);
}

void MusicBranch::join(GstElement* joint) {
    m_joint = joint;
    link(m_sound);
    gst_pad_remove_probe(m_sound, m_held);
}

// A file that cannot be read any further has not ended: nothing follows it by itself.
GstPadProbeReturn MusicBranch::end() {
    if (m_source->failure().empty() || !m_place) {
        return GST_PAD_PROBE_OK;
    }
    GstPad* active = nullptr;
    g_object_get(m_joint, "active-pad", &active, nullptr);
    const bool current = active == m_place;
    if (active) {
        gst_object_unref(active);
    }
    if (!current) {
        return GST_PAD_PROBE_OK;
    }
    GstPad* out = gst_element_get_static_pad(m_joint, "src");
    gst_pad_push_event(out, gst_event_new_eos());
    gst_object_unref(out);
    return GST_PAD_PROBE_DROP;
}

bool MusicBranch::sent(GstMessage* message) const {
    return m_bin && gst_object_has_as_ancestor(GST_MESSAGE_SRC(message), GST_OBJECT(m_bin));
}

} // namespace zm::disc::engine
