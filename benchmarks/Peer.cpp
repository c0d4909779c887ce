#include "benchmarks/Peer.h"

#include "benchmarks/BenchUnit.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace zm::benchmark {

Peer::Peer(std::vector<std::string> words) : m_name(words.front()) {
    std::vector<char*> list;
    for (auto& word : words) {
        list.push_back(word.data());
    }
    list.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        posix_spawn_file_actions_addopen(&files, fd, "/dev/null", O_RDWR, 0);
    }
    const bool begun = posix_spawnp(&m_pid, list[0], &files, nullptr, list.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&files);
    require(begun, m_name + " does not start");
}

Peer::~Peer() {
    kill(m_pid, SIGTERM);
    waitpid(m_pid, nullptr, 0);
}

double Peer::used() const {
    require(waitpid(m_pid, nullptr, WNOHANG) == 0, m_name + " has ended too early");
    return processorTime(m_pid);
}

} // namespace zm::benchmark
