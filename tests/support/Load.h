#pragma once

#include <atomic>
#include <thread>
#include <vector>

namespace zm::test {

/** Threads that keep the processors busy for as long as it lives. */
class Load {
public:
    explicit Load(int threads) {
        for (int i = 0; i < threads; ++i) {
            m_threads.emplace_back([this] {
                while (!m_over) {
                }
            });
        }
    }
    ~Load() {
        m_over = true;
        for (auto& thread : m_threads) {
            thread.join();
        }
    }
    Load(const Load&) = delete;
    Load& operator=(const Load&) = delete;

private:
    std::atomic<bool> m_over = false;
    std::vector<std::thread> m_threads;
};

} // namespace zm::test
