#pragma once

#include "base/Mailbox.h"
#include "services/disc/dvd/Session.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zm::disc::dvd {

/** Plays a DVD on a thread of its own. No call waits for the disc or for a decoder. On the service's loop. */
class Engine {
public:
    /** Pictures go to `frames`, sound to what `makeSound` makes. */
    Engine(EventLoop& home, std::shared_ptr<engine::FrameSink> frames, SoundMaker makeSound);
    /** Nothing is reported any more. A thread that hangs is left behind. */
    ~Engine();

    /** From `place` on, else from the disc's first play. `listener` lives as long as the engine. Once. */
    void start(const std::string& path, Listener& listener, engine::StartMode mode,
               std::optional<DvdPlace> place);
    /** Carried out on the engine's thread, in order; dropped when the session is over. */
    void post(std::function<void(Session&)> task);

private:
    class Reporter;
    struct Worker;

    EventLoop& m_home;
    std::shared_ptr<Mailbox> m_mailbox;
    std::shared_ptr<Worker> m_worker;
    SourceHandle m_startWatch;
};

/** Makes the engine for a DVD; it reports on the given loop. */
using EngineMaker = std::function<std::unique_ptr<Engine>(EventLoop& loop)>;

} // namespace zm::disc::dvd
