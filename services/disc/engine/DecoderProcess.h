#pragma once

#include "base/EventLoop.h"
#include "base/Socket.h"
#include "services/disc/engine/DecoderWire.h"
#include "services/disc/engine/FrameReceiver.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zm::disc::engine {

/** A decoder in a process of its own, which lives as long as this object. On the loop's thread. */
class DecoderProcess {
public:
    /** Starts the program `name`, which lies beside this one. */
    static Result<std::unique_ptr<DecoderProcess>> launch(EventLoop& loop, const std::string& name);
    /** Kills it. */
    ~DecoderProcess();
    DecoderProcess(const DecoderProcess&) = delete;
    DecoderProcess& operator=(const DecoderProcess&) = delete;

    std::function<void(const wire::Json&)> onMessage;
    /** It has ended by itself. The object may be destroyed there. */
    std::function<void()> onEnd;

    /** Never waits. */
    void send(const wire::Json& message, const std::vector<int>& fds = {});
    /** From now on its pictures go to `frames`. Once only. */
    void showIn(FrameReceiver& frames) { frames.attach(std::move(m_notes), std::move(m_pictures)); }
    int pid() const { return m_pid; }
    /** Kills it if it still runs, and tells how it ended. */
    std::string end();

private:
    DecoderProcess(EventLoop& loop, UniqueFd control, UniqueFd notes, UniqueFd pictures, int pid);

    int m_pid;
    UniqueFd m_notes;
    UniqueFd m_pictures;
    Connection m_control;
};

} // namespace zm::disc::engine
