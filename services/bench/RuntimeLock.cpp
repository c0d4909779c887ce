#include "services/bench/RuntimeLock.h"

#include "base/Paths.h"

#include <fcntl.h>
#include <sys/file.h>

namespace zm::bench {

Result<UniqueFd> takeRuntime(const std::string& dir) {
    if (auto made = makeRuntimeDir(dir); !made) {
        return made.failure();
    }
    UniqueFd lock(::open((dir + "/lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!lock.valid()) {
        return systemError(dir + "/lock");
    }
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        return Error{"another bench already runs in " + dir +
                     "; end it or choose another folder with --runtime"};
    }
    return lock;
}

} // namespace zm::bench
