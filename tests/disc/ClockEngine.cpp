#include "tests/disc/ClockEngine.h"

#include "base/Threads.h"

#include <algorithm>

namespace zm::test {

using disc::engine::Milliseconds;

namespace {

constexpr Milliseconds Tick{100};
constexpr Milliseconds UnknownLength{5000};
constexpr size_t LookedAt = 64;

// Reads the beginning of a file; the reason if it cannot be played.
std::string look(disc::engine::Feed& feed) {
    if (auto size = feed.open(); !size) {
        return size.error();
    }
    const auto bytes = feed.read(0, LookedAt);
    if (bytes.empty()) {
        return feed.failure().empty() ? "empty" : feed.failure();
    }
    const bool text = std::all_of(bytes.begin(), bytes.end(), [](char c) { return c >= ' ' && c < 0x7F; });
    return text ? "plain text" : "";
}

} // namespace

ClockEngine::ClockEngine(EventLoop& loop) : m_loop(loop), m_mailbox(std::make_shared<Mailbox>(loop)) {}

ClockEngine::~ClockEngine() {
    stop();
    m_mailbox->close();
}

void ClockEngine::start(const disc::engine::Playable& playable, disc::engine::Listener& listener,
                        Milliseconds position, disc::engine::StartMode mode) {
    stop();
    m_listener = &listener;
    m_position = position;
    m_length = playable.length > Milliseconds{0} ? playable.length : UnknownLength;
    m_running = mode == disc::engine::StartMode::Playing;
    m_feed = std::make_shared<disc::engine::Feed>(playable.medium, playable.path);
    // This engine is only touched in what the mailbox delivers, that is while it lives.
    const auto report = [this, mailbox = m_mailbox, generation = m_generation](const std::string& failure) {
        mailbox->post([this, generation, failure] {
            if (generation == m_generation) {
                opened(failure);
            }
        });
    };
    const auto begun = runInBackground([report, feed = m_feed] { report(look(*feed)); });
    if (!begun) {
        report(begun.error());
    }
}

void ClockEngine::opened(const std::string& failure) {
    if (!failure.empty()) {
        m_listener->engineFailed(failure);
        return;
    }
    m_started = true;
    m_clock = everyInterval(m_loop, Tick, [this] { tick(); });
    m_listener->engineStarted(m_length);
}

void ClockEngine::tick() {
    if (!m_running) {
        return;
    }
    m_position += Tick * m_speed;
    const bool end = m_position >= m_length;
    const bool beginning = m_position <= Milliseconds{0};
    if (!end && !beginning) {
        m_listener->engineMoved(m_position, m_length);
        return;
    }
    m_clock.reset();
    if (m_speed == 1) {
        m_listener->engineEnded();
    } else {
        m_listener->engineScanned(end ? disc::engine::ScanEdge::End : disc::engine::ScanEdge::Beginning);
    }
}

void ClockEngine::pause() {
    m_running = false;
    m_speed = 1;
}

void ClockEngine::resume() {
    m_running = true;
    m_speed = 1;
}

void ClockEngine::seek(Milliseconds position) {
    m_position = position;
    if (m_started && position < m_length) {
        m_listener->engineMoved(position, m_length);
    }
}

void ClockEngine::scan(int speed) {
    m_running = true;
    m_speed = speed;
}

void ClockEngine::stop() {
    ++m_generation;
    m_started = false;
    m_speed = 1;
    m_clock.reset();
    if (m_feed) {
        m_feed->cancel();
        m_feed.reset();
    }
}

} // namespace zm::test
