#include "services/bench/film/FilmProcess.h"

#include "services/film/Wire.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <cerrno>
#include <chrono>
#include <thread>

extern char** environ;

namespace zm::bench::film {

namespace {

constexpr std::chrono::seconds CompletionTime(5);
constexpr std::chrono::milliseconds LookInterval(10);

// With a group of its own: Ctrl-C in the terminal reaches the bench, which ends the film in order.
Result<int> spawnWith(std::vector<std::string> words, int control, int screen) {
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, control, zm::film::ControlFd);
    ::posix_spawn_file_actions_adddup2(&actions, screen, zm::film::ScreenFd);
    // Standard output is the bench's own, where "ready" is expected.
    ::posix_spawn_file_actions_adddup2(&actions, STDERR_FILENO, STDOUT_FILENO);
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    sigset_t none;
    ::sigemptyset(&none);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setpgroup(&attributes, 0);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP);
    std::vector<char*> arguments;
    for (auto& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    pid_t pid = 0;
    errno = ::posix_spawn(&pid, words[0].c_str(), &actions, &attributes, arguments.data(), environ);
    const auto result = errno == 0 ? Result<int>(pid) : systemError(words[0]);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    return result;
}

// Above the numbers that the process gets its descriptors under.
UniqueFd outOfTheWay(int fd) {
    return UniqueFd(::fcntl(fd, F_DUPFD_CLOEXEC, zm::film::ScreenFd + 1));
}

} // namespace

Result<std::unique_ptr<FilmProcess>> FilmProcess::launch(EventLoop& loop, const std::string& program,
                                                         const std::vector<std::string>& arguments,
                                                         int screen) {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
        return systemError("socket pair");
    }
    UniqueFd ours(ends[0]);
    const UniqueFd theirs(ends[1]);
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const auto pid = spawnWith(std::move(words), outOfTheWay(theirs.get()).get(), outOfTheWay(screen).get());
    if (!pid) {
        return pid.failure();
    }
    return std::unique_ptr<FilmProcess>(new FilmProcess(loop, std::move(ours), *pid));
}

FilmProcess::FilmProcess(EventLoop& loop, UniqueFd control, int pid)
    : m_loop(loop), m_control(std::make_unique<Connection>(loop, std::move(control))), m_pid(pid) {
    m_control->onMessage = [this](const Message& message) { onMessage(message.text); };
    // What it has said last is read before its end is told.
    const auto gone = [this] {
        if (m_pid < 0 && !m_control) {
            auto callback = std::move(onGone);
            callback(m_status);
        }
    };
    m_control->onClosed = [this, gone] {
        m_loop.post([this, gone, alive = m_alive] {
            if (*alive) {
                m_control.reset();
                gone();
            }
        });
    };
    m_watch = watchChild(loop, pid, [this, gone](int status) {
        m_pid = -1;
        m_status = status;
        gone();
    });
}

FilmProcess::~FilmProcess() {
    *m_alive = false;
    m_watch.reset();
    m_control.reset();
    const auto deadline = std::chrono::steady_clock::now() + CompletionTime;
    while (m_pid > 0 && ::waitpid(m_pid, nullptr, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline) {
            ::kill(m_pid, SIGKILL);
            ::waitpid(m_pid, nullptr, 0);
            return;
        }
        std::this_thread::sleep_for(LookInterval);
    }
}

void FilmProcess::end() {
    if (m_control) {
        m_control->send(R"({"t":"end"})");
    }
}

} // namespace zm::bench::film
