#include "services/disc/engine/FilePipeline.h"

#include "base/Threads.h"
#include "services/disc/engine/Decoders.h"
#include "services/disc/engine/MusicBin.h"
#include "services/disc/engine/PictureTimes.h"
#include "services/disc/engine/PlaybinStreams.h"
#include "services/disc/engine/SoundOut.h"
#include "services/disc/log/Log.h"

#include <algorithm>
#include <ctime>
#include <string_view>

namespace zm::disc::engine {

namespace {

constexpr Milliseconds Tick{250};
// Pictures of a scan follow each other as fast as the eye takes them for movement.
constexpr Milliseconds ScanTick{125};
// A scan this close to the end counts as having reached it.
constexpr Milliseconds EndMargin{1000};

// How long nothing may be read before a start that has met an error is over, and how long before one that
// does not even decode.
constexpr Milliseconds QuietAfterError{500};
constexpr Milliseconds QuietStart{1500};
// What a decoder at work uses of QuietStart at the very least.
constexpr Milliseconds WorkTime{20};

// Flags of "playbin". Native sound: the player's own elements for it lose a volume control with each file.
// Native video keeps photos from being scaled before they are ours; with it no subtitle could be drawn.
constexpr int VideoFlags = 0x01 | 0x02 | 0x04 | 0x20;
constexpr int PhotoFlags = 0x01 | 0x40;

constexpr const char* ScalingDecoder = "avdec_mjpeg";
constexpr const char* MpegParser = "mpegvideoparse";

Milliseconds processorTime() {
    timespec used{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return std::chrono::duration_cast<Milliseconds>(std::chrono::seconds(used.tv_sec) +
                                                    std::chrono::nanoseconds(used.tv_nsec));
}

Milliseconds fromClock(gint64 time) {
    return std::chrono::duration_cast<Milliseconds>(std::chrono::nanoseconds(std::max<gint64>(0, time)));
}

gint64 toClock(Milliseconds time) {
    return std::chrono::nanoseconds(time).count();
}

std::string errorText(GstMessage* message) {
    GError* error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    const GstOwned<GError> owned(error);
    return error ? error->message : "cannot be decoded";
}

} // namespace

FilePipeline::FilePipeline(EventLoop& loop, Listener& listener, FrameSink& frames, const Playable& playable,
                           std::shared_ptr<ByteFeed> feed)
    : m_loop(loop), m_listener(listener), m_frames(frames), m_playable(playable),
      m_source(std::make_shared<FileSource>(std::move(feed), playable.kind)),
      m_mailbox(std::make_shared<Mailbox>(loop)) {}

FilePipeline::~FilePipeline() {
    m_mailbox->close();
    followNothing();
    if (m_music) {
        m_music->cancelNext();
    }
    m_source->cancel();
    m_bus.reset();
    if (m_player) {
        endPlayer(m_player.get());
    }
}

void FilePipeline::start(Milliseconds position, StartMode mode) {
    m_first = position;
    m_mode = mode;
    if (const auto status = m_source->open(); !status) {
        fail(status.error());
        return;
    }
    run();
}

void FilePipeline::run() {
    setSoundChannel(SoundChannel::Both);
    if (!build()) {
        fail("no decoder installed");
        return;
    }
    listen();
    watchStart();
    if (gst_element_set_state(m_player.get(), GST_STATE_PAUSED) == GST_STATE_CHANGE_FAILURE) {
        fail("cannot be decoded");
    }
}

bool FilePipeline::build() {
    return m_playable.kind == model::MediaKind::Music ? buildMusic() : buildPicture();
}

bool FilePipeline::buildMusic() {
    m_player.reset(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
    m_music.emplace(m_player.get());
    return m_music->begin(m_source);
}

bool FilePipeline::buildPicture() {
    GstElement* playbin = gst_element_factory_make("playbin", nullptr);
    if (!playbin) {
        return false;
    }
    m_player.reset(GST_ELEMENT(gst_object_ref_sink(playbin)));
    const bool photo = m_playable.kind == model::MediaKind::Photo;
    m_picture.emplace(m_frames, photo ? PictureKind::Photo : PictureKind::Film);
    if (!m_picture->element()) {
        return false;
    }
    auto onPart =
        +[](GstElement*, GstElement* part, gpointer self) { static_cast<FilePipeline*>(self)->setUp(part); };
    g_signal_connect(playbin, "element-setup", G_CALLBACK(onPart), this);
    // Every sink is named, as the player would look for one by itself.
    g_object_set(playbin, "uri", FileElementUri, "flags", photo ? PhotoFlags : VideoFlags, "audio-sink",
                 makeSoundSink(), "video-sink", m_picture->element(), nullptr);
    auto onSource = +[](GstElement*, GstElement* source, gpointer self) {
        giveBytes(source, *static_cast<FilePipeline*>(self)->m_source);
    };
    g_signal_connect(playbin, "source-setup", G_CALLBACK(onSource), this);
    return true;
}

void FilePipeline::setUp(GstElement* part) {
    const GstElementFactory* factory = gst_element_get_factory(part);
    const std::string_view name = factory ? gst_plugin_feature_get_name(factory) : "";
    if (name == MpegParser) {
        PictureTimes::attach(part);
    } else if (name == ScalingDecoder && m_playable.kind == model::MediaKind::Photo) {
        // A large JPEG becomes smaller while it is decoded.
        g_object_set(part, "lowres", static_cast<int>(m_source->photo().halvings), nullptr);
    }
}

// An error or an end that never arrives must not be waited for until somebody loses patience.
void FilePipeline::watchStart() {
    m_startWatch =
        everyInterval(m_loop, Tick, [this, before = processorTime(), quiet = Milliseconds{0}]() mutable {
            if (m_started || m_over) {
                m_startWatch.reset();
            } else if (!m_keptError.empty() && m_source->isQuiet(QuietAfterError)) {
                fail(m_keptError);
            } else if (const auto used = processorTime();
                       !m_source->isQuiet(Tick) || used - before > WorkTime) {
                before = used;
                quiet = {};
            } else if ((quiet += Tick) >= QuietStart) {
                fail("holds nothing that can be decoded");
            }
        });
}

void FilePipeline::listen() {
    const GstOwned<GstBus> bus(gst_element_get_bus(m_player.get()));
    GSource* watch = gst_bus_create_watch(bus.get());
    GstBusFunc onMessage = [](GstBus*, GstMessage* message, gpointer self) -> gboolean {
        static_cast<FilePipeline*>(self)->receive(message);
        return G_SOURCE_CONTINUE;
    };
    g_source_set_callback(watch, G_SOURCE_FUNC(onMessage), this, nullptr);
    g_source_attach(watch, m_loop.context());
    m_bus = SourceHandle(watch);
}

void FilePipeline::receive(GstMessage* message) {
    if (m_over || (m_music && m_music->handle(message))) {
        return;
    }
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ERROR:
        meetError(errorText(message));
        break;
    case GST_MESSAGE_ELEMENT:
        if (const char* error = musicError(message)) {
            meetError(error);
            break;
        }
        noteMissing(message);
        noteKeptError(message);
        awaitNext();
        break;
    case GST_MESSAGE_ASYNC_DONE:
        prerolled();
        break;
    case GST_MESSAGE_EOS:
        ended();
        break;
    case GST_MESSAGE_LATENCY:
        gst_bin_recalculate_latency(GST_BIN(m_player.get()));
        break;
    default:
        break;
    }
}

void FilePipeline::meetError(const std::string& text) {
    passToNext(); // if it is that one's
    fail(!m_source->failure().empty() ? m_source->failure() : !m_missing.empty() ? missingDecoders() : text);
}

void FilePipeline::prerolled() {
    m_seeking = false;
    if (m_started) {
        if (m_scanSpeed == 0 && m_playable.kind != model::MediaKind::Photo) {
            report();
        }
        return;
    }
    if (m_playable.kind == model::MediaKind::Video) {
        if (!m_missing.empty() && !hasPicture(m_player.get())) {
            fail(missingDecoders());
            return;
        }
        // Subtitles are off until somebody asks for them; but their way is only laid with the first picture.
        chooseStreams(m_player.get(), {});
        m_listener.engineStreams(streamsOf(m_player.get()));
    }
    m_started = true;
    m_lengthBefore = length();
    m_listener.engineStarted(m_lengthBefore);
    if (m_first > Milliseconds{0}) {
        jump(m_first, Precision::Exact);
    }
    if (m_mode == StartMode::Playing) {
        resume();
    }
}

// A file with some decodable stream plays all the same, so that this is not a failure yet.
void FilePipeline::noteMissing(GstMessage* message) {
    const GstStructure* content = gst_message_get_structure(message);
    if (!gst_structure_has_name(content, "missing-plugin")) {
        return;
    }
    const char* name = gst_structure_get_string(content, "name");
    m_missing += (m_missing.empty() ? "" : ", ") + std::string(name ? name : "an unknown format");
    logWarning("%s: not installed: %s\n", m_playable.path.c_str(), name ? name : "a decoder");
}

void FilePipeline::noteKeptError(GstMessage* message) {
    const GstStructure* content = gst_message_get_structure(message);
    if (m_keptError.empty() && gst_structure_has_name(content, KeptErrorName)) {
        m_keptError = gst_structure_get_string(content, KeptErrorText);
    }
}

std::string FilePipeline::missingDecoders() const {
    return "not installed: " + m_missing;
}

void FilePipeline::ended() {
    if (m_playable.kind == model::MediaKind::Photo && m_source->failure().empty()) {
        return; // it stands there until somebody goes on
    }
    passToNext();
    if (!m_source->failure().empty()) {
        fail(m_source->failure());
        return;
    }
    if (length() == Milliseconds{0} && position() == Milliseconds{0}) {
        fail("holds nothing to play");
        return;
    }
    m_over = true;
    m_clock.reset();
    m_listener.engineEnded();
}

void FilePipeline::fail(const std::string& reason) {
    m_over = true;
    m_clock.reset();
    m_listener.engineFailed(reason);
}

void FilePipeline::report() {
    m_lengthBefore = length();
    m_listener.engineMoved(position(), m_lengthBefore);
}

void FilePipeline::pause() {
    m_mode = StartMode::Paused;
    m_clock.reset();
    m_scanSpeed = 0;
    if (m_started && !m_over) {
        gst_element_set_state(m_player.get(), GST_STATE_PAUSED);
    }
}

void FilePipeline::resume() {
    m_mode = StartMode::Playing;
    if (!m_started || m_over) {
        return;
    }
    if (m_scanSpeed != 0) {
        m_scanSpeed = 0;
        jump(m_scanPosition, Precision::KeyFrame);
    }
    gst_element_set_state(m_player.get(), GST_STATE_PLAYING);
    if (m_playable.kind != model::MediaKind::Photo) {
        m_clock = everyInterval(m_loop, Tick, [this] { report(); });
        awaitNext();
    }
}

void FilePipeline::seek(Milliseconds position) {
    m_scanPosition = position;
    followNothing();
    if (!m_started) {
        m_first = position;
    } else if (!m_over && !comeBack(position)) {
        jump(position, Precision::Exact);
    }
}

void FilePipeline::scan(int speed) {
    followNothing();
    if (!m_started || m_over || comeBack(position())) {
        return;
    }
    if (m_scanSpeed == 0) {
        m_scanPosition = position();
        gst_element_set_state(m_player.get(), GST_STATE_PAUSED);
    }
    m_scanSpeed = speed;
    m_clock = everyInterval(m_loop, ScanTick, [this] { scanStep(); });
}

void FilePipeline::scanStep() {
    const Milliseconds last = std::max(length() - EndMargin, Milliseconds{0});
    m_scanPosition += m_scanSpeed * ScanTick;
    const bool beginning = m_scanPosition <= Milliseconds{0};
    const bool end = last > Milliseconds{0} && m_scanPosition >= last;
    if (beginning || end) {
        m_scanPosition = beginning ? Milliseconds{0} : last;
        m_clock.reset();
        m_listener.engineScanned(beginning ? ScanEdge::Beginning : ScanEdge::End);
        return;
    }
    // A step that is still being decoded is not overtaken; the position goes on in its own time.
    if (!m_seeking) {
        jump(m_scanPosition, Precision::KeyFrame);
    }
    m_listener.engineMoved(m_scanPosition, length());
}

void FilePipeline::view(const PictureView& view) {
    if (!m_picture || !m_started || m_over) {
        return;
    }
    m_picture->view(view);
    if (m_playable.kind == model::MediaKind::Photo) {
        // A photo gives its one picture only when it is decoded anew.
        gst_element_set_state(m_player.get(), GST_STATE_READY);
        gst_element_set_state(m_player.get(), GST_STATE_PAUSED);
    } else if (m_mode == StartMode::Paused) {
        jump(position(), Precision::Exact);
    }
}

void FilePipeline::choose(const StreamChoice& choice) {
    if (m_started && !m_over) {
        setSoundChannel(choice.channel);
        const StreamChoice before = std::exchange(m_choice, choice);
        if (before.audio == choice.audio && before.subtitle == choice.subtitle) {
            return;
        }
        chooseStreams(m_player.get(), choice);
        if (m_scanSpeed == 0) {
            jump(position(), Precision::Exact);
        }
    }
}

bool FilePipeline::jump(Milliseconds position, Precision precision) {
    const int how = precision == Precision::Exact ? GST_SEEK_FLAG_ACCURATE
                                                  : GST_SEEK_FLAG_KEY_UNIT | GST_SEEK_FLAG_SNAP_BEFORE;
    m_target = position;
    m_seeking = gst_element_seek(m_player.get(), 1.0, GST_FORMAT_TIME,
                                 static_cast<GstSeekFlags>(GST_SEEK_FLAG_FLUSH | how), GST_SEEK_TYPE_SET,
                                 toClock(position), GST_SEEK_TYPE_NONE, -1);
    return m_seeking;
}

// ---- what follows

bool FilePipeline::follow(const Playable& playable, std::shared_ptr<ByteFeed> feed) {
    followNothing();
    const bool possible = m_music && m_started && !m_over && !m_music->passedOn();
    if (!possible) {
        return false;
    }
    m_next = playable;
    m_opening = std::make_shared<FileSource>(std::move(feed), playable.kind);
    const auto begun = runInBackground([this, source = m_opening, mailbox = m_mailbox] {
        const bool opened = static_cast<bool>(source->open());
        mailbox->post([this, source, opened] {
            if (m_opening == source) {
                prepareNext(opened);
            }
        });
    });
    return static_cast<bool>(begun);
}

void FilePipeline::followNothing() {
    if (m_opening) {
        m_opening->cancel();
        m_opening.reset();
    }
    if (m_music) {
        m_music->forget();
    }
}

// What cannot be opened is told when its turn has come.
void FilePipeline::prepareNext(bool opened) {
    const auto source = std::exchange(m_opening, nullptr);
    if (opened && !m_over) {
        m_music->prepare(source);
    }
}

// Decoding has passed on; the current file is still heard.
void FilePipeline::awaitNext() {
    if (!m_music || !m_music->passedOn() || m_mode == StartMode::Paused || m_over) {
        return;
    }
    const Milliseconds left = m_music->left();
    if (left > Milliseconds{0}) {
        m_passing = afterDelay(m_loop, left, [this] { awaitNext(); });
    } else {
        passToNext();
    }
}

void FilePipeline::passToNext() {
    if (!m_music || !m_music->passedOn()) {
        return;
    }
    m_passing.reset();
    m_source->cancel();
    m_source = m_music->pass();
    m_playable = m_next;
    m_missing.clear();
    m_keptError.clear();
    m_lengthBefore = length();
    m_listener.engineFollowed(m_lengthBefore);
}

// Where decoding has passed on the file is not there any more and is begun anew.
bool FilePipeline::comeBack(Milliseconds position) {
    if (!m_music || !m_music->passedOn()) {
        return false;
    }
    m_passing.reset();
    m_clock.reset();
    m_bus.reset();
    m_music->cancelNext();
    endPlayer(m_player.get());
    m_music.reset();
    m_started = false;
    m_scanSpeed = 0;
    m_first = position;
    run();
    return true;
}

Milliseconds FilePipeline::position() const {
    if (m_music && m_music->passedOn()) {
        return std::max(m_lengthBefore - m_music->left(), Milliseconds{0});
    }
    if (m_seeking) {
        return m_target;
    }
    gint64 time = 0;
    gst_element_query_position(m_player.get(), GST_FORMAT_TIME, &time);
    return fromClock(time);
}

Milliseconds FilePipeline::length() const {
    if (m_music && m_music->passedOn()) {
        return m_lengthBefore;
    }
    gint64 time = 0;
    const bool known = gst_element_query_duration(m_player.get(), GST_FORMAT_TIME, &time) && time > 0;
    return known ? fromClock(time) : m_playable.length;
}

} // namespace zm::disc::engine
