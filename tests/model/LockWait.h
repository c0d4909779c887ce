#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <string>
#include <thread>

namespace zm::test {

/** Whether a thread of this process waits in the kernel: its state stands behind its name. */
inline bool sleeps(pid_t thread) {
    std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
    std::string line;
    std::getline(file, line);
    const size_t name = line.rfind(')');
    return name != std::string::npos && line.substr(name, 3) == ") S";
}

/**
 * Whether `use` has to wait for a lock that somebody holds: runs it on a thread of its own until that waits
 * or has ended, then has `release` give the lock back and waits for the end.
 */
inline bool waitsForLock(const std::function<void()>& use, const std::function<void()>& release) {
    std::atomic<pid_t> thread{0};
    std::atomic<bool> done{false};
    std::thread user([&] {
        thread = gettid();
        use();
        done = true;
    });
    while (!done && (thread == 0 || !sleeps(thread))) {
        std::this_thread::yield();
    }
    const bool waited = !done;
    release();
    user.join();
    return waited;
}

} // namespace zm::test
