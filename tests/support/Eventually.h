#pragma once

#include <chrono>
#include <thread>

namespace zm::test {

/** Waits until the condition holds; false if that takes more than ten seconds. */
template <class Condition>
bool eventually(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

} // namespace zm::test
