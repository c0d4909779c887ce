#include "services/bench/screen/VideoService.h"

#include "platform/linux/pps/PpsFile.h"
#include "platform/linux/pps/PpsPath.h"
#include "services/bench/screen/Compositor.h"
#include "sys/pps.h"

#include <optional>

namespace zm::bench::screen {

namespace {

constexpr char CommandObject[] = "/pps/zelmar/videoservice/command?delta";
constexpr char StatusObject[] = "/pps/zelmar/videoservice/status";
constexpr std::chrono::milliseconds ReconnectPause(100);

// What the application asks for: which child window of which group shows which source.
struct Capture {
    std::string status;
    std::string group;
    std::string child;
    std::string source;
    bool sameWindow(const Capture& other) const { return group == other.group && child == other.child; }
};

// Member names of "zmvideo", in the order in which they are written.
struct Member {
    const char* name;
    std::string Capture::*text;
};
constexpr Member Members[] = {{"status", &Capture::status},
                              {"wndgp_id", &Capture::group},
                              {"wnd_id", &Capture::child},
                              {"src", &Capture::source}};

std::optional<Capture> parseCapture(const char* json) {
    pps_decoder_t decoder{};
    pps_decoder_initialize(&decoder, nullptr);
    pps_decoder_parse_json_str(&decoder, json);
    pps_decoder_push(&decoder, nullptr);
    Capture result;
    for (const auto& member : Members) {
        const char* text = "";
        pps_decoder_get_string(&decoder, member.name, &text);
        result.*member.text = text;
    }
    const bool good = pps_decoder_status(&decoder, false) == PPS_DECODER_OK;
    pps_decoder_cleanup(&decoder);
    return good ? std::optional(result) : std::nullopt;
}

std::string statusText(const Capture& capture) {
    pps_encoder_t encoder{};
    pps_encoder_initialize(&encoder, false);
    pps_encoder_start_object(&encoder, "@status");
    pps_encoder_start_object(&encoder, "zmdisc");
    pps_encoder_add_int(&encoder, "valid", 1);
    pps_encoder_add_string(&encoder, "type", "video");
    pps_encoder_end_object(&encoder);
    pps_encoder_start_object(&encoder, "zmvideo");
    for (const auto& member : Members) {
        pps_encoder_add_string(&encoder, member.name, (capture.*member.text).c_str());
    }
    pps_encoder_end_object(&encoder);
    pps_encoder_end_object(&encoder);
    const char* buffer = pps_encoder_buffer(&encoder);
    const std::string result = buffer ? buffer : "";
    pps_encoder_cleanup(&encoder);
    return result;
}

} // namespace

struct VideoService::Impl {
    VideoService& owner;
    EventLoop& loop;
    Compositor& compositor;
    std::string socket;
    std::optional<PpsFile> command;
    std::optional<PpsFile> status;
    int watched = -1;
    SourceHandle watch;
    SourceHandle retry;
    std::optional<Capture> current; ///< while a child window is posted

    void publish(const Capture& capture) {
        // If the PPS service has gone, nobody is left to be told.
        static_cast<void>(status->write(statusText(capture)));
    }

    void withdraw() {
        compositor.withdrawChild(current->child);
        if (owner.onChildWithdrawn) {
            owner.onChildWithdrawn(current->group, current->child);
        }
        current.reset();
    }

    void begin(const Capture& capture) {
        if (current && !current->sameWindow(capture)) {
            withdraw();
        }
        if (!current) {
            current = capture;
            const unsigned window = compositor.postChild(capture.child);
            if (owner.onChildPosted) {
                owner.onChildPosted(capture.group, capture.child, window);
            }
        }
        publish(capture);
    }

    void end(const Capture& capture) {
        // The late "off" of an application that has ended must not take away its successor's window.
        if (current && current->sameWindow(capture)) {
            withdraw();
        }
        publish(capture);
    }

    void execute(const Capture& capture) {
        struct Request {
            const char* status;
            void (Impl::*run)(const Capture&);
        };
        constexpr Request Requests[] = {{"on", &Impl::begin}, {"off", &Impl::end}};
        for (const auto& request : Requests) {
            if (capture.status == request.status) {
                (this->*request.run)(capture);
            }
        }
    }

    void follow() {
        const int fd = command->pollFd();
        if (fd < 0) {
            watch.reset();
            watched = -1;
            retry = afterDelay(loop, ReconnectPause, [this] { follow(); });
        } else if (fd != watched) {
            watched = fd;
            watch = watchFd(loop, fd, IoEvent::Readable, [this] { readReady(); });
        }
    }

    void readReady() {
        auto text = command->read();
        if (text) {
            executeAll(*text);
        }
        follow();
    }

    void executeAll(std::string& text) {
        constexpr const char* Names[] = {"zmvideo", nullptr};
        pps_attrib_t info{};
        char* position = text.data();
        for (pps_status_t kind; (kind = ppsparse(&position, nullptr, Names, &info, 0)) != PPS_END;) {
            if (kind == PPS_ATTRIBUTE && info.attr_index == 0 && info.encoding == std::string_view("json")) {
                if (const auto capture = parseCapture(info.value)) {
                    execute(*capture);
                }
            }
        }
    }
};

VideoService::VideoService(EventLoop& loop, Compositor& compositor, std::string ppsSocket)
    : m_impl(new Impl{*this, loop, compositor, std::move(ppsSocket), {}, {}, -1, {}, {}, {}}) {}

VideoService::~VideoService() = default;

Status VideoService::start() {
    auto command = PpsFile::open(m_impl->socket, CommandObject, PpsReadOnly | PpsCreate, 0666);
    auto status = PpsFile::open(m_impl->socket, StatusObject, PpsWriteOnly | PpsCreate, 0666);
    if (!command || !status) {
        return Error{command ? status.error() : command.error()};
    }
    m_impl->command = std::move(*command);
    m_impl->status = std::move(*status);
    // The first read gives the present state only: from here on no request is skipped.
    m_impl->readReady();
    return ok();
}

void VideoService::applicationGone() {
    if (m_impl->current) {
        Capture ended = *m_impl->current;
        ended.status = "off";
        m_impl->end(ended);
    }
}

} // namespace zm::bench::screen
