#pragma once

#include "base/Mailbox.h"
#include "services/disc/engine/DecoderProcess.h"
#include "services/disc/engine/Engine.h"
#include "services/disc/engine/Feed.h"
#include "services/disc/engine/FrameReceiver.h"
#include "services/disc/engine/SpareDecoder.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace zm::disc::engine {

/**
 * Plays files of any data disc in the process `zmdecode`, which can reach nothing but the bytes that it is
 * given. A process that dies or hangs is replaced, and what it played goes on; once, then it has failed.
 */
class DecoderEngine : public Engine {
public:
    /** Pictures go to `frames`. */
    DecoderEngine(EventLoop& home, std::shared_ptr<FrameSink> frames);
    ~DecoderEngine() override;

    void start(const Playable& playable, Listener& listener, Milliseconds position, StartMode mode) override;
    void pause() override;
    void resume() override;
    void seek(Milliseconds position) override;
    void scan(int speed) override;
    void view(const PictureView& view) override;
    void choose(const StreamChoice& choice) override;
    void follow(const Playable& next) override;
    void followNothing() override;
    void stop() override;
    void loudness(const Loudness& loudness) override;
    void rest() override;

    /** The decoder's process at the moment; 0 without one. */
    int process() const { return m_process ? m_process->pid() : 0; }

private:
    using Clock = std::chrono::steady_clock;

    /** What was started and has neither ended nor failed, as it has to go on in another process. */
    struct Item {
        Playable playable;
        Milliseconds position{0};
        StartMode mode = StartMode::Playing;
        bool started = false;
        int scanSpeed = 0;
        std::optional<PictureView> view;
        std::optional<StreamChoice> choice;
        std::optional<Playable> next; ///< follows without a gap
    };

    bool launch();
    void drop();
    void begin();
    void goOn();
    void takeDown();
    void endFade();
    void tell(const wire::Json& message);
    void heard(const wire::Json& message);
    void report(const std::string& what, const wire::Json& message);
    void watch();
    bool standsStill();
    void ask(Milliseconds patience);
    void silent(Milliseconds patience);
    bool mayTryAgain();
    void replace(const std::string& reason, bool again);
    void send(const PictureView& view);
    void send(const StreamChoice& choice);
    void sendLoudness();
    void sendNext();
    void forgetNext();
    void followed(const wire::Json& message);
    void failLater(const std::string& reason);

    EventLoop& m_home;
    Listener* m_listener = nullptr;
    FrameReceiver m_frames;
    std::shared_ptr<Mailbox> m_mailbox;
    SpareDecoder m_spare;
    std::unique_ptr<DecoderProcess> m_process;
    bool m_ready = false;             ///< the process has said so
    std::shared_ptr<Feed> m_feed;     ///< of what plays, to release a read that hangs
    std::shared_ptr<Feed> m_nextFeed; ///< of what is to follow
    std::shared_ptr<Feed> m_fading;   ///< of what was stopped and is still heard for a moment
    SourceHandle m_fadeEnd;
    Loudness m_loudness;
    int64_t m_nextNumber = 0; ///< grows with each item that is to follow
    uint64_t m_number = 0;    ///< grows with each start and stop; reports of older ones are dropped
    std::optional<Item> m_item;
    std::optional<Clock::time_point> m_begun;   ///< of a start that is not yet done
    std::optional<Clock::time_point> m_retried; ///< when another process has gone on with the item
    Clock::time_point m_moved = Clock::now();   ///< when what plays was last somewhere else
    int64_t m_questions = 0;                    ///< asked so far whether it lives
    bool m_takingDown = false;                  ///< what it has been asked last
    SourceHandle m_silence;                     ///< runs while it has not answered
    SourceHandle m_watch;
};

} // namespace zm::disc::engine
