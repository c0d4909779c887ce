#include "services/disc/engine/SoundFile.h"

#include "base/UniqueFd.h"
#include "services/disc/engine/SoundTime.h"

#include <gst/audio/audio.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <string_view>
#include <vector>

namespace zm::disc::engine {

namespace {

constexpr gint64 LongestSilence = 5 * GST_SECOND;

/** Where the file ends, in the time of the system's clock. */
class SoundFile {
public:
    explicit SoundFile(UniqueFd file) : m_file(std::move(file)) {}

    void add(GstElement* sink, GstPad* pad, GstBuffer* buffer) {
        const GstOwned<GstCaps> caps(gst_pad_get_current_caps(pad));
        GstAudioInfo info;
        GstMapInfo map;
        if (!caps || !gst_audio_info_from_caps(&info, caps.get()) ||
            !gst_buffer_map(buffer, &map, GST_MAP_READ)) {
            return;
        }
        const gint64 begin = soundTime(sink, pad, buffer);
        if (m_end > 0 && begin > m_end) {
            const gint64 silent = std::min(begin - m_end, LongestSilence);
            const guint64 frames = gst_util_uint64_scale_round(static_cast<guint64>(silent),
                                                               static_cast<guint64>(info.rate), GST_SECOND);
            const std::vector<char> silence(frames * static_cast<size_t>(info.bpf));
            write({silence.data(), silence.size()});
        }
        write({reinterpret_cast<const char*>(map.data), map.size});
        const guint64 frames = map.size / static_cast<size_t>(info.bpf);
        m_end = begin + static_cast<gint64>(
                            gst_util_uint64_scale_round(frames, GST_SECOND, static_cast<guint64>(info.rate)));
        gst_buffer_unmap(buffer, &map);
    }

private:
    void write(std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t count = ::write(m_file.get(), bytes.data(), bytes.size());
            if (count <= 0) {
                return;
            }
            bytes.remove_prefix(static_cast<size_t>(count));
        }
    }

    UniqueFd m_file;
    gint64 m_end = 0;
};

} // namespace

GstElement* makeSoundFile(const std::string& path) {
    UniqueFd file(::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
    if (!file.valid()) {
        return nullptr;
    }
    ::signal(SIGXFSZ, SIG_IGN);                   // it is then as long as it may be
    auto* sound = new SoundFile(std::move(file)); // as long as the element
    GstElement* sink = gst_element_factory_make("fakesink", nullptr);
    g_object_set(sink, "sync", TRUE, "signal-handoffs", TRUE, nullptr);
    auto onSound = +[](GstElement* from, GstBuffer* buffer, GstPad* pad, gpointer to) {
        static_cast<SoundFile*>(to)->add(from, pad, buffer);
    };
    auto onEnd = +[](gpointer ended, GClosure*) { delete static_cast<SoundFile*>(ended); };
    g_signal_connect_data(sink, "handoff", G_CALLBACK(onSound), sound, onEnd, GConnectFlags{});
    return sink;
}

} // namespace zm::disc::engine
