#include "services/disc/DecoderEngine.h"

#include "services/disc/FeedServer.h"
#include "services/disc/Log.h"

#include <array>
#include <string_view>

namespace zm::disc {

namespace {

using wire::Json;
using wire::numberOf;
using wire::stringOf;

constexpr const char* Program = "zmdecode";

// Longer than one read's deadline, so that a slow disc is told from a decoder that hangs.
constexpr Milliseconds StartDeadline{15000};
constexpr Milliseconds WatchInterval{250};
// How long the process may be silent by itself, and when somebody wants something new of it.
constexpr Milliseconds SilenceDeadline{3000};
constexpr Milliseconds ImpatientDeadline{1000};

std::vector<Stream> streamsOf(const Json& message, const char* name) {
    std::vector<Stream> streams;
    const auto list = message.find(name);
    for (const Json& each : list != message.end() && list->is_array() ? *list : Json::array()) {
        streams.push_back({stringOf(each, "language"), stringOf(each, "format")});
    }
    return streams;
}

} // namespace

DecoderEngine::DecoderEngine(EventLoop& home, std::shared_ptr<FrameSink> frames)
    : m_home(home), m_frames(std::move(frames)), m_mailbox(std::make_shared<Mailbox>(home)) {
    launch();
    m_watch = everyInterval(m_home, WatchInterval, [this] { watch(); });
}

DecoderEngine::~DecoderEngine() {
    drop();
    m_mailbox->close();
}

// ---- the process

bool DecoderEngine::launch() {
    if (!m_frames.run()) {
        return false;
    }
    auto process = DecoderProcess::launch(m_home, m_frames, Program);
    if (!process) {
        logError("decoder: %s\n", process.error().c_str());
        return false;
    }
    m_process = std::move(*process);
    m_ready = false;
    m_asked.reset();
    m_process->onMessage = [this](const Json& message) { heard(message); };
    m_process->onEnd = [this] { replace("the decoder " + m_process->end()); };
    return true;
}

void DecoderEngine::replace(const std::string& reason) {
    logWarning("%s and is replaced\n", reason.c_str());
    const bool wasReady = m_ready;
    const bool failed = m_playing;
    drop();
    m_process.reset();
    // One that does not even begin is tried again when it is needed.
    if (wasReady) {
        launch();
    }
    if (failed) {
        failLater(reason);
    }
}

bool DecoderEngine::isSilent(Milliseconds time) const {
    const bool waitsForDrive = m_feed && m_feed->isWaiting();
    return m_process && m_asked && !waitsForDrive && Clock::now() - *m_asked > time;
}

void DecoderEngine::watch() {
    if (!m_process) {
        return;
    }
    if (isSilent(SilenceDeadline)) {
        replace("the decoder hangs");
    } else if (m_begun && Clock::now() - *m_begun > StartDeadline) {
        replace("the decoder does not answer");
    } else if (m_ready && !m_asked) {
        m_asked = Clock::now();
        tell({{"do", "answer"}});
    } else if (m_asked && m_feed && m_feed->isWaiting()) {
        m_asked = Clock::now(); // it waits for the drive, which has its own deadline
    }
}

void DecoderEngine::tell(const Json& message) {
    if (m_process) {
        m_process->send(message);
    }
}

void DecoderEngine::failLater(const std::string& reason) {
    m_mailbox->post([this, item = m_item, reason] {
        if (m_item == item && m_listener) {
            m_listener->engineFailed(reason);
        }
    });
}

// ---- what it says

void DecoderEngine::heard(const Json& message) {
    const std::string what = stringOf(message, "is");
    if (what == "ready") {
        m_ready = true;
    } else if (what == "answer") {
        m_asked.reset();
    } else if (what == "log") {
        ::slogf(LogCode, static_cast<int>(numberOf(message, "severity")), "%s",
                stringOf(message, "text").c_str());
    } else if (m_playing && static_cast<uint64_t>(numberOf(message, "item")) == m_item) {
        report(what, message);
    }
}

void DecoderEngine::report(const std::string& what, const Json& message) {
    const Milliseconds position{numberOf(message, "position")};
    const Milliseconds length{numberOf(message, "length")};
    if (what == "streams") {
        m_listener->engineStreams({streamsOf(message, "audio"), streamsOf(message, "subtitles")});
    } else if (what == "started") {
        m_begun.reset();
        m_listener->engineStarted(length);
    } else if (what == "moved") {
        m_listener->engineMoved(position, length);
    } else if (what == "ended") {
        m_playing = false;
        m_listener->engineEnded();
    } else if (what == "scanned") {
        m_listener->engineScanned(numberOf(message, "end") != 0 ? ScanEdge::End : ScanEdge::Beginning);
    } else if (what == "failed") {
        m_playing = false;
        m_begun.reset();
        m_listener->engineFailed(stringOf(message, "reason"));
    }
}

// ---- what is wanted of it

void DecoderEngine::drop() {
    ++m_item;
    m_playing = false;
    m_begun.reset();
    m_frames.expect(m_item);
    if (m_feed) {
        m_feed->cancel();
        m_feed.reset();
    }
}

void DecoderEngine::start(const Playable& playable, EngineListener& listener, Milliseconds position,
                          StartMode mode) {
    const bool silent = isSilent(ImpatientDeadline);
    drop();
    m_listener = &listener;
    if (silent) {
        replace("the decoder hangs");
    }
    if (!m_process && !launch()) {
        failLater("there is no decoder");
        return;
    }
    m_feed = std::make_shared<Feed>(playable.medium, playable.path);
    const auto bytes = serveFeed(m_feed);
    if (!bytes) {
        failLater(bytes.error());
        return;
    }
    if (playable.kind == MediaKind::Music) {
        m_frames.clear();
    }
    m_playing = true;
    m_begun = Clock::now();
    m_process->send({{"do", "start"},
                     {"item", m_item},
                     {"path", playable.path},
                     {"kind", static_cast<int>(playable.kind)},
                     {"length", playable.length.count()},
                     {"position", position.count()},
                     {"paused", mode == StartMode::Paused}},
                    {bytes->get()});
}

void DecoderEngine::pause() {
    tell({{"do", "pause"}});
}

void DecoderEngine::resume() {
    tell({{"do", "resume"}});
}

void DecoderEngine::seek(Milliseconds position) {
    tell({{"do", "seek"}, {"position", position.count()}});
}

void DecoderEngine::scan(int speed) {
    tell({{"do", "scan"}, {"speed", speed}});
}

void DecoderEngine::view(const PictureView& view) {
    tell({{"do", "view"}, {"zoom", view.zoomStep}, {"turns", view.quarterTurns}});
}

void DecoderEngine::choose(const StreamChoice& choice) {
    tell({{"do", "choose"}, {"audio", choice.audio}, {"subtitle", choice.subtitle}});
}

void DecoderEngine::stop() {
    drop();
    tell({{"do", "stop"}});
    m_frames.clear();
}

} // namespace zm::disc
