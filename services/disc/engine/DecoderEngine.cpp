#include "services/disc/engine/DecoderEngine.h"

#include "services/disc/engine/FeedServer.h"
#include "services/disc/log/Log.h"

#include <nlohmann/json.hpp>

#include <array>
#include <string_view>

namespace zm::disc::engine {

namespace {

using wire::Json;
using wire::numberOf;
using wire::stringOf;

// Longer than one read's deadline, so that a slow disc is told from a decoder that hangs.
constexpr Milliseconds StartDeadline{15000};
constexpr Milliseconds WatchInterval{250};
// So that the decoder is not told of an end that is not the disc's.
constexpr Milliseconds FeedMargin{50};
// How long the process may be silent, how long while it takes down what it has played, and how long if there
// is none to take its place at once. Decoders are known to wait for themselves while they are taken down.
constexpr Milliseconds SilenceDeadline{1000};
constexpr Milliseconds TakeDownDeadline{300};
constexpr Milliseconds PatientDeadline{3000};
// Within this time the same item is not tried again.
constexpr Milliseconds RetryInterval{10000};
// How long a song that plays may stay where it is. Twice that is less than the interval above.
constexpr Milliseconds StandStillDeadline{4000};

std::vector<Stream> streamsOf(const Json& message, const char* name) {
    std::vector<Stream> streams;
    const auto list = message.find(name);
    for (const Json& each : list != message.end() && list->is_array() ? *list : Json::array()) {
        streams.push_back({stringOf(each, "language"), stringOf(each, "format")});
    }
    return streams;
}

// A photo with a hole in it is none.
std::shared_ptr<Feed> feedOf(const Playable& playable) {
    const auto scratch =
        playable.kind == model::MediaKind::Photo ? Feed::Scratch::Fails : Feed::Scratch::IsPassedOver;
    return std::make_shared<Feed>(playable.medium, playable.path, scratch);
}

// The part of its file that `playable` is, as the decoder takes it; null for all of it.
Json cutOf(const Playable& playable) {
    const auto cut = playable.medium->cut(playable.path);
    if (!cut) {
        return nullptr;
    }
    Json json{{"first", cut->first}, {"silence", cut->silence}};
    if (cut->count) {
        json["count"] = *cut->count;
    }
    return json;
}

} // namespace

DecoderEngine::DecoderEngine(EventLoop& home, std::shared_ptr<FrameSink> frames)
    : m_home(home), m_frames(std::move(frames)), m_mailbox(std::make_shared<Mailbox>(home)), m_spare(home) {
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
    auto process = m_spare.take();
    if (!process) {
        logError("decoder: %s\n", process.error().c_str());
        return false;
    }
    m_process = std::move(*process);
    m_process->onMessage = [this](const Json& message) { heard(message); };
    m_process->onEnd = [this] { replace("the decoder " + m_process->end(), mayTryAgain()); };
    m_process->showIn(m_frames);
    sendLoudness();
    tell({{"do", "lock in"}});
    return true;
}

bool DecoderEngine::mayTryAgain() {
    if (m_takingDown) {
        return true; // the item has not even begun
    }
    const auto now = Clock::now();
    const bool again = !m_retried || now - *m_retried > RetryInterval;
    m_retried = now;
    return again;
}

void DecoderEngine::replace(const std::string& reason, bool again) {
    logWarning("%s and is replaced\n", reason.c_str());
    const bool wasReady = std::exchange(m_ready, false);
    auto item = std::exchange(m_item, std::nullopt);
    drop();
    m_takingDown = false;
    m_silence.reset();
    m_process.reset();
    // One that does not even begin is tried again when it is needed.
    const bool replaced = wasReady && launch();
    if (item && again && replaced) {
        m_item = std::move(item);
        begin();
    } else if (item) {
        failLater(reason);
    }
}

void DecoderEngine::watch() {
    if (m_begun && Clock::now() - *m_begun > StartDeadline) {
        replace("the decoder does not answer", false);
    } else if (standsStill()) {
        replace("the sound stands still: the decoder", mayTryAgain());
    } else if (m_ready && !m_silence.active()) {
        ask(m_spare.isWarm() ? SilenceDeadline : PatientDeadline);
    }
}

// A decoder that lives may all the same wait for something that never comes. A slow drive has its own deadline.
bool DecoderEngine::standsStill() {
    const bool moves = m_item && m_item->started && m_item->playable.kind == model::MediaKind::Music &&
                       m_item->mode == StartMode::Playing && m_item->scanSpeed == 0;
    if (!moves || (m_feed && m_feed->isWaiting())) {
        m_moved = Clock::now();
    }
    return Clock::now() - m_moved > StandStillDeadline;
}

void DecoderEngine::ask(Milliseconds patience) {
    tell({{"do", "answer"}, {"number", ++m_questions}});
    m_silence = afterDelay(m_home, patience, [this, patience] { silent(patience); });
}

void DecoderEngine::silent(Milliseconds patience) {
    if (!m_takingDown && m_feed && m_feed->isWaiting()) {
        // It waits for the drive, which has its own deadline.
        m_silence = afterDelay(m_home, patience, [this, patience] { silent(patience); });
        return;
    }
    replace("the decoder hangs", mayTryAgain());
}

void DecoderEngine::tell(const Json& message) {
    if (m_process) {
        m_process->send(message);
    }
}

void DecoderEngine::failLater(const std::string& reason) {
    m_mailbox->post([this, number = m_number, reason] {
        if (m_number == number && m_listener) {
            m_listener->engineFailed(reason);
        }
    });
}

// ---- what it says

void DecoderEngine::heard(const Json& message) {
    const std::string what = stringOf(message, "is");
    if (what == "ready") {
        m_ready = true;
        m_spare.prepare();
    } else if (what == "answer") {
        if (numberOf(message, "number") == m_questions) {
            m_silence.reset();
            m_takingDown = false;
        }
    } else if (what == "log") {
        ::slogf(log::LogCode, static_cast<int>(numberOf(message, "severity")), "%s",
                stringOf(message, "text").c_str());
    } else if (m_item && static_cast<uint64_t>(numberOf(message, "item")) == m_number) {
        report(what, message);
    }
}

void DecoderEngine::report(const std::string& what, const Json& message) {
    const Milliseconds position{numberOf(message, "position")};
    const Milliseconds length{numberOf(message, "length")};
    if (what == "streams") {
        if (!m_item->started) {
            m_listener->engineStreams({streamsOf(message, "audio"), streamsOf(message, "subtitles")});
        }
    } else if (what == "started") {
        m_begun.reset();
        if (std::exchange(m_item->started, true)) {
            goOn();
        } else {
            m_listener->engineStarted(length);
        }
    } else if (what == "moved") {
        if (std::exchange(m_item->position, position) != position) {
            m_moved = Clock::now();
        }
        m_listener->engineMoved(position, length);
    } else if (what == "ended") {
        forgetNext();
        m_item.reset();
        m_listener->engineEnded();
    } else if (what == "followed") {
        followed(message);
    } else if (what == "scanned") {
        m_listener->engineScanned(numberOf(message, "end") != 0 ? ScanEdge::End : ScanEdge::Beginning);
    } else if (what == "failed") {
        m_item.reset();
        m_begun.reset();
        takeDown(); // before the next item needs it
        m_listener->engineFailed(stringOf(message, "reason"));
    }
}

// ---- what is wanted of it

void DecoderEngine::drop() {
    endFade();
    ++m_number;
    m_item.reset();
    m_begun.reset();
    m_frames.expect(m_number);
    forgetNext();
    if (m_feed) {
        m_feed->cancel();
        m_feed.reset();
    }
}

void DecoderEngine::takeDown() {
    tell({{"do", "stop"}});
    if (m_ready && !m_takingDown) {
        m_takingDown = true;
        ask(m_spare.isWarm() ? TakeDownDeadline : PatientDeadline);
    }
}

void DecoderEngine::start(const Playable& playable, Listener& listener, Milliseconds position,
                          StartMode mode) {
    drop();
    m_listener = &listener;
    m_retried.reset();
    if (!m_process && !launch()) {
        failLater("there is no decoder");
        return;
    }
    takeDown();
    Item item;
    item.playable = playable;
    item.position = position;
    item.mode = mode;
    m_item = std::move(item);
    if (playable.kind == model::MediaKind::Music) {
        m_frames.clear();
    }
    begin();
}

void DecoderEngine::begin() {
    const Playable& playable = m_item->playable;
    m_feed = feedOf(playable);
    const auto bytes = serveFeed(m_feed);
    if (!bytes) {
        m_item.reset();
        failLater(bytes.error());
        return;
    }
    m_begun = Clock::now();
    m_process->send({{"do", "start"},
                     {"item", m_number},
                     {"path", playable.path},
                     {"kind", static_cast<int>(playable.kind)},
                     {"length", playable.length.count()},
                     {"cut", cutOf(playable)},
                     {"position", m_item->position.count()},
                     {"paused", m_item->mode == StartMode::Paused}},
                    {bytes->get()});
}

// In another process, where nobody knows yet how it was looked at.
void DecoderEngine::goOn() {
    if (m_item->view) {
        send(*m_item->view);
    }
    if (m_item->choice) {
        send(*m_item->choice);
    }
    if (m_item->next) {
        sendNext();
    }
    if (m_item->scanSpeed != 0) {
        tell({{"do", "scan"}, {"speed", m_item->scanSpeed}});
    }
}

void DecoderEngine::pause() {
    if (m_item) {
        m_item->mode = StartMode::Paused;
        m_item->scanSpeed = 0;
    }
    tell({{"do", "pause"}});
}

void DecoderEngine::resume() {
    if (m_item) {
        m_item->mode = StartMode::Playing;
        m_item->scanSpeed = 0;
    }
    tell({{"do", "resume"}});
}

void DecoderEngine::seek(Milliseconds position) {
    forgetNext();
    if (m_item) {
        m_item->position = position;
    }
    tell({{"do", "seek"}, {"position", position.count()}});
}

void DecoderEngine::scan(int speed) {
    forgetNext();
    if (m_item) {
        m_item->scanSpeed = speed;
    }
    tell({{"do", "scan"}, {"speed", speed}});
}

void DecoderEngine::view(const PictureView& view) {
    if (m_item) {
        m_item->view = view;
    }
    send(view);
}

void DecoderEngine::choose(const StreamChoice& choice) {
    if (m_item) {
        m_item->choice = choice;
    }
    send(choice);
}

void DecoderEngine::follow(const Playable& next) {
    if (m_item) {
        forgetNext();
        m_item->next = next;
        sendNext();
    }
}

void DecoderEngine::sendNext() {
    const Playable& next = *m_item->next;
    m_nextFeed = feedOf(next);
    if (const auto bytes = serveFeed(m_nextFeed)) {
        m_process->send({{"do", "follow"},
                         {"number", ++m_nextNumber},
                         {"path", next.path},
                         {"length", next.length.count()},
                         {"cut", cutOf(next)}},
                        {bytes->get()});
    }
}

void DecoderEngine::followNothing() {
    forgetNext();
    tell({{"do", "follow nothing"}});
}

void DecoderEngine::forgetNext() {
    if (m_item) {
        m_item->next.reset();
    }
    if (m_nextFeed) {
        m_nextFeed->cancel();
        m_nextFeed.reset();
    }
}

void DecoderEngine::followed(const Json& message) {
    if (!m_item->next || numberOf(message, "number") != m_nextNumber) {
        // Meanwhile something else was wanted.
        forgetNext();
        m_item.reset();
        m_listener->engineEnded();
        return;
    }
    m_item->playable = *std::exchange(m_item->next, std::nullopt);
    m_item->position = Milliseconds{0};
    m_moved = Clock::now();
    m_feed = std::exchange(m_nextFeed, nullptr);
    m_listener->engineFollowed(Milliseconds(numberOf(message, "length")));
}

void DecoderEngine::send(const PictureView& view) {
    tell({{"do", "view"}, {"zoom", view.zoomStep}, {"turns", view.quarterTurns}});
}

void DecoderEngine::send(const StreamChoice& choice) {
    tell({{"do", "choose"},
          {"audio", choice.audio},
          {"subtitle", choice.subtitle},
          {"channel", static_cast<int>(choice.channel)}});
}

// The process, once locked in, could not open the device again: another one takes its place.
void DecoderEngine::rest() {
    stop();
    endFade();
    m_silence.reset();
    m_takingDown = m_ready = false;
    m_process.reset();
    m_spare.prepare();
}

void DecoderEngine::stop() {
    // What waits for the drive is silent anyway, or will be in a moment.
    const bool heard = m_item && m_feed && !m_feed->isWaiting();
    auto fading = heard ? std::exchange(m_feed, nullptr) : nullptr;
    drop();
    if (fading) {
        m_fading = std::move(fading);
        m_fadeEnd = afterDelay(m_home, LongestFade + FeedMargin, [this] { endFade(); });
        tell({{"do", "fade out"}});
    } else {
        takeDown();
    }
    m_frames.clear();
}

void DecoderEngine::endFade() {
    m_fadeEnd.reset();
    if (const auto feed = std::exchange(m_fading, nullptr)) {
        feed->cancel();
    }
}

void DecoderEngine::loudness(const Loudness& loudness) {
    m_loudness = loudness;
    sendLoudness();
}

void DecoderEngine::sendLoudness() {
    tell({{"do", "loudness"}, {"volume", m_loudness.volume}, {"muted", m_loudness.muted}});
}

} // namespace zm::disc::engine
