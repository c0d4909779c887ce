#include "platform/linux/framework/Signals.h"

#include "base/UniqueFd.h"

#include <poll.h>
#include <pthread.h>
#include <sys/signalfd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

namespace zm {

namespace {

sigset_t endSignals() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGINT);
    return set;
}

} // namespace

Status blockEndSignals() {
    const sigset_t set = endSignals();
    if (const int error = pthread_sigmask(SIG_BLOCK, &set, nullptr); error != 0) {
        return Error{std::string("signal mask: ") + std::strerror(error)};
    }
    return ok();
}

Status waitForEndSignal(int fd) {
    const sigset_t set = endSignals();
    UniqueFd signals(::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK));
    if (!signals.valid()) {
        return systemError("signal descriptor");
    }
    pollfd waits[] = {{signals.get(), POLLIN, 0}, {fd, POLLIN, 0}};
    while (::poll(waits, 2, -1) < 0) {
        if (errno != EINTR) {
            return systemError("waiting for signals");
        }
    }
    if (waits[0].revents != 0) {
        // Taken, so that it does not end the process once the mask is lifted.
        signalfd_siginfo info;
        if (::read(signals.get(), &info, sizeof info) < 0 && errno != EAGAIN) {
            return systemError("reading the signal");
        }
    }
    return ok();
}

} // namespace zm
