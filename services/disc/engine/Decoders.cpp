#include "services/disc/engine/Decoders.h"

#include "services/disc/engine/FileElement.h"
#include "services/disc/engine/Gst.h"

#include <algorithm>
#include <mutex>
#include <string_view>

namespace zm::disc::engine {

namespace {

// What may take part in playing a disc's file. Play lists in disguise (adaptive streaming, reference movies),
// sources and probed sinks are left out on purpose: on a disc they are a stranger's wish.
constexpr std::string_view allowed[] = {
    // the player and what it is made of
    "pipeline", "bin", "playbin", "playsink", "uridecodebin", "decodebin", "subtitleoverlay",
    "streamsynchronizer", "typefind", "queue", "queue2", "multiqueue", "tee", "identity", "capsfilter",
    "input-selector", "concat", "funnel",
    // converters
    "audioconvert", "audioresample", "videoconvert", "videoscale", "videoconvertscale", "videocrop",
    "videoflip", "deinterlace", "textoverlay", "textrender", "dvdspu",
    // sinks
    "alsasink", "pulsesink", "appsink", "fakesink",
    // demuxers
    "oggdemux", "matroskademux", "qtdemux", "avidemux", "wavparse", "asfdemux", "mpegpsdemux", "tsdemux",
    "id3demux", "apedemux",
    // parsers
    "mpegaudioparse", "aacparse", "ac3parse", "dcaparse", "flacparse", "opusparse", "vorbisparse",
    "mpegvideoparse", "mpeg4videoparse", "h263parse", "h264parse", "h265parse", "vc1parse", "vp9parse",
    "av1parse", "theoraparse", "jpegparse", "subparse", "ssaparse", "dvdsubparse",
    // sound decoders
    "mpg123audiodec", "vorbisdec", "opusdec", "flacdec", "alawdec", "mulawdec", "adpcmdec", "dvdlpcmdec",
    "avdec_mp3", "avdec_mp2float", "avdec_aac", "avdec_aac_latm", "avdec_ac3", "avdec_eac3", "avdec_dca",
    "avdec_alac", "avdec_flac", "avdec_wmav1", "avdec_wmav2", "avdec_wmapro", "avdec_wmalossless",
    "avdec_wmavoice", "avdec_adpcm_ms", "avdec_adpcm_ima_wav", "avdec_adpcm_ima_qt",
    // picture decoders
    "avdec_mpegvideo", "avdec_mpeg2video", "avdec_mpeg4", "avdec_msmpeg4v1", "avdec_msmpeg4v2",
    "avdec_msmpeg4", "avdec_h263", "avdec_h263p", "avdec_h264", "avdec_h265", "avdec_wmv1", "avdec_wmv2",
    "avdec_wmv3", "avdec_vc1", "avdec_flv", "avdec_mjpeg", "avdec_vp8", "avdec_vp9", "vp8dec", "vp9dec",
    "dav1ddec", "av1dec", "theoradec", "avdec_cinepak", "avdec_dvvideo", "avdec_bmp", "avdec_gif", "pngdec",
    "avdec_png", "dvdsubdec"};

// Tells most formats by their first bytes.
constexpr const char* FormatPlugin = "typefindfunctions";

bool isAllowed(GstPluginFeature* feature) {
    const std::string_view name = gst_plugin_feature_get_name(feature);
    return std::find(std::begin(allowed), std::end(allowed), name) != std::end(allowed);
}

template <class Use>
void forEachOf(GType type, GstRegistry* registry, Use use) {
    GList* features = gst_registry_get_feature_list(registry, type);
    for (GList* each = features; each; each = each->next) {
        use(static_cast<GstPluginFeature*>(each->data));
    }
    gst_plugin_feature_list_free(features);
}

// A plugin that is loaded later would bring its removed elements back.
void loadAllowed(GstRegistry* registry) {
    forEachOf(GST_TYPE_ELEMENT_FACTORY, registry, [](GstPluginFeature* feature) {
        if (isAllowed(feature)) {
            if (GstPluginFeature* loaded = gst_plugin_feature_load(feature)) {
                gst_object_unref(loaded);
            }
        }
    });
}

void removeAllOthers(GstRegistry* registry) {
    forEachOf(GST_TYPE_ELEMENT_FACTORY, registry, [registry](GstPluginFeature* feature) {
        if (!isAllowed(feature)) {
            gst_registry_remove_feature(registry, feature);
        }
    });
}

// Formats are told apart by what is loaded too.
void removeFormatsOfOthers(GstRegistry* registry) {
    forEachOf(GST_TYPE_TYPE_FIND_FACTORY, registry, [registry](GstPluginFeature* feature) {
        GstPlugin* plugin = gst_plugin_feature_get_plugin(feature);
        if (!plugin || !gst_plugin_is_loaded(plugin)) {
            gst_registry_remove_feature(registry, feature);
        }
        if (plugin) {
            gst_object_unref(plugin);
        }
    });
}

void setRank(GstRegistry* registry, const char* name, guint rank) {
    if (GstPluginFeature* feature = gst_registry_lookup_feature(registry, name)) {
        gst_plugin_feature_set_rank(feature, rank);
        gst_object_unref(feature);
    }
}

void (*handleInDecodebin)(GstBin*, GstMessage*) = nullptr;

// While it connects an element, the bin drops that element's errors, so as to try another one. A demuxer that
// has already begun to read on its own thread and has failed is then waited for in vain. So of each error
// there is a copy in a form that is not dropped.
void handleAndTell(GstBin* bin, GstMessage* message) {
    GstMessage* copy = nullptr;
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
        GError* error = nullptr;
        gst_message_parse_error(message, &error, nullptr);
        const GstOwned<GError> owned(error);
        copy = gst_message_new_element(
            GST_OBJECT(bin), gst_structure_new(KeptErrorName, KeptErrorText, G_TYPE_STRING,
                                               error ? error->message : "cannot be decoded", nullptr));
    }
    handleInDecodebin(bin, message);
    if (copy) {
        handleInDecodebin(bin, copy);
    }
}

void hearErrorsOfDecodebin() {
    // The class exists once the first element does, and then for ever.
    GstElement* decodebin = gst_element_factory_make("decodebin", nullptr);
    if (!decodebin) {
        return;
    }
    const GstOwned<GstElement> owned(GST_ELEMENT(gst_object_ref_sink(decodebin)));
    GstBinClass* type = GST_BIN_GET_CLASS(decodebin);
    handleInDecodebin = type->handle_message;
    type->handle_message = handleAndTell;
}

void initOnce() {
    gst_init(nullptr, nullptr);
    GstRegistry* registry = gst_registry_get();
    if (GstPlugin* formats = gst_plugin_load_by_name(FormatPlugin)) {
        gst_object_unref(formats);
    }
    loadAllowed(registry);
    removeAllOthers(registry);
    removeFormatsOfOthers(registry);
    registerFileElement();
    // Of the elements for photos only this one reads how the camera was held.
    setRank(registry, "jpegparse", GST_RANK_PRIMARY + 1);
    hearErrorsOfDecodebin();
}

} // namespace

void initDecoders() {
    static std::once_flag done;
    std::call_once(done, initOnce);
}

} // namespace zm::disc::engine
