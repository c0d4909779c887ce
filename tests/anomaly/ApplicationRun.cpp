#include "tests/anomaly/ApplicationRun.h"

#include "Platen.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>
#include <vector>

namespace zm::test {

namespace {

constexpr const char* KindVariable = "ZM_FAULT_KIND";
constexpr const char* NumberVariable = "ZM_FAULT_NUMBER";
constexpr const char* ReportVariable = "ZM_FAULT_REPORT";

int entriesOf(const char* folder) {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

/** The threads of this process, once those that have ended are no longer listed. */
int lastingThreads() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    int threads = entriesOf("/proc/self/task");
    while (threads > 1 && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        threads = entriesOf("/proc/self/task");
    }
    return threads;
}

} // namespace

bool isApplication() {
    return std::getenv(KindVariable) != nullptr;
}

int applicationMain(int argc, char** argv) {
    armFault(static_cast<FaultKind>(std::atoi(std::getenv(KindVariable))),
             std::atoi(std::getenv(NumberVariable)));
    const int before = entriesOf("/proc/self/fd");
    const int status = PlatenMain(argc, argv);
    const int threads = lastingThreads();
    const int descriptors = entriesOf("/proc/self/fd") - before;
    std::ofstream(std::getenv(ReportVariable)) << faultCalls() << ' ' << descriptors << ' ' << threads;
    return status;
}

ApplicationRun::ApplicationRun(const std::string& folder, FaultKind kind, int number)
    : m_report(folder + "/fault-report"), m_errors(folder + "/fault-errors") {
    std::filesystem::remove(m_report);
    std::vector<std::string> variables{
        std::string(KindVariable) + "=" + std::to_string(static_cast<int>(kind)),
        std::string(NumberVariable) + "=" + std::to_string(number),
        std::string(ReportVariable) + "=" + m_report,
    };
    std::vector<char*> environment;
    for (char** each = environ; *each; ++each) {
        environment.push_back(*each);
    }
    for (std::string& each : variables) {
        environment.push_back(each.data());
    }
    environment.push_back(nullptr);
    char name[] = "Platen";
    char argument[] = "disc";
    char* arguments[] = {name, argument, nullptr};
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, m_errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0600);
    if (posix_spawn(&m_pid, "/proc/self/exe", &files, nullptr, arguments, environment.data()) != 0) {
        m_ended = true;
        m_status = -1;
    }
    posix_spawn_file_actions_destroy(&files);
}

ApplicationRun::~ApplicationRun() {
    if (!ended()) {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
}

bool ApplicationRun::ended() {
    int status = 0;
    if (!m_ended && waitpid(m_pid, &status, WNOHANG) == m_pid) {
        m_ended = true;
        m_status = WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
    }
    return m_ended;
}

bool ApplicationRun::waitForEnd(std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!ended() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return ended();
}

void ApplicationRun::terminate() {
    kill(m_pid, SIGTERM);
}

ApplicationRun::Remains ApplicationRun::remains() const {
    Remains remains;
    std::ifstream report(m_report);
    report >> remains.calls >> remains.descriptors >> remains.threads;
    return remains;
}

std::string ApplicationRun::errors() const {
    std::ostringstream text;
    text << std::ifstream(m_errors).rdbuf();
    return text.str();
}

} // namespace zm::test
