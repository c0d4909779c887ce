#include "services/disc/engine/SoundDevice.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace zm::disc::engine {

namespace {

// As little as is safe, so that what is turned down or stopped is heard no longer than that.
constexpr gint64 BufferMicroseconds = 150'000;
constexpr gint64 PieceMicroseconds = 10'000;

struct Way {
    std::string_view name;
    const char* element;
    const char* text;
};
// In the order in which they are tried: a sound server mixes, the bare device often has room for one program.
constexpr std::array Ways = {
    Way{"pulse", "pulsesink", "the sound server"},
    Way{"alsa", "alsasink", "the default device"},
};

// Asked for a server that is not there, its library makes a folder for one and leaves it behind.
bool soundServerIsThere() {
    const auto hasSocket = [](const char* variable, const char* below) {
        const char* folder = std::getenv(variable);
        std::error_code none;
        return folder && *folder && std::filesystem::is_socket(std::filesystem::path(folder) / below, none);
    };
    const char* named = std::getenv("PULSE_SERVER");
    std::error_code none;
    return (named && *named) || hasSocket("PULSE_RUNTIME_PATH", "native") ||
           hasSocket("XDG_RUNTIME_DIR", "pulse/native") ||
           std::filesystem::is_socket("/run/pulse/native", none);
}

GstElement* open(const Way& way, const std::string& name) {
    GstElement* sink = gst_element_factory_make(way.element, nullptr);
    if (!sink) {
        return nullptr;
    }
    gst_object_ref_sink(sink);
    g_object_set(sink, "buffer-time", BufferMicroseconds, "latency-time", PieceMicroseconds, nullptr);
    if (!name.empty()) {
        g_object_set(sink, "device", name.c_str(), nullptr);
    }
    if (way.name == "pulse") {
        g_object_set(sink, "client-name", "Platen", nullptr);
    }
    if (gst_element_set_state(sink, GST_STATE_READY) == GST_STATE_CHANGE_SUCCESS) {
        return sink;
    }
    gst_element_set_state(sink, GST_STATE_NULL);
    gst_object_unref(sink);
    return nullptr;
}

} // namespace

SoundDevice openSoundDevice() {
    const char* given = std::getenv("ZM_AUDIO_DEVICE");
    const std::string device = given && *given ? given : "auto";
    const size_t colon = device.find(':');
    const std::string kind = device.substr(0, colon);
    const std::string name = colon == std::string::npos ? "" : device.substr(colon + 1);
    if (kind == "none") {
        return {nullptr, "no sound is wanted"};
    }
    for (const Way& way : Ways) {
        if (kind != way.name && (kind != "auto" || (way.name == "pulse" && !soundServerIsThere()))) {
            continue;
        }
        if (GstElement* sink = open(way, name)) {
            return {sink, name.empty() ? way.text : device};
        }
    }
    return {nullptr, kind == "auto" ? "no sound device" : "the sound device " + device + " cannot be opened"};
}

} // namespace zm::disc::engine
