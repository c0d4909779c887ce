#pragma once

#include "base/Mailbox.h"
#include "services/disc/engine/Engine.h"
#include "services/disc/engine/Feed.h"

namespace zm::test {

/**
 * An engine that decodes nothing: it reads the beginning of a file from the disc, calls it playable if that
 * is no plain text, and lets its time pass. The file's length is that of its tags, else five seconds.
 */
class ClockEngine : public disc::engine::Engine {
public:
    explicit ClockEngine(EventLoop& loop);
    ~ClockEngine() override;

    void start(const disc::engine::Playable& playable, disc::engine::Listener& listener,
               disc::engine::Milliseconds position, disc::engine::StartMode mode) override;
    void pause() override;
    void resume() override;
    void seek(disc::engine::Milliseconds position) override;
    void scan(int speed) override;
    void view(const disc::engine::PictureView&) override {}
    void choose(const disc::engine::StreamChoice&) override {}
    void follow(const disc::engine::Playable&) override {} // its items end by themselves
    void followNothing() override {}
    void stop() override;
    void loudness(const disc::engine::Loudness&) override {}

private:
    void opened(const std::string& failure);
    void tick();

    EventLoop& m_loop;
    std::shared_ptr<Mailbox> m_mailbox;
    std::shared_ptr<disc::engine::Feed> m_feed;
    disc::engine::Listener* m_listener = nullptr;
    int m_generation = 0;
    bool m_started = false;
    bool m_running = true;
    int m_speed = 1;
    disc::engine::Milliseconds m_position{0};
    disc::engine::Milliseconds m_length{0};
    SourceHandle m_clock;
};

} // namespace zm::test
