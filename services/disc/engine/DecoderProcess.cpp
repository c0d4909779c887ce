#include "services/disc/engine/DecoderProcess.h"

#include "base/Threads.h"

#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <thread>
#include <utility>

extern char** environ;

namespace zm::disc::engine {

namespace {

// Above the numbers that the process gets its descriptors under.
constexpr int FirstFreeFd = 10;
// A killed process is gone at once, and the sound device with it free, unless a call of the system holds it.
constexpr std::chrono::milliseconds EndTime{500};
constexpr std::chrono::milliseconds EndStep{1};

struct Pair {
    UniqueFd ours;
    UniqueFd theirs;
};

Result<Pair> makePair() {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
        return systemError("socket pair");
    }
    return Pair{UniqueFd(ends[0]), UniqueFd(ends[1])};
}

std::string besideThisProgram(const std::string& name) {
    std::error_code unknown;
    return std::filesystem::read_symlink("/proc/self/exe", unknown).replace_filename(name).string();
}

/** What a new process is born with. */
class Birth {
public:
    Birth() {
        ::posix_spawn_file_actions_init(&m_actions);
        ::posix_spawnattr_init(&m_attributes);
        sigset_t none;
        ::sigemptyset(&none);
        ::posix_spawnattr_setsigmask(&m_attributes, &none);
        ::posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK);
    }
    ~Birth() {
        ::posix_spawnattr_destroy(&m_attributes);
        ::posix_spawn_file_actions_destroy(&m_actions);
    }
    Birth(const Birth&) = delete;
    Birth& operator=(const Birth&) = delete;

    void give(int fd, int number) {
        m_kept.emplace_back(::fcntl(fd, F_DUPFD_CLOEXEC, FirstFreeFd));
        ::posix_spawn_file_actions_adddup2(&m_actions, m_kept.back().get(), number);
    }
    Result<int> spawn(std::string program) {
        pid_t pid = 0;
        char* arguments[] = {program.data(), nullptr};
        errno = ::posix_spawn(&pid, program.c_str(), &m_actions, &m_attributes, arguments, environ);
        return errno == 0 ? Result<int>(pid) : systemError(program);
    }

private:
    posix_spawn_file_actions_t m_actions;
    posix_spawnattr_t m_attributes;
    std::vector<UniqueFd> m_kept;
};

} // namespace

Result<std::unique_ptr<DecoderProcess>> DecoderProcess::launch(EventLoop& loop, const std::string& name) {
    auto control = makePair();
    auto notes = makePair();
    auto pictures = SharedPictures::make();
    if (!control || !notes || !pictures) {
        return Error{!control ? control.error() : !notes ? notes.error() : pictures.error()};
    }
    Birth birth;
    birth.give(control->theirs.get(), wire::ControlFd);
    birth.give(notes->theirs.get(), wire::FramesFd);
    birth.give(pictures->get(), wire::RingFd);
    const auto pid = birth.spawn(besideThisProgram(name));
    if (!pid) {
        return pid.failure();
    }
    return std::unique_ptr<DecoderProcess>(new DecoderProcess(
        loop, std::move(control->ours), std::move(notes->ours), std::move(*pictures), *pid));
}

DecoderProcess::DecoderProcess(EventLoop& loop, UniqueFd control, UniqueFd notes, UniqueFd pictures, int pid)
    : m_pid(pid), m_notes(std::move(notes)), m_pictures(std::move(pictures)),
      m_control(loop, std::move(control)) {
    m_control.onMessage = [this](const Message& message) { onMessage(wire::objectOf(message.text)); };
    m_control.onClosed = [this] { onEnd(); };
}

DecoderProcess::~DecoderProcess() {
    end();
}

void DecoderProcess::send(const wire::Json& message, const std::vector<int>& fds) {
    m_control.send(wire::textOf(message), fds);
}

std::string DecoderProcess::end() {
    if (m_pid == 0) {
        return "";
    }
    int status = 0;
    const int pid = std::exchange(m_pid, 0);
    ::kill(pid, SIGKILL);
    const auto end = std::chrono::steady_clock::now() + EndTime;
    while (::waitpid(pid, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > end) {
            // Without a thread for it, it stays a zombie until the service ends.
            (void)runInBackground([pid] { ::waitpid(pid, nullptr, 0); });
            return "does not go";
        }
        std::this_thread::sleep_for(EndStep);
    }
    return WIFSIGNALED(status) ? std::string("was ended by: ") + ::strsignal(WTERMSIG(status))
                               : "ended with status " + std::to_string(WEXITSTATUS(status));
}

} // namespace zm::disc::engine
