#include "services/disc/Background.h"

#include <system_error>
#include <thread>

namespace zm::disc {

Status runInBackground(std::function<void()> task) {
    try {
        std::thread(std::move(task)).detach();
    } catch (const std::system_error& error) {
        return Error{std::string("no thread can be started: ") + error.what()};
    }
    return ok();
}

} // namespace zm::disc
