#include "base/Threads.h"

#include <system_error>
#include <utility>

namespace zm {

Result<std::thread> startThread(const std::string& name, std::function<void()> task) {
    try {
        return std::thread(std::move(task));
    } catch (const std::system_error& error) {
        return Error{name + ": " + error.what()};
    }
}

Status runInBackground(std::function<void()> task) {
    auto thread = startThread("no thread can be started", std::move(task));
    if (!thread) {
        return thread.failure();
    }
    thread->detach();
    return ok();
}

} // namespace zm
