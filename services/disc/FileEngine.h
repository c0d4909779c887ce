#pragma once

#include "services/disc/Engine.h"
#include "services/disc/Feed.h"
#include "services/disc/FrameSink.h"
#include "services/disc/Mailbox.h"

#include <cstdint>

namespace zm::disc {

/** Plays files of any data disc with GStreamer, on a thread of its own that is replaced should it ever hang.
 */
class FileEngine : public Engine {
public:
    /** Pictures go to `frames`. */
    FileEngine(EventLoop& home, std::shared_ptr<FrameSink> frames);
    ~FileEngine() override;

    void start(const Playable& playable, EngineListener& listener, Milliseconds position,
               StartMode mode) override;
    void pause() override;
    void resume() override;
    void seek(Milliseconds position) override;
    void scan(int speed) override;
    void view(const PictureView& view) override;
    void choose(const StreamChoice& choice) override;
    void stop() override;

private:
    class Reporter;
    struct Worker;

    void drop();
    void watchStart();

    EventLoop& m_home;
    EngineListener* m_listener = nullptr;
    std::shared_ptr<FrameSink> m_frames;
    std::shared_ptr<Mailbox> m_mailbox;
    std::shared_ptr<Worker> m_worker;
    std::shared_ptr<Feed> m_feed; ///< of what plays, to release a read that hangs
    SourceHandle m_startWatch;
    uint64_t m_generation = 0; ///< grows with each start and stop; reports of older ones are dropped
};

} // namespace zm::disc
