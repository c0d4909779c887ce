// Calls of sockets: some are interrupted before they did anything, streams give and take less than was asked.
#include "tests/anomaly/preload/Control.h"
#include "tests/anomaly/preload/Real.h"

#include <poll.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace {

using namespace zm::faults;

bool isSocket(int fd) {
    struct stat about {};
    return ::fstat(fd, &about) == 0 && S_ISSOCK(about.st_mode);
}

bool isStream(int fd) {
    int type = 0;
    socklen_t size = sizeof type;
    return ::getsockopt(fd, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_STREAM;
}

bool interrupted() {
    if (!armed(Kind::Sockets) || !isPicked()) {
        return false;
    }
    errno = EINTR;
    return true;
}

bool interrupted(int fd) {
    return armed(Kind::Sockets) && isSocket(fd) && interrupted();
}

/** How much of `size` is given or taken. */
size_t little(int fd, size_t size) {
    if (!armed(Kind::Sockets) || size < 2 || !isSocket(fd) || !isStream(fd) || !isPicked()) {
        return size;
    }
    return 1 + drawn(size - 1);
}

} // namespace

extern "C" ssize_t recv(int fd, void* bytes, size_t size, int flags) {
    return interrupted(fd) ? -1 : REAL(recv)(fd, bytes, little(fd, size), flags);
}

extern "C" ssize_t recvfrom(int fd, void* bytes, size_t size, int flags, sockaddr* from, socklen_t* length) {
    return interrupted(fd) ? -1 : REAL(recvfrom)(fd, bytes, size, flags, from, length);
}

extern "C" ssize_t recvmsg(int fd, msghdr* message, int flags) {
    return interrupted(fd) ? -1 : REAL(recvmsg)(fd, message, flags);
}

extern "C" ssize_t send(int fd, const void* bytes, size_t size, int flags) {
    return interrupted(fd) ? -1 : REAL(send)(fd, bytes, little(fd, size), flags);
}

extern "C" ssize_t sendto(int fd, const void* bytes, size_t size, int flags, const sockaddr* to,
                          socklen_t length) {
    return interrupted(fd) ? -1 : REAL(sendto)(fd, bytes, size, flags, to, length);
}

extern "C" ssize_t sendmsg(int fd, const msghdr* message, int flags) {
    return interrupted(fd) ? -1 : REAL(sendmsg)(fd, message, flags);
}

extern "C" ssize_t read(int fd, void* bytes, size_t size) {
    return interrupted(fd) ? -1 : REAL(read)(fd, bytes, little(fd, size));
}

extern "C" int connect(int fd, const sockaddr* address, socklen_t size) {
    return interrupted(fd) ? -1 : REAL(connect)(fd, address, size);
}

extern "C" int accept(int fd, sockaddr* address, socklen_t* size) {
    return interrupted(fd) ? -1 : REAL(accept)(fd, address, size);
}

extern "C" int accept4(int fd, sockaddr* address, socklen_t* size, int flags) {
    return interrupted(fd) ? -1 : REAL(accept4)(fd, address, size, flags);
}

extern "C" int poll(pollfd* files, nfds_t count, int timeout) {
    return interrupted() ? -1 : REAL(poll)(files, count, timeout);
}

extern "C" int epoll_wait(int fd, epoll_event* events, int count, int timeout) {
    return interrupted() ? -1 : REAL(epoll_wait)(fd, events, count, timeout);
}
