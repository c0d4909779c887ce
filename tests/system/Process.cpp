#include "tests/system/Process.h"

#include "BuildPaths.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>

#include <algorithm>
#include <thread>
#include <utility>

namespace zm::test {

namespace {

using Clock = std::chrono::steady_clock;

std::string readAll(int fd) {
    std::string text;
    char buffer[65536];
    off_t offset = 0;
    for (ssize_t size; (size = pread(fd, buffer, sizeof buffer, offset)) > 0; offset += size) {
        text.append(buffer, static_cast<size_t>(size));
    }
    return text;
}

std::string readPipe(int fd) {
    std::string text;
    char buffer[65536];
    for (ssize_t size; (size = read(fd, buffer, sizeof buffer)) > 0;) {
        text.append(buffer, static_cast<size_t>(size));
    }
    return text;
}

} // namespace

Process::Process(const std::vector<std::string>& words, const std::string& runtime)
    : m_err(memfd_create("standard error", MFD_CLOEXEC)) {
    int out[2];
    if (pipe2(out, O_CLOEXEC) != 0) {
        return;
    }
    m_out.reset(out[0]);
    const UniqueFd writeEnd(out[1]);
    std::vector<std::string> arguments = words;
    arguments[0] = std::string(ZM_BINARY_DIR) + "/bin/" + words[0];
    std::vector<char*> argv;
    for (auto& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    setenv("ZM_RUNTIME", runtime.c_str(), 1);
    m_pid = fork();
    if (m_pid == 0) {
        dup2(writeEnd.get(), STDOUT_FILENO);
        dup2(m_err.get(), STDERR_FILENO);
        execv(argv[0], argv.data());
        _exit(127);
    }
}

Process::~Process() {
    if (m_pid > 0) {
        ::kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
}

std::string Process::line(std::chrono::milliseconds time) {
    const auto deadline = Clock::now() + time;
    for (;;) {
        if (const auto end = m_read.find('\n'); end != std::string::npos) {
            std::string result = m_read.substr(0, end);
            m_read.erase(0, end + 1);
            return result;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        pollfd ready{m_out.get(), POLLIN, 0};
        char buffer[4096];
        if (left.count() <= 0 || poll(&ready, 1, static_cast<int>(left.count())) <= 0) {
            return {};
        }
        const ssize_t size = read(m_out.get(), buffer, sizeof buffer);
        if (size <= 0) {
            return std::exchange(m_read, {});
        }
        m_read.append(buffer, static_cast<size_t>(size));
    }
}

int Process::wait(std::chrono::milliseconds time) {
    const auto deadline = Clock::now() + time;
    int status = 0;
    if (m_pid <= 0) {
        return -1;
    }
    while (waitpid(m_pid, &status, WNOHANG) == 0) {
        // A full pipe must not keep the program from ending.
        pollfd ready{m_out.get(), POLLIN, 0};
        char buffer[65536];
        if (poll(&ready, 1, 5) > 0 && (ready.revents & POLLIN)) {
            m_read.append(
                buffer, static_cast<size_t>(std::max<ssize_t>(0, read(m_out.get(), buffer, sizeof buffer))));
        } else if (ready.revents & POLLHUP) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        if (Clock::now() > deadline) {
            return -1;
        }
    }
    m_pid = -1;
    return WIFSIGNALED(status) ? 1000 + WTERMSIG(status) : WEXITSTATUS(status);
}

std::string Process::out() {
    return std::exchange(m_read, {}) + readPipe(m_out.get());
}

std::string Process::err() {
    return readAll(m_err.get());
}

void Process::signal(int number) {
    // One that has ended has no number any more; -1 would be every process of the machine.
    if (m_pid > 0) {
        ::kill(m_pid, number);
    }
}

} // namespace zm::test
