#include "services/unit/Supervisor.h"

#include "base/UniqueFd.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace zm::unit {

Supervisor::Supervisor(EventLoop& loop) {
    const char* socket = std::getenv("NOTIFY_SOCKET");
    const char* limit = std::getenv("WATCHDOG_USEC");
    m_socket = socket ? socket : "";
    const std::chrono::microseconds allowed(limit ? std::atoll(limit) : 0);
    if (!m_socket.empty() && allowed.count() > 0) {
        const auto half = std::chrono::duration_cast<std::chrono::milliseconds>(allowed / 2);
        m_alive = everyInterval(loop, half, [this] { tell("WATCHDOG=1"); });
    }
    // They are meant for this program, not for those that it starts.
    ::unsetenv("NOTIFY_SOCKET");
    ::unsetenv("WATCHDOG_USEC");
    ::unsetenv("WATCHDOG_PID");
}

void Supervisor::ready() {
    tell("READY=1\nSTATUS=The screen can be used");
}

void Supervisor::stopping() {
    tell("STOPPING=1");
}

void Supervisor::tell(const std::string& text) const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (m_socket.empty() || m_socket.size() >= sizeof address.sun_path) {
        return;
    }
    std::memcpy(address.sun_path, m_socket.data(), m_socket.size());
    if (m_socket[0] == '@') {
        address.sun_path[0] = '\0'; // has no file
    }
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + m_socket.size());
    const UniqueFd fd(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    // Whom it does not reach cannot be helped.
    ::sendto(fd.get(), text.data(), text.size(), MSG_NOSIGNAL, reinterpret_cast<const sockaddr*>(&address),
             length);
}

} // namespace zm::unit
