#include "services/filmer/FilmFile.h"

#include <gst/app/gstappsrc.h>
#include <gst/gst.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace zm::filmer {

namespace {

// The fastest way of encoding that still draws edges of letters sharp; a whole picture every two seconds.
constexpr const char* Description =
    "webmmux name=mux writing-app=Platen ! fdsink name=file sync=false "
    "appsrc name=picture format=time max-bytes=0 ! videoconvert n-threads=1 "
    "! vp8enc deadline=1 cpu-used=8 threads=1 lag-in-frames=0 end-usage=vbr target-bitrate=2500000 "
    "min-quantizer=4 max-quantizer=48 keyframe-max-dist=60 static-threshold=100 ! queue ! mux. "
    "appsrc name=sound format=time max-bytes=0 ! audioconvert ! audioresample "
    "! audio/x-raw,rate=48000,channels=2 ! opusenc bitrate=128000 ! queue ! mux.";

constexpr GstClockTime CompletionTime = 20 * GST_SECOND;

GstCaps* pictureFormat(const ScreenSize& screen) {
    return gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "BGRx", "width", G_TYPE_INT,
                               screen.width, "height", G_TYPE_INT, screen.height, "framerate",
                               GST_TYPE_FRACTION, 30, 1, nullptr);
}

GstCaps* soundFormat(uint32_t rate) {
    return gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, "S16LE", "layout", G_TYPE_STRING,
                               "interleaved", "channels", G_TYPE_INT, 2, "rate", G_TYPE_INT,
                               static_cast<int>(rate), nullptr);
}

// Opened last of all: what cannot be filmed leaves no file behind. A file that is replaced goes on for whoever reads it.
Result<UniqueFd> openFile(const std::string& path, Existing existing) {
    struct stat info {};
    if (::lstat(path.c_str(), &info) == 0) {
        if (existing == Existing::Refused) {
            return Error{path + ": there is such a file; --overwrite replaces it"};
        }
        if (!S_ISREG(info.st_mode)) {
            return Error{path + ": no plain file, so it is not replaced"};
        }
        if (::unlink(path.c_str()) != 0) {
            return systemError(path);
        }
    }
    UniqueFd fd(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_EXCL, 0666));
    return fd.valid() ? Result<UniqueFd>(std::move(fd)) : systemError(path);
}

} // namespace

Result<std::unique_ptr<FilmFile>> FilmFile::create(const std::string& path, Existing existing,
                                                   ScreenSize screen) {
    GError* error = nullptr;
    GstElement* pipeline = gst_parse_launch_full(Description, nullptr, GST_PARSE_FLAG_FATAL_ERRORS, &error);
    if (!pipeline) {
        const std::string why = error ? error->message : "unknown";
        g_clear_error(&error);
        return Error{"films need the plugins of gstreamer1.0-plugins-base and -good: " + why};
    }
    auto fd = openFile(path, existing);
    if (!fd) {
        gst_object_unref(pipeline);
        return fd.failure();
    }
    return std::unique_ptr<FilmFile>(new FilmFile(path, std::move(*fd), pipeline, screen));
}

FilmFile::FilmFile(std::string path, UniqueFd fd, GstElement* pipeline, ScreenSize screen)
    : m_path(std::move(path)), m_fd(std::move(fd)), m_pipeline(pipeline) {
    g_autoptr(GstElement) file = source("file");
    g_object_set(file, "fd", m_fd.get(), nullptr);
    g_autoptr(GstElement) picture = source("picture");
    g_autoptr(GstCaps) format = pictureFormat(screen);
    gst_app_src_set_caps(GST_APP_SRC(picture), format);
    gst_element_set_state(m_pipeline, GST_STATE_PLAYING);
}

FilmFile::~FilmFile() {
    gst_element_set_state(m_pipeline, GST_STATE_NULL);
    gst_object_unref(m_pipeline);
}

GstElement* FilmFile::source(const char* name) const {
    return gst_bin_get_by_name(GST_BIN(m_pipeline), name);
}

void FilmFile::addPicture(std::shared_ptr<const Image> picture, film::Moment time) {
    auto* held = new std::shared_ptr<const Image>(std::move(picture));
    const auto& pixels = (*held)->pixels;
    GstBuffer* buffer = gst_buffer_new_wrapped_full(
        GST_MEMORY_FLAG_READONLY, const_cast<uint8_t*>(pixels.data()), pixels.size(), 0, pixels.size(), held,
        [](gpointer owner) { delete static_cast<std::shared_ptr<const Image>*>(owner); });
    GST_BUFFER_PTS(buffer) = static_cast<GstClockTime>(time);
    GST_BUFFER_DURATION(buffer) = GST_SECOND / 30;
    g_autoptr(GstElement) to = source("picture");
    gst_app_src_push_buffer(GST_APP_SRC(to), buffer);
}

void FilmFile::addSound(uint32_t rate, std::span<const int16_t> samples, film::Moment time) {
    g_autoptr(GstElement) to = source("sound");
    if (m_rate != rate) {
        m_rate = rate;
        g_autoptr(GstCaps) format = soundFormat(rate);
        gst_app_src_set_caps(GST_APP_SRC(to), format);
    }
    GstBuffer* buffer = gst_buffer_new_memdup(samples.data(), samples.size_bytes());
    GST_BUFFER_PTS(buffer) = static_cast<GstClockTime>(time);
    GST_BUFFER_DURATION(buffer) = gst_util_uint64_scale(samples.size() / 2, GST_SECOND, rate);
    gst_app_src_push_buffer(GST_APP_SRC(to), buffer);
}

std::string FilmFile::sentence(void* errorMessage) const {
    g_autoptr(GError) error = nullptr;
    g_autofree char* details = nullptr;
    gst_message_parse_error(static_cast<GstMessage*>(errorMessage), &error, &details);
    if (g_error_matches(error, GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_NO_SPACE_LEFT)) {
        return m_path + ": no space left on the device";
    }
    const std::string more = details ? details : "";
    // The library's first sentence does not say what the system said.
    const size_t system = more.find("system error: ");
    const std::string why =
        system == std::string::npos ? std::string(error->message) : more.substr(system + 14);
    return m_path + ": " + why.substr(0, why.find('\n'));
}

std::optional<std::string> FilmFile::failure() {
    g_autoptr(GstBus) bus = gst_element_get_bus(m_pipeline);
    g_autoptr(GstMessage) message = gst_bus_pop_filtered(bus, GST_MESSAGE_ERROR);
    return message ? std::optional(sentence(message)) : std::nullopt;
}

Status FilmFile::finish() {
    for (const char* name : {"picture", "sound"}) {
        g_autoptr(GstElement) each = source(name);
        gst_app_src_end_of_stream(GST_APP_SRC(each));
    }
    g_autoptr(GstBus) bus = gst_element_get_bus(m_pipeline);
    g_autoptr(GstMessage) message = gst_bus_timed_pop_filtered(
        bus, CompletionTime, static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    if (!message) {
        return Error{m_path + ": could not be completed in time"};
    }
    return GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR ? Status(Error{sentence(message)}) : ok();
}

} // namespace zm::filmer
