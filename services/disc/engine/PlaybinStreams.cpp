#include "services/disc/engine/PlaybinStreams.h"

namespace zm::disc::engine {

namespace {

// Flag of "playbin": subtitles are drawn into the picture.
constexpr int SubtitleFlag = 0x04;

struct StreamNames {
    const char* count;
    const char* tagsSignal;
    const char* codecTag;
};
constexpr StreamNames audioNames{"n-audio", "get-audio-tags", GST_TAG_AUDIO_CODEC};
constexpr StreamNames subtitleNames{"n-text", "get-text-tags", GST_TAG_SUBTITLE_CODEC};

int number(GstElement* playbin, const char* property) {
    gint value = 0;
    g_object_get(playbin, property, &value, nullptr);
    return value;
}

std::string tag(GstTagList* tags, const char* name) {
    gchar* text = nullptr;
    gst_tag_list_get_string(tags, name, &text);
    const GstOwned<char> owned(text);
    return text ? text : "";
}

std::vector<Stream> list(GstElement* playbin, const StreamNames& names) {
    std::vector<Stream> streams(static_cast<size_t>(number(playbin, names.count)));
    for (size_t i = 0; i < streams.size(); ++i) {
        GstTagList* tags = nullptr;
        g_signal_emit_by_name(playbin, names.tagsSignal, static_cast<gint>(i), &tags);
        if (tags) {
            streams[i] = {tag(tags, GST_TAG_LANGUAGE_CODE), tag(tags, names.codecTag)};
            gst_tag_list_unref(tags);
        }
    }
    return streams;
}

} // namespace

Streams streamsOf(GstElement* playbin) {
    return {list(playbin, audioNames), list(playbin, subtitleNames)};
}

void chooseStreams(GstElement* playbin, const StreamChoice& choice) {
    gint flags = 0;
    g_object_get(playbin, "flags", &flags, nullptr);
    const bool shown = choice.subtitle != StreamChoice::NoSubtitle;
    g_object_set(playbin, "current-audio", choice.audio, "flags",
                 shown ? flags | SubtitleFlag : flags & ~SubtitleFlag, nullptr);
    if (shown) {
        g_object_set(playbin, "current-text", choice.subtitle, nullptr);
    }
}

bool hasPicture(GstElement* playbin) {
    return number(playbin, "n-video") > 0;
}

} // namespace zm::disc::engine
