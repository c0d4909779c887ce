#pragma once

#include "base/Result.h"
#include "base/UniqueFd.h"
#include "platform/linux/toolkit/Binding.h"
#include "platform/linux/toolkit/PictureFile.h"

#include <atomic>
#include <functional>
#include <map>
#include <string>
#include <thread>

namespace zm {

/**
 * Follows what pages show of published objects, and reads the pictures that are named there, on a thread of its own: no
 * view waits for either. It only reads, and waits for objects that nobody has made yet. Started and stopped on one thread.
 */
class BoundObjects {
public:
    /** Is told, on that thread, of each value and the picture that it names; null for none and for colours. */
    using OnValue = std::function<void(const Binding&, const std::string& text, PictureFilePtr picture)>;

    ~BoundObjects() { stop(); }
    /** Does nothing without bindings, or while it runs. */
    Status start(const std::string& ppsSocket, std::map<Binding, BoundAs> bindings, OnValue onValue);
    void stop();

private:
    void run(const std::string& ppsSocket) const;
    void report(const std::string& object, std::string text) const;

    std::map<Binding, BoundAs> m_bindings;
    OnValue m_onValue;
    std::atomic<bool> m_over = false;
    UniqueFd m_wake;
    std::thread m_thread;
};

} // namespace zm
