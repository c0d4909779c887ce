#include "services/disc/engine/MusicBin.h"

// Names, casts and the functions' signatures are those that the object system wants.

namespace {

constexpr const char* ErrorName = "zm-music-error";
constexpr const char* ErrorText = "text";

struct ZmMusicBin {
    GstBin parent;
};
struct ZmMusicBinClass {
    GstBinClass parent;
};

G_DEFINE_TYPE(ZmMusicBin, zm_music_bin, GST_TYPE_BIN)

void zm_music_bin_init(ZmMusicBin*) {}

void handleMessage(GstBin* bin, GstMessage* message) {
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
        GError* error = nullptr;
        gst_message_parse_error(message, &error, nullptr);
        const zm::disc::engine::GstOwned<GError> owned(error);
        gst_message_unref(message);
        message = gst_message_new_element(
            GST_OBJECT(bin), gst_structure_new(ErrorName, ErrorText, G_TYPE_STRING,
                                               error ? error->message : "cannot be decoded", nullptr));
    }
    GST_BIN_CLASS(zm_music_bin_parent_class)->handle_message(bin, message);
}

void zm_music_bin_class_init(ZmMusicBinClass* type) {
    reinterpret_cast<GstBinClass*>(type)->handle_message = handleMessage;
}

} // namespace

namespace zm::disc::engine {

GstElement* makeMusicBin() {
    return GST_ELEMENT(g_object_new(zm_music_bin_get_type(), nullptr));
}

const char* musicError(GstMessage* message) {
    return gst_message_has_name(message, ErrorName)
               ? gst_structure_get_string(gst_message_get_structure(message), ErrorText)
               : nullptr;
}

} // namespace zm::disc::engine
