#include "tests/disc/DecoderProcesses.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace zm::test {

std::string procLine(int pid, const std::string& file, const std::string& name) {
    std::ifstream text("/proc/" + std::to_string(pid) + "/" + file);
    for (std::string line; std::getline(text, line);) {
        if (line.starts_with(name)) {
            return line.substr(name.size());
        }
    }
    return "";
}

std::vector<int> decoders() {
    std::vector<int> found;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const int pid = std::atoi(entry.path().filename().c_str());
        if (pid > 0 && procLine(pid, "status", "Name:") == "\tzmdecode" &&
            procLine(pid, "status", "PPid:") == "\t" + std::to_string(::getpid())) {
            found.push_back(pid);
        }
    }
    return found;
}

int lockedInDecoder() {
    for (const int pid : decoders()) {
        if (procLine(pid, "status", "Seccomp:") == "\t2") {
            return pid;
        }
    }
    return 0;
}

} // namespace zm::test
