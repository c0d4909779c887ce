#include "services/disc/dvd/ReaderProcess.h"

#include "base/Threads.h"
#include "services/dvd/CircleWatch.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <thread>

extern char** environ;

namespace zm::disc::dvd {

namespace {

// The time that an ended process takes to be seen as ended.
constexpr std::chrono::milliseconds EndTime{500};
constexpr std::chrono::milliseconds EndStep{2};

std::string program() {
    std::error_code error;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
    return (self.parent_path() / "zmdvd").string();
}

// With only its end of the socket, and signals as they are from the start.
int spawn(const std::string& path, int socket) {
    const std::string executable = program();
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, socket, zm::dvd::ReaderSocket);
    posix_spawn_file_actions_addclosefrom_np(&files, zm::dvd::ReaderSocket + 1);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    sigset_t broken;
    sigemptyset(&broken);
    sigaddset(&broken, SIGPIPE);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &broken);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    std::string name = "zmdvd";
    std::string disc = path;
    char* arguments[] = {name.data(), disc.data(), nullptr};
    pid_t pid = -1;
    const int failure = ::posix_spawn(&pid, executable.c_str(), &files, &attributes, arguments, environ);
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attributes);
    errno = failure;
    return failure ? -1 : pid;
}

} // namespace

Result<std::unique_ptr<ReaderProcess>> ReaderProcess::start(const std::string& path) {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
        return systemError("the DVD reader's socket");
    }
    UniqueFd mine(ends[0]);
    UniqueFd theirs(ends[1]);
    if (theirs.get() == zm::dvd::ReaderSocket) {
        // Copied onto itself it would be closed in the new program.
        theirs.reset(::fcntl(theirs.get(), F_DUPFD_CLOEXEC, zm::dvd::ReaderSocket + 1));
    }
    const int pid = spawn(path, theirs.get());
    if (pid < 0) {
        return systemError(program());
    }
    return std::unique_ptr<ReaderProcess>(new ReaderProcess(std::move(mine), pid));
}

ReaderProcess::~ReaderProcess() {
    if (m_pid < 0) {
        return;
    }
    ::kill(m_pid, SIGKILL);
    // A read that hangs in the system holds even a killed process.
    const auto reap = [pid = m_pid] { ::waitpid(pid, nullptr, 0); };
    if (::waitpid(m_pid, nullptr, WNOHANG) == 0 && !runInBackground(reap)) {
        reap();
    }
}

ReaderProcess::Receipt ReaderProcess::receive(std::vector<uint8_t>& packet) {
    packet.resize(zm::dvd::MaxPacket);
    const ssize_t size = ::recv(m_socket.get(), packet.data(), packet.size(), MSG_DONTWAIT);
    if (size < 0 && (errno == EAGAIN || errno == EINTR)) {
        return Receipt::Nothing;
    }
    if (size <= 0) {
        return Receipt::Ended;
    }
    packet.resize(static_cast<size_t>(size));
    return Receipt::Packet;
}

void ReaderProcess::send(const zm::dvd::Command& command) {
    // A process that has ended is found out when it is read.
    [[maybe_unused]] const auto sent =
        ::send(m_socket.get(), &command, sizeof command, MSG_DONTWAIT | MSG_NOSIGNAL);
}

std::string ReaderProcess::ending() {
    int status = 0;
    const auto end = std::chrono::steady_clock::now() + EndTime;
    while (m_pid >= 0 && ::waitpid(m_pid, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > end) {
            return "the DVD reader has closed its socket";
        }
        std::this_thread::sleep_for(EndStep);
    }
    m_pid = -1;
    if (WIFSIGNALED(status)) {
        return "the DVD reader was ended by signal " + std::to_string(WTERMSIG(status)) + " (" +
               ::strsignal(WTERMSIG(status)) + ")";
    }
    constexpr int CannotOpen = 1;
    if (WEXITSTATUS(status) == zm::dvd::CircleStatus) {
        return "its instructions lead in a circle";
    }
    return WEXITSTATUS(status) == CannotOpen
               ? "its DVD-Video part cannot be read"
               : "the DVD reader ended with status " + std::to_string(WEXITSTATUS(status));
}

} // namespace zm::disc::dvd
