#include "services/ctl/FreshBench.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <utility>

namespace zm::ctl {

namespace {

constexpr std::chrono::seconds StartTime(60);

std::string freshFolder() {
    std::string folder = std::filesystem::temp_directory_path().string() + "/zmctl-XXXXXX";
    return ::mkdtemp(folder.data()) ? folder : std::string();
}

// Reads until "ready"; false if the program ends or takes too long.
bool becomesReady(int fd, std::string& said) {
    const auto deadline = std::chrono::steady_clock::now() + StartTime;
    while (said.find("ready") == std::string::npos) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        pollfd waiting{fd, POLLIN, 0};
        char buffer[512];
        if (left.count() <= 0 || ::poll(&waiting, 1, static_cast<int>(left.count())) <= 0) {
            return false;
        }
        const ssize_t size = ::read(fd, buffer, sizeof buffer);
        if (size <= 0) {
            return false;
        }
        said.append(buffer, static_cast<size_t>(size));
    }
    return true;
}

} // namespace

FreshBench::FreshBench(pid_t pid, std::string folder)
    : m_pid(pid), m_folder(std::move(folder)), m_client(m_folder) {}

FreshBench::FreshBench(FreshBench&& other) noexcept
    : m_pid(std::exchange(other.m_pid, -1)), m_folder(std::exchange(other.m_folder, {})),
      m_client(std::move(other.m_client)), m_output(std::move(other.m_output)) {}

FreshBench::~FreshBench() {
    if (m_pid > 0) {
        ::kill(m_pid, SIGTERM);
        ::waitpid(m_pid, nullptr, 0);
    }
    if (!m_folder.empty()) {
        std::error_code error;
        std::filesystem::remove_all(m_folder, error);
    }
}

Result<FreshBench> FreshBench::start(const std::vector<std::string>& words) {
    const std::string program =
        (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "zmbench").string();
    const std::string folder = freshFolder();
    if (folder.empty()) {
        return systemError(std::filesystem::temp_directory_path().string());
    }
    std::vector<std::string> all{program, "--no-web", "--runtime", folder};
    all.insert(all.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (auto& word : all) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        return systemError("pipe");
    }
    UniqueFd reader(ends[0]);
    UniqueFd writer(ends[1]);
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        ::dup2(writer.get(), STDOUT_FILENO);
        ::dup2(writer.get(), STDERR_FILENO);
        ::execv(program.c_str(), arguments.data());
        ::_exit(127);
    }
    FreshBench bench(pid, folder);
    writer.reset();
    if (pid < 0) {
        return systemError("fork");
    }
    std::string said;
    if (!becomesReady(reader.get(), said)) {
        return Error{"a fresh bench (" + program + ") does not start: " + said.substr(0, said.find('\n'))};
    }
    // Kept open: what it says later, a few lines, must neither wait for a reader nor kill it for want of one.
    bench.m_output = std::move(reader);
    return bench;
}

} // namespace zm::ctl
