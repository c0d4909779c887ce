#pragma once

#include "base/EventLoop.h"
#include "base/Socket.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zm::bench::film {

/** zmfilm at work on one film. On the loop's thread. */
class FilmProcess {
public:
    /** Starts `program`; `screen` is a descriptor of the shared screen. */
    static Result<std::unique_ptr<FilmProcess>> launch(EventLoop& loop, const std::string& program,
                                                       const std::vector<std::string>& arguments, int screen);
    /** Ends the film and waits until it is complete, some seconds at most. */
    ~FilmProcess();
    FilmProcess(const FilmProcess&) = delete;
    FilmProcess& operator=(const FilmProcess&) = delete;

    std::function<void(const std::string& message)> onMessage;
    /** It has gone; called last. */
    std::function<void(int status)> onGone;

    /** Asks it to complete the film. */
    void end();

private:
    FilmProcess(EventLoop& loop, UniqueFd control, int pid);

    EventLoop& m_loop;
    std::unique_ptr<Connection> m_control;
    int m_pid;
    int m_status = 0;
    SourceHandle m_watch;
    const std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

} // namespace zm::bench::film
