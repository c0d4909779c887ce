#include "services/disc/engine/FileElement.h"

#include <gst/base/gstbasesrc.h>

// Names, casts and the functions' signatures are those that the object system wants.

namespace {

constexpr const char* Protocol = zm::disc::engine::FileElementName;
constexpr guint PushBytes = 64 * 1024;

struct ZmFileElement {
    GstBaseSrc parent;
    zm::disc::engine::FileBytes* bytes;
};
struct ZmFileElementClass {
    GstBaseSrcClass parent;
};

/** Without bytes: an element that nobody was told of. */
class NoBytes : public zm::disc::engine::FileBytes {
public:
    uint64_t size() const override { return 0; }
    bool seekable() const override { return false; }
    zm::disc::engine::GstOwned<GstCaps> caps() const override { return nullptr; }
    zm::disc::engine::GstOwned<GstBuffer> read(uint64_t, size_t) override { return nullptr; }
};

zm::disc::engine::FileBytes& bytesOf(GstBaseSrc* source) {
    static NoBytes none;
    auto* bytes = reinterpret_cast<ZmFileElement*>(source)->bytes;
    return bytes ? *bytes : none;
}

void giveUriHandler(gpointer interface, gpointer) {
    auto* handler = static_cast<GstURIHandlerInterface*>(interface);
    handler->get_type = [](GType) { return GST_URI_SRC; };
    handler->get_protocols = [](GType) -> const gchar* const* {
        static const gchar* const protocols[] = {zm::disc::engine::FileElementName, nullptr};
        return protocols;
    };
    handler->get_uri = [](GstURIHandler*) { return g_strdup(zm::disc::engine::FileElementUri); };
    handler->set_uri = [](GstURIHandler*, const gchar*, GError**) -> gboolean { return TRUE; };
}

G_DEFINE_TYPE_WITH_CODE(ZmFileElement, zm_file_element, GST_TYPE_BASE_SRC,
                        G_IMPLEMENT_INTERFACE(GST_TYPE_URI_HANDLER, giveUriHandler))

void zm_file_element_init(ZmFileElement* element) {
    gst_base_src_set_format(GST_BASE_SRC(element), GST_FORMAT_BYTES);
    gst_base_src_set_blocksize(GST_BASE_SRC(element), PushBytes);
}

void zm_file_element_class_init(ZmFileElementClass* type) {
    static GstStaticPadTemplate source =
        GST_STATIC_PAD_TEMPLATE("src", GST_PAD_SRC, GST_PAD_ALWAYS, GST_STATIC_CAPS_ANY);
    auto* element = reinterpret_cast<GstElementClass*>(type);
    gst_element_class_add_static_pad_template(element, &source);
    gst_element_class_set_static_metadata(element, "Disc file", "Source", "Reads a file of a disc",
                                          "the disc service");
    auto* base = reinterpret_cast<GstBaseSrcClass*>(type);
    base->get_size = [](GstBaseSrc* self, guint64* size) -> gboolean {
        *size = bytesOf(self).size();
        return TRUE;
    };
    base->is_seekable = [](GstBaseSrc* self) -> gboolean { return bytesOf(self).seekable(); };
    base->get_caps = [](GstBaseSrc* self, GstCaps* filter) {
        zm::disc::engine::GstOwned<GstCaps> caps = bytesOf(self).caps();
        if (!caps) {
            caps.reset(gst_caps_new_any());
        }
        return filter ? gst_caps_intersect(caps.get(), filter) : caps.release();
    };
    base->create = [](GstBaseSrc* self, guint64 offset, guint size, GstBuffer** buffer) {
        auto read = bytesOf(self).read(offset, size);
        if (!read) {
            return GST_FLOW_EOS;
        }
        *buffer = read.release();
        return GST_FLOW_OK;
    };
}

} // namespace

namespace zm::disc::engine {

void registerFileElement() {
    gst_element_register(nullptr, Protocol, GST_RANK_PRIMARY, zm_file_element_get_type());
}

void giveBytes(GstElement* fileElement, FileBytes& bytes) {
    reinterpret_cast<ZmFileElement*>(fileElement)->bytes = &bytes;
}

} // namespace zm::disc::engine
