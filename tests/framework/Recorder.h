#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace zm::test {

/** Writes down what happened, in order, and on how many threads. Any thread. */
class Recorder {
public:
    void add(const std::string& what) {
        std::lock_guard lock(m_mutex);
        m_lines.push_back(what);
        m_threads.insert(std::this_thread::get_id());
        m_changed.notify_all();
    }
    std::vector<std::string> take() {
        std::lock_guard lock(m_mutex);
        return std::exchange(m_lines, {});
    }
    std::vector<std::string> lines() {
        std::lock_guard lock(m_mutex);
        return m_lines;
    }
    /** Waits until `count` lines are there. */
    bool waitFor(size_t count) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_lines.size() >= count; });
    }
    std::set<std::thread::id> threads() {
        std::lock_guard lock(m_mutex);
        return m_threads;
    }
    void forgetThreads() {
        std::lock_guard lock(m_mutex);
        m_threads.clear();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::string> m_lines;
    std::set<std::thread::id> m_threads;
};

} // namespace zm::test
