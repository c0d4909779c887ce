#include "services/bench/unit/Child.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fcntl.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>

extern char** environ;

namespace zm::bench::unit {

namespace {

constexpr size_t MaxDeaths = 5;
constexpr std::chrono::minutes DeathWindow(1);
constexpr std::chrono::milliseconds FirstDelay(100);
constexpr std::chrono::seconds StopTime(2);

std::string programName(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

std::string describeStatus(int status) {
    if (WIFSIGNALED(status)) {
        return "was killed by signal " + std::to_string(WTERMSIG(status)) + " (" +
               strsignal(WTERMSIG(status)) + ")";
    }
    return "ended with status " + std::to_string(WEXITSTATUS(status));
}

std::vector<std::string> environmentFor(const ChildSetup& setup) {
    std::vector<std::string> result;
    for (char** entry = environ; *entry; ++entry) {
        const std::string_view text(*entry);
        bool replaced = false;
        for (const auto& [name, value] : setup.environment) {
            replaced = replaced || text.substr(0, text.find('=')) == name;
        }
        if (!replaced) {
            result.emplace_back(text);
        }
    }
    for (const auto& [name, value] : setup.environment) {
        result.push_back(name + "=" + value);
    }
    return result;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (auto& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

// Between fork and exec: only calls that are safe after a fork of a process with threads.
[[noreturn]] void becomeProgram(const char* program, char** arguments, char** environment, pid_t parent) {
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGPIPE, SIG_DFL);
    // A group of its own: Ctrl-C in the terminal reaches the bench, which ends its children in order.
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent) {
        _exit(127);
    }
    const int null = open("/dev/null", O_RDONLY);
    if (null >= 0) {
        dup2(null, STDIN_FILENO);
    }
    // Standard output is the bench's own, where "ready" is expected.
    dup2(STDERR_FILENO, STDOUT_FILENO);
    execve(program, arguments, environment);
    _exit(127);
}

} // namespace

Child::Child(EventLoop& loop, ChildSetup setup) : m_loop(loop), m_setup(std::move(setup)) {}

Child::~Child() {
    stop();
}

void Child::start() {
    if (m_state == State::Running) {
        return;
    }
    m_retry.reset();
    m_deaths.clear();
    spawn();
}

void Child::spawn() {
    std::vector<std::string> arguments{programName(m_setup.program)};
    arguments.insert(arguments.end(), m_setup.arguments.begin(), m_setup.arguments.end());
    std::vector<std::string> environment = environmentFor(m_setup);
    auto argv = pointers(arguments);
    auto envp = pointers(environment);
    const pid_t parent = getpid();
    const pid_t pid = fork();
    if (pid == 0) {
        becomeProgram(m_setup.program.c_str(), argv.data(), envp.data(), parent);
    }
    ++m_starts;
    if (pid < 0) {
        died(std::string("cannot be started: ") + strerror(errno));
        return;
    }
    m_pid = pid;
    m_state = State::Running;
    m_watch = watchChild(m_loop, pid, [this](int status) { ended(status); });
    if (onStart) {
        onStart();
    }
}

void Child::ended(int status) {
    m_pid = -1;
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) {
        m_state = State::Down;
        if (onDown) {
            onDown();
        }
        return;
    }
    died(describeStatus(status));
}

void Child::died(const std::string& how) {
    const auto now = std::chrono::steady_clock::now();
    m_deaths.push_back(now);
    ++m_allDeaths;
    while (now - m_deaths.front() > DeathWindow) {
        m_deaths.pop_front();
    }
    const std::string text = "zmbench: " + programName(m_setup.program) + " " + how;
    if (m_deaths.size() >= MaxDeaths) {
        m_state = State::GivenUp;
        std::fprintf(stderr, "%s; it died %zu times within a minute and is not started again\n", text.c_str(),
                     m_deaths.size());
        if (onDown) {
            onDown();
        }
        return;
    }
    const auto delay = FirstDelay * (1 << (m_deaths.size() - 1));
    m_state = State::Waiting;
    std::fprintf(stderr, "%s; started again in %lld ms\n", text.c_str(),
                 static_cast<long long>(delay.count()));
    m_retry = afterDelay(m_loop, delay, [this] { spawn(); });
}

bool Child::kill() {
    return m_state == State::Running && ::kill(m_pid, SIGKILL) == 0;
}

void Child::stop() {
    m_retry.reset();
    m_watch.reset();
    m_state = State::Down;
    const int pid = std::exchange(m_pid, -1);
    if (pid < 0) {
        return;
    }
    ::kill(pid, SIGTERM);
    const auto deadline = std::chrono::steady_clock::now() + StopTime;
    while (waitpid(pid, nullptr, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline) {
            ::kill(pid, SIGKILL);
            waitpid(pid, nullptr, 0);
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

std::string Child::describeState() const {
    switch (m_state) {
    case State::Running:
        return "running";
    case State::Waiting:
        return "died, about to start again";
    case State::GivenUp:
        return "died too often, given up";
    case State::Down:
        break;
    }
    return "not running";
}

} // namespace zm::bench::unit
