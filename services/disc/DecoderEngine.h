#pragma once

#include "services/disc/DecoderProcess.h"
#include "services/disc/Engine.h"
#include "services/disc/Feed.h"
#include "services/disc/FrameReceiver.h"
#include "services/disc/Mailbox.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace zm::disc {

/**
 * Plays files of any data disc in the process `zmdecode`, which can reach nothing but the bytes that it is
 * given. A process that dies or hangs is replaced; what it played has then failed.
 */
class DecoderEngine : public Engine {
public:
    /** Pictures go to `frames`. */
    DecoderEngine(EventLoop& home, std::shared_ptr<FrameSink> frames);
    ~DecoderEngine() override;

    void start(const Playable& playable, EngineListener& listener, Milliseconds position,
               StartMode mode) override;
    void pause() override;
    void resume() override;
    void seek(Milliseconds position) override;
    void scan(int speed) override;
    void view(const PictureView& view) override;
    void choose(const StreamChoice& choice) override;
    void stop() override;

    /** The decoder's process at the moment; 0 without one. */
    int process() const { return m_process ? m_process->pid() : 0; }

private:
    using Clock = std::chrono::steady_clock;

    bool launch();
    void drop();
    void tell(const wire::Json& message);
    void heard(const wire::Json& message);
    void report(const std::string& what, const wire::Json& message);
    void watch();
    bool isSilent(Milliseconds time) const;
    void replace(const std::string& reason);
    void failLater(const std::string& reason);

    EventLoop& m_home;
    EngineListener* m_listener = nullptr;
    FrameReceiver m_frames;
    std::shared_ptr<Mailbox> m_mailbox;
    std::unique_ptr<DecoderProcess> m_process;
    bool m_ready = false;         ///< the process has said so
    std::shared_ptr<Feed> m_feed; ///< of what plays, to release a read that hangs
    uint64_t m_item = 0;          ///< grows with each start and stop; reports of older ones are dropped
    bool m_playing = false;       ///< something was started and has neither ended nor failed
    std::optional<Clock::time_point> m_begun; ///< of a start that is not yet done
    std::optional<Clock::time_point> m_asked; ///< when the process was asked whether it lives
    SourceHandle m_watch;
};

} // namespace zm::disc
